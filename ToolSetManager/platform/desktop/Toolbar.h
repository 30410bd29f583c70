#pragma once

#include <QToolBar>

/// A toolbar whose buttons are found by a key and carry a tag. The tool tip is the button's
/// accessible name too.
class Toolbar : public QToolBar
{
    Q_OBJECT
public:
    explicit Toolbar(const QString &title, QWidget *parent = nullptr);

    QAction *addButton(const QString &key, const QString &toolTip);
    /// Null when there is no such button.
    QAction *button(const QString &key) const;
    QList<QAction *> buttons() const { return m_buttons; }

    static QString tag(const QAction *button);
    static void setTag(QAction *button, const QString &tag);
    static QString key(const QAction *button);

Q_SIGNALS:
    void ButtonClick(const QString &key);

private:
    QList<QAction *> m_buttons;
};
