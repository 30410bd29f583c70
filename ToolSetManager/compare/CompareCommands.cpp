#include "compare/CompareCommands.h"

#include "compare/ComparedSet.h"
#include "compare/Comparison.h"
#include "compare/EarlierVersions.h"
#include "compare/frmCompare.h"
#include "compare/frmCompareWith.h"
#include "compare/frmVersions.h"
#include "model/CVBATools.h"
#include "model/ToolSetDocument.h"
#include "model/ToolSetStorage.h"
#include "model/ToolSetUpdate.h"
#include "platform/desktop/CommonDialog.h"
#include "platform/desktop/Hourglass.h"
#include "platform/desktop/MsgBox.h"
#include "platform/desktop/mFileUtil.h"
#include "shell/BusyProgress.h"
#include "shell/MDI.h"
#include "shell/Settings.h"
#include "shell/ToolSetLoader.h"

#include <QFileInfo>

#include <algorithm>

namespace {

void complain(QWidget *parent, const QString &text)
{
    MsgBox::show(parent, text, MsgBox::Buttons::Ok, MsgBox::Icon::Critical);
}

} // namespace

CompareCommands::CompareCommands(MDI &frame, const Settings &settings, ToolSetStorage &storage)
    : QObject(&frame)
    , m_frame(frame)
    , m_settings(settings)
    , m_storage(storage)
{
    frame.setCommand(QString::fromUtf16(Frame::compareWord), [this] { compareWith(); });
    frame.setCommand(QString::fromUtf16(Frame::versionsWord), [this] { earlierVersions(); });
}

// --- Compare With... ---

void CompareCommands::compareWith()
{
    DocumentWindow *window = m_frame.activeDocument();
    if (!window || !window->toolSet())
        return;
    auto other = choose(&m_frame, QStringLiteral("Compare With"), window);
    if (!other)
        return;
    auto own = std::make_unique<ComparedSet>(*window);
    if (other->kind() == ComparedSet::Version) // what was before stands on the left
        show(std::move(other), std::move(own));
    else
        show(std::move(own), std::move(other));
}

std::unique_ptr<ComparedSet> CompareCommands::choose(
    QWidget *parent, const QString &title, DocumentWindow *window)
{
    QList<DocumentWindow *> windows;
    QStringList captions;
    const auto documents = m_frame.openDocuments();
    for (DocumentWindow *document : documents) {
        if (document == window || !document->toolSet())
            continue;
        windows.append(document);
        captions.append(document->Caption());
    }
    QList<EarlierVersion> versions;
    QStringList titles;
    if (!window || !window->FileName().isEmpty())
        versions = EarlierVersions::find(m_storage, window ? window->FileName() : QString());
    for (const EarlierVersion &version : std::as_const(versions))
        titles.append(QStringLiteral("%1 (%2)").arg(version.title(), version.kindCaption()));
    if (captions.isEmpty() && titles.isEmpty())
        return chooseFile(parent, title);
    frmCompareWith dialog(title, captions, titles, parent);
    if (dialog.exec() != QDialog::Accepted)
        return nullptr;
    switch (dialog.choice()) {
    case frmCompareWith::OpenSet:
        return std::make_unique<ComparedSet>(*windows[dialog.index()]);
    case frmCompareWith::Version:
        return setOf(versions[dialog.index()], parent);
    default:
        return chooseFile(parent, title);
    }
}

std::unique_ptr<ComparedSet> CompareCommands::chooseFile(QWidget *parent, const QString &title)
{
    CommonDialog dlg(parent);
    dlg.DialogTitle = title;
    dlg.Flags = CommonDialog::FileMustExist | CommonDialog::HideReadOnly;
    dlg.InitDir =
        mFileUtil::UsableFolder(m_settings.ToolsetPath(), mFileUtil::UserFolder::Documents);
    dlg.Filter = QStringLiteral("Tool Sets (bmt)|*.bmt");
    if (!dlg.ShowOpen())
        return nullptr;
    if (DocumentWindow *open = windowOf(dlg.FileName))
        return std::make_unique<ComparedSet>(*open);
    return readFile(parent, dlg.FileName);
}

std::unique_ptr<ComparedSet> CompareCommands::readFile(QWidget *parent, const QString &path)
{
    ToolSetLoader::Loaded loaded;
    {
        BusyProgress progress(m_frame, QStringLiteral("Opening"));
        loaded = ToolSetLoader::fromFile(path, m_storage,
            [&progress](qint64 done, qint64 total) { progress.show(done, total); });
    }
    if (!loaded.tools)
        complain(parent, QStringLiteral("Error loading tool set: ") + loaded.error);
    else if (loaded.tools->fileEnd() == CVBATools::FileEnd::NotAToolSet)
        complain(parent, QStringLiteral("\"%1\" is not a tool set.").arg(path));
    else
        return std::make_unique<ComparedSet>(
            ComparedSet::File, path, path, std::move(loaded.tools));
    return nullptr;
}

std::unique_ptr<CVBATools> CompareCommands::read(const EarlierVersion &version, QWidget *parent)
{
    EarlierVersions::Content content;
    {
        const Hourglass hourglass;
        content = EarlierVersions::read(version, m_storage);
    }
    if (!content.tools)
        complain(parent,
            QStringLiteral("The version \"%1\" cannot be read: %2.")
                .arg(version.title(), content.problem));
    return std::move(content.tools);
}

std::unique_ptr<ComparedSet> CompareCommands::setOf(const EarlierVersion &version, QWidget *parent)
{
    auto tools = read(version, parent);
    if (!tools)
        return nullptr;
    return std::make_unique<ComparedSet>(
        ComparedSet::Version, version.title(), version.copy.original, std::move(tools));
}

DocumentWindow *CompareCommands::windowOf(const QString &path) const
{
    const auto documents = m_frame.openDocuments();
    const auto found =
        std::find_if(documents.begin(), documents.end(), [&](const DocumentWindow *document) {
            return !document->FileName().isEmpty()
                && QFileInfo(document->FileName()).absoluteFilePath()
                == QFileInfo(path).absoluteFilePath();
        });
    return found == documents.end() ? nullptr : *found;
}

void CompareCommands::show(std::unique_ptr<ComparedSet> left, std::unique_ptr<ComparedSet> right)
{
    const Hourglass hourglass;
    m_frame.addDocument(new frmCompare(m_frame,
        std::make_unique<Comparison>(std::move(left), std::move(right)),
        m_storage.codePage.number(),
        [this](QWidget *parent, const QString &title) { return choose(parent, title, nullptr); }));
}

// --- Earlier Versions... ---

void CompareCommands::earlierVersions()
{
    const DocumentWindow *window = m_frame.activeDocument();
    const QString path = window ? window->FileName() : QString();
    const auto now = [this](const QString &file) -> std::optional<ToolSetState> {
        if (DocumentWindow *open = windowOf(file))
            return ComparedSet(*open).state();
        auto loaded = ToolSetLoader::fromFile(file, m_storage);
        if (!loaded.tools)
            return std::nullopt;
        return ComparedSet(ComparedSet::File, file, file, std::move(loaded.tools)).state();
    };
    frmVersions dialog(m_storage, path, now, &m_frame);
    dialog.exec();
    switch (dialog.wish()) {
    case frmVersions::Compare:
        compare(dialog.version());
        break;
    case frmVersions::OpenCopy:
        openCopy(dialog.version());
        break;
    case frmVersions::Restore:
        restore(dialog.version());
        break;
    default:
        break;
    }
}

void CompareCommands::compare(const EarlierVersion &version)
{
    auto before = setOf(version, &m_frame);
    if (!before)
        return;
    DocumentWindow *window = windowOf(version.copy.original);
    auto now =
        window ? std::make_unique<ComparedSet>(*window) : readFile(&m_frame, version.copy.original);
    if (now)
        show(std::move(before), std::move(now));
}

void CompareCommands::openCopy(const EarlierVersion &version)
{
    auto tools = read(version, &m_frame);
    if (!tools)
        return;
    tools->ToolSetName.clear(); // a save asks for a name and never writes over the version
    QString caption = QStringLiteral("Copy - ") + version.title();
    const auto taken = [this](const QString &text) {
        const auto documents = m_frame.openDocuments();
        return std::any_of(documents.begin(), documents.end(),
            [&](const DocumentWindow *document) { return document->Caption() == text; });
    };
    for (int i = 2; taken(caption); ++i)
        caption = QStringLiteral("Copy - %1 (%2)").arg(version.title()).arg(i);
    DocumentWindow *window = m_frame.newDocument(caption);
    window->toolSet()->setTools(std::move(tools), true);
}

void CompareCommands::restore(const EarlierVersion &version)
{
    auto tools = read(version, &m_frame);
    if (!tools)
        return;
    DocumentWindow *window = windowOf(version.copy.original);
    if (window)
        m_frame.activateDocument(window);
    else
        window = m_frame.openDocument(version.copy.original);
    if (!window || !window->toolSet())
        return;
    const Hourglass hourglass;
    ToolSetDocument &document = *window->toolSet();
    ToolSetUpdate::apply(document,
        ToolSetUpdate::replacement(document, ToolSetUpdate::stateOf(*tools)),
        QStringLiteral("Restore of the Version of %1").arg(version.date()));
    window->Form_Activate();
}
