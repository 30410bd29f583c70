#include "shell/frmAbout.h"

#include "platform/desktop/ButtonIcons.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

frmAbout::frmAbout(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About Tool Set Manager"));

    auto *picture = new QLabel(this);
    picture->setPixmap(
        QIcon(QStringLiteral(":/program.svg")).pixmap(QSize(64, 64), devicePixelRatio()));
    picture->setAlignment(Qt::AlignTop);
    picture->setAccessibleName(QStringLiteral("Program icon"));

    auto *name = new QLabel(QCoreApplication::applicationName(), this);
    QFont large = name->font();
    large.setPointSizeF(large.pointSizeF() * 1.3);
    large.setBold(true);
    name->setFont(large);
    auto *version =
        new QLabel(QStringLiteral("Version %1").arg(QCoreApplication::applicationVersion()), this);
    auto *purpose =
        new QLabel(QStringLiteral("Makes and keeps the tool sets of the VB Quillon add-in."), this);
    auto *toolkit =
        new QLabel(QStringLiteral("Built on Qt %1.").arg(QString::fromLatin1(qVersion())), this);
    auto *licence = new QLabel(
        QStringLiteral("Free software under the MIT licence; it comes without any warranty."),
        this);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    ButtonIcons::settle(*buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(6);
    for (QLabel *label : {name, version, purpose, toolkit, licence}) {
        label->setTextFormat(Qt::PlainText);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        texts->addWidget(label);
    }
    auto *upper = new QHBoxLayout;
    upper->setSpacing(18);
    upper->addWidget(picture);
    upper->addLayout(texts);
    auto *all = new QVBoxLayout(this);
    all->setSpacing(14);
    all->addLayout(upper);
    all->addWidget(buttons);
    all->setSizeConstraint(QLayout::SetFixedSize);
}
