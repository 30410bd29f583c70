#include "platform/desktop/MsgBox.h"

#include "platform/desktop/ButtonIcons.h"
#include "platform/desktop/MessageText.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QMessageBox>

#include <memory>

namespace {

QMessageBox::Icon iconOf(MsgBox::Icon icon)
{
    switch (icon) {
    case MsgBox::Icon::Critical:
        return QMessageBox::Critical;
    case MsgBox::Icon::Question:
        return QMessageBox::Question;
    case MsgBox::Icon::Exclamation:
        return QMessageBox::Warning;
    case MsgBox::Icon::Information:
        return QMessageBox::Information;
    }
    return QMessageBox::NoIcon;
}

/// The toolkit's label has fixed tab stops and does not break long words.
void replaceLabel(QMessageBox &box)
{
    auto *label = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"));
    if (!label)
        return;
    delete box.layout()->replaceWidget(label, new MessageText(box.text(), &box));
    label->hide();
}

/// Neither Escape nor the window's close button answers it.
class PlainQuestion : public QMessageBox
{
public:
    explicit PlainQuestion(QWidget *parent)
        : QMessageBox(parent)
    {
        setWindowFlag(Qt::WindowCloseButtonHint, false);
    }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (!event->matches(QKeySequence::Cancel))
            QMessageBox::keyPressEvent(event);
    }
    void closeEvent(QCloseEvent *event) override { event->ignore(); }
};

} // namespace

namespace MsgBox {

Answer show(QWidget *parent, const QString &text, Buttons buttons, Icon icon, const QString &title)
{
    const bool plain = buttons == Buttons::YesNo || buttons == Buttons::NoYes;
    const std::unique_ptr<QMessageBox> shown(
        plain ? new PlainQuestion(parent) : new QMessageBox(parent));
    QMessageBox &box = *shown;
    box.setTextFormat(Qt::PlainText);
    box.setWindowTitle(title.isEmpty() ? QCoreApplication::applicationName() : title);
    box.setText(text);
    box.setIcon(iconOf(icon));
    switch (buttons) {
    case Buttons::Ok:
        box.setStandardButtons(QMessageBox::Ok);
        break;
    case Buttons::YesNo:
    case Buttons::NoYes:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        break;
    case Buttons::YesNoCancel:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        break;
    }
    if (const auto *row = box.findChild<QDialogButtonBox *>())
        ButtonIcons::settle(*row);
    if (buttons != Buttons::Ok)
        box.setDefaultButton(buttons == Buttons::NoYes ? QMessageBox::No : QMessageBox::Yes);
    replaceLabel(box);
    switch (box.exec()) {
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    case QMessageBox::Cancel:
        return Answer::Cancel;
    default:
        return Answer::Ok;
    }
}

} // namespace MsgBox
