#include "platform/desktop/ButtonIcons.h"

#include "platform/desktop/Icons.h"

#include <QDialogButtonBox>
#include <QPushButton>

namespace ButtonIcons {

bool areUsual(const QWidget &dialog)
{
    return dialog.style()->styleHint(QStyle::SH_DialogButtonBox_ButtonsHaveIcons, nullptr, &dialog)
        != 0;
}

void give(QPushButton &button, const QString &icon)
{
    if (areUsual(button))
        button.setIcon(Icons::named(icon));
}

void giveOK(QPushButton &button)
{
    give(button, QStringLiteral("dialog-ok"));
}

void giveCancel(QPushButton &button)
{
    give(button, QStringLiteral("dialog-cancel"));
}

void giveApply(QPushButton &button)
{
    give(button, QStringLiteral("dialog-ok-apply"));
}

void giveHelp(QPushButton &button)
{
    give(button, QStringLiteral("help-contents"));
}

void giveClose(QPushButton &button)
{
    give(button, QStringLiteral("window-close"));
}

void settle(const QDialogButtonBox &buttons)
{
    const auto all = buttons.buttons();
    for (QAbstractButton *each : all) {
        auto *button = qobject_cast<QPushButton *>(each);
        if (!button)
            continue;
        button->setIcon({});
        switch (buttons.standardButton(each)) {
        case QDialogButtonBox::Ok:
        case QDialogButtonBox::Yes:
            giveOK(*button);
            break;
        case QDialogButtonBox::Cancel:
        case QDialogButtonBox::No:
            giveCancel(*button);
            break;
        case QDialogButtonBox::Close:
            giveClose(*button);
            break;
        default:
            break;
        }
    }
}

} // namespace ButtonIcons
