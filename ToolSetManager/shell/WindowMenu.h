#pragma once

#include <QObject>

class DocumentWindow;
class Frame;
class QMenu;

/// What the Window menu of a document window does: it arranges the frame's windows and lists them,
/// its own one ticked, to go to.
class WindowMenu : public QObject
{
    Q_OBJECT
public:
    /// The menu has the four items that arrange, in their order: horizontally, vertically, cascade,
    /// icons. What is handed in is borrowed.
    WindowMenu(QMenu &menu, DocumentWindow &document, Frame &frame, QObject *parent);

private Q_SLOTS:
    void mnuWindow_aboutToShow();

private:
    QMenu &m_menu;
    DocumentWindow &m_document;
    Frame &m_frame;
};
