#pragma once

#include <QToolBar>

/// A toolbar whose buttons are found by a key. The tool tip is the button's accessible name too.
class Toolbar : public QToolBar
{
    Q_OBJECT
public:
    explicit Toolbar(const QString &title, QWidget *parent = nullptr);

    QAction *addButton(const QString &key, const QString &toolTip);
    /// Null when there is no such button.
    QAction *button(const QString &key) const;
    QList<QAction *> buttons() const { return m_buttons; }

    static QString key(const QAction *button);

Q_SIGNALS:
    void ButtonClick(const QString &key);

private:
    QList<QAction *> m_buttons;
};
