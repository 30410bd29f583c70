#pragma once

#include <QWidget>

#include <array>

class QLineEdit;
class QPushButton;

/// The panel below the picker's preview that steps through the icons of a program file. The buttons
/// have keys that work in all of the dialog.
class IconSteps : public QWidget
{
    Q_OBJECT
public:
    explicit IconSteps(QWidget *dialog);

    void showNumber(int number, int count); ///< Counted from 1.
    QList<QWidget *> fields() const; ///< In the order of Tab.

Q_SIGNALS:
    void Click(int Index); ///< 0 for the previous icon, 1 for the next.

private:
    QPushButton *makeButton(int index, const QString &name, const QIcon &icon, Qt::Key key);

    std::array<QPushButton *, 2> cmdIcon;
    QLineEdit *txtIcon;
};
