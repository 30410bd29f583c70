#include "toolset/ToolSetFile.h"

#include "model/BmtTool.h"
#include "model/ToolSetDocument.h"
#include "model/ToolSetStorage.h"
#include "platform/VbError.h"
#include "platform/desktop/CommonDialog.h"
#include "platform/desktop/ListView.h"
#include "platform/desktop/MsgBox.h"
#include "platform/desktop/mFileUtil.h"
#include "shell/BusyProgress.h"
#include "shell/CFileList.h"
#include "shell/DocumentWindow.h"
#include "shell/Frame.h"
#include "shell/Settings.h"
#include "shell/ToolSetLoader.h"
#include "shell/mTSM.h"
#include "toolset/SnapshotKeeper.h"
#include "toolset/ToolPropertiesLink.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

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
    const Settings &settings, ToolSetStorage &storage, ToolSetDocument &set, ListView &list)
    : QObject(form)
    , m_document(document)
    , m_form(form)
    , m_frame(frame)
    , m_state(state)
    , m_settings(settings)
    , m_storage(storage)
    , m_set(set)
    , m_list(list)
    , picUtil(BmtTool::pictureBoxSide, BmtTool::pictureBoxSide)
    , m_snapshots(new SnapshotKeeper(
          storage, [this] { return snapshot(); }, this))
{
    connect(m_snapshots, &SnapshotKeeper::failed, this, &ToolSetFile::snapshotFailed);
    connect(&m_set, &ToolSetDocument::changed, this, &ToolSetFile::changed);
}

ToolSetFile::~ToolSetFile() = default;

void ToolSetFile::setProperties(ToolPropertiesLink &properties)
{
    m_properties = &properties;
    connect(&properties, &ToolPropertiesLink::draftChanged, this, &ToolSetFile::draftChanged);
}

void ToolSetFile::changed()
{
    m_givenUp = false;
    draftChanged();
}

void ToolSetFile::draftChanged()
{
    if (m_set.isUnsaved() || (m_properties && m_properties->editedTool()))
        m_snapshots->changed();
    else
        m_snapshots->discard(); // a draft was given up, and nothing else was new
}

void ToolSetFile::closed()
{
    // Kept: nobody is asked after a failed save, nor about renames in place. Then, and when the
    // save that the user wanted came to nothing, the next start offers the set.
    if (m_set.isUnsaved() && !m_givenUp)
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
    const CVBATools &tools = m_set.Tools();
    if (tools.ChangedByOthers) {
        text = QStringLiteral("The file had been changed by somebody else; ");
        if (tools.BackupPath.isEmpty())
            text += QStringLiteral("no copy of that content could be made.");
        else
            text += QStringLiteral("that content is in \"%1\".").arg(tools.BackupPath);
    }
    return text;
}

// --- Open ---

void ToolSetFile::open()
{
    if (openSet())
        m_frame.FileListHandler().Add(m_set.FileName());
}

bool ToolSetFile::openSet()
{
    const QString path = m_set.FileName();
    if (path.isEmpty())
        return false;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    QString failure;
    {
        BusyProgress progress(m_frame, QStringLiteral("Opening"));
        auto loaded = ToolSetLoader::fromFile(path, m_storage,
            [&progress](qint64 done, qint64 total) { progress.show(done, total); });
        if (loaded.tools) {
            m_snapshots->discard();
            m_origin = {};
            m_set.setTools(std::move(loaded.tools), true);
            m_document.setCaption(m_set.Tools().ToolSetName);
            setNotice(noticeOf(m_set.Tools()));
            return true;
        }
        failure = loaded.error; // what was loaded may have taken the memory that the message needs
    }
    // The window keeps what it showed, and so the file that belongs to it: a save must not
    // overwrite the file that could not be read.
    m_set.setFileName(m_set.Tools().ToolSetName);
    MsgBox::show(m_form, QStringLiteral("Error loading tool set: ") + failure, MsgBox::Buttons::Ok,
        MsgBox::Icon::Critical);
    return false;
}

void ToolSetFile::setNotice(const QString &text)
{
    m_notice = text;
    m_frame.setPanelText(Frame::noticePanel, text);
}

// --- Save ---

void ToolSetFile::save()
{
    if (saveSet())
        m_frame.FileListHandler().Add(m_set.FileName());
}

void ToolSetFile::saveAs()
{
    if (saveSetAs())
        m_frame.FileListHandler().Add(m_set.FileName());
}

bool ToolSetFile::saveSet()
{
    m_list.finishLabelEdit(); // what the user sees is what is saved
    if (m_set.count() == 0) {
        MsgBox::show(m_form,
            QStringLiteral("The toolset must contain at least one tool before it can be saved"),
            MsgBox::Buttons::Ok, MsgBox::Icon::Critical);
        return false;
    }
    if (m_set.FileName().isEmpty())
        return saveSetAs();
    CVBATools &tools = m_set.file();
    bool ok = false;
    {
        BusyProgress progress(m_frame, QStringLiteral("Saving"));
        tools.Progress = [&progress](qint64 done, qint64 total) { progress.show(done, total); };
        // The file is written in place. Should the program end in the midst of that, the set is
        // offered at the next start, whether or not it had changed.
        m_snapshots->writeNow();
        tools.KeptElsewhere = [this] { return m_snapshots->flush(); };
        ok = tools.Save(m_set.FileName(), m_set.keysInOrder(), picUtil);
        tools.Progress = nullptr;
    }
    if (ok || tools.ChangedByOthers)
        setNotice(noticeOfOthers());
    if (ok) {
        m_set.saved();
        m_snapshots->discard();
        m_origin = {};
        m_set.setFileName(tools.ToolSetName);
        m_document.setCaption(tools.ToolSetName); // a Save As before may have failed
        return true;
    }
    // Kept: the flag is cleared after a failed write too, so closing will not ask again.
    m_set.saveFailed();
    m_givenUp = false;
    MsgBox::show(m_form,
        QStringLiteral("Error saving tool set: ") + tools.ErrorDescription
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
    dlg.FileName = m_set.Tools().ToolSetName;
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
    m_set.setFileName(dlg.FileName);
    const bool saved = dlg.FileName.isEmpty() ? false : saveSet();
    if (!m_set.Tools().ToolSetName.isEmpty())
        m_document.setCaption(m_set.Tools().ToolSetName);
    m_state.setDragGate(true);
    return saved;
}

bool ToolSetFile::CleanIfDirty()
{
    if (!m_set.Dirty())
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
    const QString fileName = m_set.FileName();
    taken.path = m_origin.path.isEmpty() ? fileName : m_origin.path;
    taken.title = m_origin.title;
    if (taken.title.isEmpty())
        taken.title = fileName.isEmpty() ? m_document.Caption() : QFileInfo(fileName).fileName();
    taken.FLAGS = static_cast<qint16>(m_set.Tools().FLAGS());
    taken.Description = m_set.Tools().Description();
    taken.LongDescription = m_set.Tools().LongDescription();
    const auto &tools = m_set.toolsInOrder();
    taken.tools.reserve(tools.size());
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
    auto tools = ToolSetLoader::fromSnapshot(*kept, m_storage);
    m_set.setFileName({});
    m_origin = {kept->title, kept->path};
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
    m_set.setTools(std::move(tools), false);
    m_document.setCaption(caption);
    return true;
}
