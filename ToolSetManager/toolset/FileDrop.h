#pragma once

#include <QObject>
#include <QStringList>

class DocumentWindow;
class EditCommands;
class Frame;
class ListView;
class QDragMoveEvent;
class QDropEvent;
class Settings;
class mTSM;

/// Files that a file manager drags onto the list of one window. A file that the properties dialog
/// would recognise becomes a new tool at the end of the set, where tools from another window go,
/// too; a tool set file is opened. Where neither is among them the drag is refused.
class FileDrop : public QObject
{
    Q_OBJECT
public:
    /// What is handed in is borrowed.
    FileDrop(DocumentWindow &document, Frame &frame, const mTSM &state, const Settings &settings,
        ListView &list, EditCommands &edit, QObject *parent);

private Q_SLOTS:
    void lvTools_OLEDragOver(QDragMoveEvent *event);
    void lvTools_OLEDragLeave();
    void lvTools_OLEDragDrop(QDropEvent *event);

private:
    void entered(const QDropEvent &event);
    void forget();

    DocumentWindow &m_document;
    Frame &m_frame;
    const mTSM &m_state;
    const Settings &m_settings;
    ListView &m_list;
    EditCommands &m_edit;
    // Of the drag above the list:
    QStringList m_toolFiles;
    QStringList m_toolSets;
};
