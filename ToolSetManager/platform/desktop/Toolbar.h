#pragma once

#include <QToolBar>

/// A toolbar whose buttons are found by a key. The tool tip is the button's accessible name too.
class Toolbar : public QToolBar
{
    Q_OBJECT
public:
    explicit Toolbar(const QString &title, QWidget *parent = nullptr);

    /// A \a pressable button stays down or up: each click by mouse, keyboard or screen reader
    /// toggles it and emits ButtonClick; the owner then sets the state that is right.
    QAction *addButton(const QString &key, const QString &toolTip, bool pressable = false);
    /// Shows a pressable button down or up. A key that no button has is ignored.
    void setPressed(const QString &key, bool pressed);
    /// Null when there is no such button.
    QAction *button(const QString &key) const;
    QList<QAction *> buttons() const { return m_buttons; }

    static QString key(const QAction *button);

Q_SIGNALS:
    void ButtonClick(const QString &key);

private:
    QList<QAction *> m_buttons;
    bool m_settingPressed = false;
};
