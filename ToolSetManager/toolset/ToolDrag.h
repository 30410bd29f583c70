#pragma once

#include <QObject>

class DocumentWindow;
class EditCommands;
class Frame;
class ListView;
class QDragMoveEvent;
class QDropEvent;
class ToolListModel;
class mTSM;

/// Drags of tools out of and onto the list of one window: within it they reorder the tools, onto
/// another window they copy them. The drag itself carries only the tools' names, as text; the
/// tools go by the tool clipboard, and the drop ends in the same paste as the menu's.
class ToolDrag : public QObject
{
    Q_OBJECT
public:
    /// What is handed in is borrowed.
    ToolDrag(DocumentWindow &document, Frame &frame, mTSM &state, ListView &list,
        ToolListModel &model, EditCommands &edit, QObject *parent);

private Q_SLOTS:
    void lvTools_OLEStartDrag();
    void lvTools_OLEDragOver(QDragMoveEvent *event);
    void lvTools_OLEGiveFeedback(Qt::DropAction effect);
    void lvTools_OLEDragDrop(QDropEvent *event);
    void lvTools_OLECompleteDrag();
    void lvTools_MouseUp();

private:
    /// The row that a drop at the event's place would go to; -1 for none, a dragged one included.
    int targetRow(const QDropEvent &event) const;
    QPixmap dragPicture(const QList<int> &rows) const;
    void clearPanels();

    DocumentWindow &m_document;
    Frame &m_frame;
    mTSM &m_state;
    ListView &m_list;
    ToolListModel &m_model;
    EditCommands &m_edit;
};
