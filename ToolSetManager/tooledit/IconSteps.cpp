#include "tooledit/IconSteps.h"

#include "platform/desktop/Icons.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>

IconSteps::IconSteps(QWidget *dialog)
    : QWidget(dialog)
{
    setObjectName(QStringLiteral("picIcoCtrl"));
    cmdIcon = {makeButton(0, QStringLiteral("Previous icon"),
                   Icons::named(QStringLiteral("go-previous"), QStyle::SP_ArrowLeft), Qt::Key_Left),
        makeButton(1, QStringLiteral("Next icon"),
            Icons::named(QStringLiteral("go-next"), QStyle::SP_ArrowRight), Qt::Key_Right)};
    txtIcon = new QLineEdit(QStringLiteral("1 of 16"), this);
    txtIcon->setObjectName(QStringLiteral("txtIcon"));
    txtIcon->setAccessibleName(QStringLiteral("Icon"));
    txtIcon->setReadOnly(true);
    txtIcon->setAlignment(Qt::AlignCenter);
    txtIcon->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("1000 of 1000 ")));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(cmdIcon[0]);
    layout->addWidget(txtIcon, 1);
    layout->addWidget(cmdIcon[1]);
}

QPushButton *IconSteps::makeButton(int index, const QString &name, const QIcon &icon, Qt::Key key)
{
    const QKeySequence shortcut(Qt::ALT | key);
    auto *button = new QPushButton(this);
    button->setObjectName(QStringLiteral("cmdIcon%1").arg(index));
    button->setIcon(icon);
    button->setAccessibleName(name);
    button->setToolTip(
        name + QStringLiteral(" (") + shortcut.toString(QKeySequence::NativeText) + u')');
    // Not the button's own shortcut: that runs its animation first, and so a key held down would
    // step only once.
    connect(new QShortcut(shortcut, parentWidget()), &QShortcut::activated, this,
        [this, index] { Q_EMIT Click(index); });
    connect(button, &QPushButton::clicked, this, [this, index] { Q_EMIT Click(index); });
    return button;
}

void IconSteps::showNumber(int number, int count)
{
    txtIcon->setText(QString::number(number) + QStringLiteral(" of ") + QString::number(count));
}

QList<QWidget *> IconSteps::fields() const
{
    return {cmdIcon[0], txtIcon, cmdIcon[1]};
}
