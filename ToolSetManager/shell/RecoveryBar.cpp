#include "shell/RecoveryBar.h"

#include <QPushButton>

namespace {

QString textFor(const QStringList &titles)
{
    if (titles.size() == 1)
        return QStringLiteral("The changes to \"%1\" were not saved.").arg(titles.constFirst());
    return QStringLiteral("The changes to %1 tool sets were not saved: %2")
        .arg(titles.size())
        .arg(titles.join(QStringLiteral(", ")));
}

} // namespace

RecoveryBar::RecoveryBar(const QStringList &titles, QWidget *parent)
    : NoticeBar(textFor(titles), QStringLiteral("document-revert"), parent)
{
    setObjectName(QStringLiteral("recoveryBar"));
    const auto *cmdRecover = addButton(QStringLiteral("cmdRecover"), QStringLiteral("&Recover"),
        QStringLiteral("Open what was not saved as untitled tool sets"));
    const auto *cmdDiscard = addButton(QStringLiteral("cmdDiscard"), QStringLiteral("&Discard"),
        QStringLiteral("Delete what was not saved"));
    connect(cmdRecover, &QPushButton::clicked, this, &RecoveryBar::recover);
    connect(cmdDiscard, &QPushButton::clicked, this, &RecoveryBar::discard);
}
