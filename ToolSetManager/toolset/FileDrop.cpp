#include "toolset/FileDrop.h"

#include "model/ToolFileRecognition.h"
#include "platform/desktop/FileDrag.h"
#include "platform/desktop/ListView.h"
#include "platform/desktop/mFileUtil.h"
#include "shell/Frame.h"
#include "shell/Settings.h"
#include "shell/ToolSetFiles.h"
#include "shell/mTSM.h"
#include "tooledit/ToolFromFile.h"
#include "toolset/EditCommands.h"

#include <QDragMoveEvent>

FileDrop::FileDrop(DocumentWindow &document, Frame &frame, const mTSM &state,
    const Settings &settings, ListView &list, EditCommands &edit, QObject *parent)
    : QObject(parent)
    , m_document(document)
    , m_frame(frame)
    , m_state(state)
    , m_settings(settings)
    , m_list(list)
    , m_edit(edit)
{
    connect(&list, &ListView::OLEDragOver, this, &FileDrop::lvTools_OLEDragOver);
    connect(&list, &ListView::OLEDragLeave, this, &FileDrop::lvTools_OLEDragLeave);
    connect(&list, &ListView::OLEDragDrop, this, &FileDrop::lvTools_OLEDragDrop);
}

void FileDrop::entered(const QDropEvent &event)
{
    const QStringList files = FileDrag::paths(event);
    m_toolSets = ToolSetFiles::among(files);
    m_toolFiles.clear();
    for (const QString &file : files) {
        if (ToolFileRecognition::kindOf(file, CVBATool::NoKind))
            m_toolFiles.append(file);
    }
    if (m_toolFiles.isEmpty() && m_toolSets.isEmpty())
        return;
    m_frame.setPanelText(Frame::effectPanel,
        m_toolFiles.isEmpty() ? QStringLiteral("Open") : QStringLiteral("New tool"));
    m_frame.setPanelText(Frame::namesPanel, FileDrag::names(m_toolFiles + m_toolSets));
}

void FileDrop::lvTools_OLEDragOver(QDragMoveEvent *event)
{
    if (m_state.DraggingTools) // ToolDrag answers
        return;
    if (event->type() == QEvent::DragEnter)
        entered(*event);
    FileDrag::answer(*event, !m_toolFiles.isEmpty() || !m_toolSets.isEmpty());
}

void FileDrop::lvTools_OLEDragLeave()
{
    forget();
}

void FileDrop::lvTools_OLEDragDrop(QDropEvent *event)
{
    if (m_state.DraggingTools || (m_toolFiles.isEmpty() && m_toolSets.isEmpty()))
        return;
    FileDrag::answer(*event, true);
    const QStringList toolFiles = m_toolFiles;
    const QStringList toolSets = m_toolSets;
    forget();
    if (!event->isAccepted())
        return;
    if (!toolFiles.isEmpty()) {
        const QString macroFolder = mFileUtil::UsableFolder(m_settings.MacroPath());
        QList<ToolPtr> tools;
        for (const QString &file : toolFiles)
            tools.append(ToolFromFile::make(file, macroFolder));
        m_edit.addTools(tools);
        m_frame.activateDocument(&m_document); // the next command means the new tools
    }
    for (const QString &file : toolSets)
        m_frame.openFile(file);
}

void FileDrop::forget()
{
    if (m_toolFiles.isEmpty() && m_toolSets.isEmpty())
        return;
    m_toolFiles.clear();
    m_toolSets.clear();
    m_frame.setPanelText(Frame::effectPanel, QString());
    m_frame.setPanelText(Frame::namesPanel, QString());
}
