#pragma once

#include <QObject>

class DocumentWindow;
class Frame;
class ToolSetMenus;

/// What the Window menu of a tool set window does: it arranges the frame's windows and lists them,
/// its own one ticked, to go to.
class WindowMenu : public QObject
{
    Q_OBJECT
public:
    /// What is handed in is borrowed.
    WindowMenu(ToolSetMenus &menus, DocumentWindow &document, Frame &frame, QObject *parent);

private Q_SLOTS:
    void mnuWindow_aboutToShow();

private:
    ToolSetMenus &m_menus;
    DocumentWindow &m_document;
    Frame &m_frame;
};
