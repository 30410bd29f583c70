#include "toolset/ToolSetFile.h"

#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "platform/VbError.h"
#include "platform/desktop/CommonDialog.h"
#include "platform/desktop/ListView.h"
#include "platform/desktop/MsgBox.h"
#include "platform/desktop/mFileUtil.h"
#include "platform/rtf/RichTextBox.h"
#include "shell/BusyProgress.h"
#include "shell/CFileList.h"
#include "shell/DocumentWindow.h"
#include "shell/Frame.h"
#include "shell/Settings.h"
#include "shell/mTSM.h"
#include "toolset/SnapshotKeeper.h"
#include "toolset/ToolListModel.h"
#include "toolset/ToolPropertiesLink.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

constexpr Twips pictureBoxSize {275};

QString recoveredCaption(const QString &title)
{
    return QStringLiteral("Recovered - ") + title;
}

QString noticeOf(const CVBATools &loaded)
{
    switch (loaded.fileEnd()) {
    case CVBATools::FileEnd::Complete:
        return {};
    case CVBATools::FileEnd::Early:
        return QStringLiteral("%1 %2 read; the file ends early.")
            .arg(loaded.Count())
            .arg(loaded.Count() == 1 ? u"tool" : u"tools");
    case CVBATools::FileEnd::NotAToolSet:
        return QStringLiteral("Not a tool set.");
    }
    return {};
}

} // namespace

ToolSetFile::ToolSetFile(DocumentWindow &document, QWidget *form, Frame &frame, mTSM &state,
    const Settings &settings, ToolSetStorage &storage, ListView &list, ToolListModel &model)
    : QObject(form)
    , m_document(document)
    , m_form(form)
    , m_frame(frame)
    , m_state(state)
    , m_settings(settings)
    , m_storage(storage)
    , m_list(list)
    , m_model(model)
    , picUtil(pictureBoxSize, pictureBoxSize)
    , m_tools(std::make_unique<CVBATools>(storage))
    , m_snapshots(new SnapshotKeeper(
          storage, [this] { return snapshot(); }, this))
{
    connect(m_snapshots, &SnapshotKeeper::failed, this, &ToolSetFile::snapshotFailed);
    m_tools->setFLAGS(m_tools->FLAGS() | 1);
    m_tools->setAllowDupes(true);
    m_model.setTools(m_tools.get());
}

ToolSetFile::~ToolSetFile() = default;

void ToolSetFile::setProperties(ToolPropertiesLink &properties)
{
    m_properties = &properties;
    connect(&properties, &ToolPropertiesLink::changed, this, &ToolSetFile::changed);
    connect(&properties, &ToolPropertiesLink::draftChanged, this, &ToolSetFile::draftChanged);
}

void ToolSetFile::changed()
{
    m_dirty = true;
    renamedInPlace();
}

void ToolSetFile::renamedInPlace()
{
    m_unsaved = true;
    m_givenUp = false;
    m_snapshots->changed();
}

void ToolSetFile::draftChanged()
{
    if (m_unsaved || m_properties->editedTool())
        m_snapshots->changed();
    else
        m_snapshots->discard(); // a draft was given up, and nothing else was new
}

void ToolSetFile::closed()
{
    // Kept: nobody is asked after a failed save, nor about renames in place. Then, and when the
    // save that the user wanted came to nothing, the next start offers the set.
    if (m_unsaved && !m_givenUp)
        m_snapshots->leave();
    else
        m_snapshots->discard();
}

void ToolSetFile::snapshotFailed(const QString &reason)
{
    m_frame.showWarning(
        QStringLiteral("Save often: unsaved changes cannot be kept in case the program is "
                       "interrupted (%1).")
            .arg(reason));
}

QString ToolSetFile::noticeOfOthers() const
{
    QString text;
    if (m_tools->ChangedByOthers) {
        text = QStringLiteral("The file had been changed by somebody else; ");
        if (m_tools->BackupPath.isEmpty())
            text += QStringLiteral("no copy of that content could be made.");
        else
            text += QStringLiteral("that content is in \"%1\".").arg(m_tools->BackupPath);
    }
    return text;
}

void ToolSetFile::show(std::unique_ptr<CVBATools> tools)
{
    m_model.setTools(tools.get());
    m_tools = std::move(tools);
    Q_EMIT opened();
}

// --- Open ---

void ToolSetFile::open()
{
    if (openSet())
        m_frame.FileListHandler().Add(m_fileName);
}

bool ToolSetFile::openSet()
{
    if (m_fileName.isEmpty())
        return false;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    auto loaded = std::make_unique<CVBATools>(m_storage);
    loaded->setAllowDupes(true);
    QString failure;
    {
        BusyProgress progress(m_frame, QStringLiteral("Opening"));
        loaded->Progress = [&progress](qint64 done, qint64 total) { progress.show(done, total); };
        const bool ok = loaded->Load(m_fileName);
        loaded->Progress = nullptr;
        if (ok) {
            if (loaded->FileVersion() < BmtFormat::currentVersion)
                rewriteHelpTexts(*loaded);
            m_dirty = false;
            m_unsaved = false;
            m_snapshots->discard();
            m_origin = {};
            show(std::move(loaded));
            m_document.setCaption(m_tools->ToolSetName);
            setNotice(noticeOf(*m_tools));
            return true;
        }
        failure = loaded->ErrorDescription;
        loaded.reset(); // It may have taken the memory that the message needs.
    }
    // The window keeps what it showed, and so the file that belongs to it: a save must not
    // overwrite the file that could not be read.
    m_fileName = m_tools->ToolSetName;
    MsgBox::show(m_form, QStringLiteral("Error loading tool set: ") + failure, MsgBox::Buttons::Ok,
        MsgBox::Icon::Critical);
    return false;
}

void ToolSetFile::setNotice(const QString &text)
{
    m_notice = text;
    m_frame.setPanelText(Frame::noticePanel, text);
}

void ToolSetFile::rewriteHelpTexts(CVBATools &tools)
{
    const auto ownForm = [](const QString &text) {
        return RichTextBox::ownForm(text, QStringLiteral("MS Sans Serif"), 8.5);
    };
    const QString empty = ownForm(QString());
    for (const ToolPtr &tool : tools)
        tool->HelpString = tool->HelpString.isEmpty() ? empty : ownForm(tool->HelpString);
}

// --- Save ---

void ToolSetFile::save()
{
    if (saveSet())
        m_frame.FileListHandler().Add(m_fileName);
}

void ToolSetFile::saveAs()
{
    if (saveSetAs())
        m_frame.FileListHandler().Add(m_fileName);
}

bool ToolSetFile::saveSet()
{
    m_list.finishLabelEdit(); // what the user sees is what is saved
    if (m_model.rowCount() == 0) {
        MsgBox::show(m_form,
            QStringLiteral("The toolset must contain at least one tool before it can be saved"),
            MsgBox::Buttons::Ok, MsgBox::Icon::Critical);
        return false;
    }
    if (m_fileName.isEmpty())
        return saveSetAs();
    bool ok = false;
    {
        BusyProgress progress(m_frame, QStringLiteral("Saving"));
        m_tools->Progress = [&progress](qint64 done, qint64 total) { progress.show(done, total); };
        // The file is written in place. Should the program end in the midst of that, the set is
        // offered at the next start, whether or not it had changed.
        m_snapshots->writeNow();
        m_tools->KeptElsewhere = [this] { return m_snapshots->flush(); };
        ok = m_tools->Save(m_fileName, m_model.keysInPositionOrder(), picUtil);
        m_tools->Progress = nullptr;
    }
    // Kept: the flag is cleared after a failed write too, so closing will not ask again.
    m_dirty = false;
    if (ok || m_tools->ChangedByOthers)
        setNotice(noticeOfOthers());
    if (ok) {
        m_unsaved = false;
        m_snapshots->discard();
        m_origin = {};
        m_fileName = m_tools->ToolSetName;
        m_document.setCaption(m_fileName); // a Save As before may have failed
        return true;
    }
    m_unsaved = true;
    m_givenUp = false;
    MsgBox::show(m_form,
        QStringLiteral("Error saving tool set: ") + m_tools->ErrorDescription
            + (m_snapshots->flush()
                    ? QStringLiteral("\n\nThe tool set as it stands is kept. If it is not saved "
                                     "until then, the next start of the program offers it.")
                    : QStringLiteral("\n\nThe tool set as it stands could not be kept elsewhere: "
                                     "it is in this window only.")),
        MsgBox::Buttons::Ok, MsgBox::Icon::Critical);
    return false;
}

bool ToolSetFile::saveSetAs()
{
    m_state.setDragGate(false);
    CommonDialog dlg(m_form);
    dlg.DefaultExt = QStringLiteral("bmt");
    dlg.DialogTitle = QStringLiteral("Save Tool Set");
    dlg.Filter = QStringLiteral("Tool Sets (bmt)|*.bmt");
    dlg.Flags =
        CommonDialog::OverwritePrompt | CommonDialog::PathMustExist | CommonDialog::HideReadOnly;
    dlg.InitDir =
        mFileUtil::UsableFolder(m_settings.ToolsetPath(), mFileUtil::UserFolder::Documents);
    dlg.FileName = m_tools->ToolSetName;
    if (!m_origin.path.isEmpty()) {
        // Beside the file that the set had, under another name.
        const QFileInfo file(m_origin.path);
        dlg.FileName =
            QDir::toNativeSeparators(file.dir().filePath(recoveredCaption(file.fileName())));
    }
    dlg.CancelError = true;
    try {
        dlg.ShowSave();
    } catch (const VbError &error) {
        if (error.number() != CommonDialog::cancelled) {
            MsgBox::show(m_form, error.description(), MsgBox::Buttons::Ok, MsgBox::Icon::Critical);
        }
        return false; // Kept: the drag gate stays closed until the frame opens it again.
    }
    m_fileName = dlg.FileName;
    const bool saved = m_fileName.isEmpty() ? false : saveSet();
    if (!m_tools->ToolSetName.isEmpty())
        m_document.setCaption(m_tools->ToolSetName);
    m_state.setDragGate(true);
    return saved;
}

bool ToolSetFile::CleanIfDirty()
{
    if (!m_dirty)
        return false;
    const auto answer =
        MsgBox::show(m_form, QStringLiteral("Save changes to ") + m_document.Caption(),
            MsgBox::Buttons::YesNoCancel, MsgBox::Icon::Question);
    // Kept: after Yes the close goes on although the save failed or was given up in the dialog.
    if (answer == MsgBox::Answer::Yes)
        saveSet();
    m_givenUp = answer == MsgBox::Answer::No;
    return answer == MsgBox::Answer::Cancel;
}

// --- Snapshots ---

ToolSetSnapshot ToolSetFile::snapshot() const
{
    ToolSetSnapshot taken;
    taken.path = m_origin.path.isEmpty() ? m_fileName : m_origin.path;
    taken.title = m_origin.title;
    if (taken.title.isEmpty())
        taken.title =
            m_fileName.isEmpty() ? m_document.Caption() : QFileInfo(m_fileName).fileName();
    taken.FLAGS = static_cast<qint16>(m_tools->FLAGS());
    taken.Description = m_tools->Description();
    taken.LongDescription = m_tools->LongDescription();
    const QList<ToolPtr> tools = m_model.toolsInPositionOrder();
    taken.tools.reserve(static_cast<size_t>(tools.size()));
    const CVBATool *edited = m_properties ? m_properties->editedTool() : nullptr;
    for (const ToolPtr &tool : tools)
        taken.tools.push_back(tool.get() == edited ? m_properties->draft() : *tool);
    return taken;
}

bool ToolSetFile::recover(const QString &snapshotPath)
{
    const auto kept = ToolSetSnapshot::read(snapshotPath);
    if (!kept) {
        // Not offered again at each start, but not thrown away.
        const QString aside = m_storage.recovery.newPathFor(QFileInfo(snapshotPath).fileName());
        const bool moved = !aside.isEmpty() && QFile::rename(snapshotPath, aside);
        MsgBox::show(m_form,
            QStringLiteral("The unsaved changes in \"%1\" cannot be read.")
                .arg(moved ? aside : QDir::toNativeSeparators(snapshotPath)),
            MsgBox::Buttons::Ok, MsgBox::Icon::Critical);
        return false;
    }
    auto tools = std::make_unique<CVBATools>(m_storage);
    tools->setFLAGS(kept->FLAGS);
    tools->setDescription(kept->Description);
    tools->setLongDescription(kept->LongDescription);
    for (const CVBATool &tool : kept->tools) {
        const auto copy = std::make_shared<CVBATool>(tool);
        tools->setAllowDupes(false); // the names come back as they were
        if (tools->Add(copy))
            continue;
        tools->setAllowDupes(true);
        if (!tools->Add(copy)) { // a name that was typed and not applied: there is no room for it
            copy->Description.clear();
            tools->Add(copy);
        }
    }
    tools->setAllowDupes(true);
    m_fileName.clear();
    m_origin = {kept->title, kept->path};
    m_dirty = true;
    m_unsaved = true;
    m_snapshots->adopt(snapshotPath);
    // Windows are told apart by their captions.
    QString caption = recoveredCaption(kept->title);
    const auto taken = [this](const QString &text) {
        const auto documents = m_frame.openDocuments();
        return std::any_of(documents.begin(), documents.end(),
            [&](const DocumentWindow *document) { return document->Caption() == text; });
    };
    for (int i = 2; taken(caption); ++i)
        caption = recoveredCaption(kept->title) + QStringLiteral(" (%1)").arg(i);
    show(std::move(tools));
    m_document.setCaption(caption);
    return true;
}
