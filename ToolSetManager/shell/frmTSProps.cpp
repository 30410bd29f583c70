#include "shell/frmTSProps.h"

#include "model/BmtFormat.h"
#include "model/ToolSetDocument.h"
#include "platform/desktop/ButtonIcons.h"
#include "platform/desktop/HelpTopic.h"
#include "richtext/RTFEditor.h"

#include <QCheckBox>
#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>

namespace {

constexpr qint32 inMenuFlag = 1; // of FLAGS: the add-in lists the set in its menu

} // namespace

frmTSProps::frmTSProps(ToolSetDocument &document, QWidget *parent)
    : QDialog(parent)
    , m_document(document)
    , lbl(new QLabel(QStringLiteral("Short description:")))
    , txtDescription(new QLineEdit)
    , Label1(new QLabel(QStringLiteral("Long Description:")))
    , rtf(new RTFEditor)
    , chkHide(new QCheckBox(QStringLiteral("Do not show in VB Quillon menu")))
    , cmdOK(new QPushButton(QStringLiteral("OK")))
    , cmdCancel(new QPushButton(QStringLiteral("Cancel")))
{
    setObjectName(QStringLiteral("frmTSProps"));
    setWindowTitle(QStringLiteral("Tool Set Properties"));
    txtDescription->setObjectName(QStringLiteral("txtDescription"));
    txtDescription->setMaxLength(BmtFormat::longestString); // or a longer one would be cut by OK
    rtf->setObjectName(QStringLiteral("rtf"));
    rtf->setLongestRTF(BmtFormat::longestString);
    chkHide->setObjectName(QStringLiteral("chkHide"));
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    lbl->setBuddy(txtDescription);
    Label1->setBuddy(rtf);

    ButtonIcons::giveOK(*cmdOK);
    ButtonIcons::giveCancel(*cmdCancel);
    HelpTopic::set(*this, "tool-set-properties");

    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &frmTSProps::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmTSProps::cmdCancel_Click);

    // Tab stays in the text; without this only Shift+Tab leads out of it.
    connect(new QShortcut(Qt::CTRL | Qt::Key_PageDown, this), &QShortcut::activated, chkHide,
        [this] { chkHide->setFocus(Qt::ShortcutFocusReason); });

    auto *commands = new QHBoxLayout;
    commands->addStretch(1);
    commands->addWidget(cmdOK);
    commands->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lbl);
    layout->addWidget(txtDescription);
    layout->addSpacing(4);
    layout->addWidget(Label1);
    layout->addWidget(rtf, 1);
    layout->addWidget(chkHide);
    layout->addSpacing(4);
    layout->addLayout(commands);
    resize(QSize(540, 420).boundedTo(screen()->availableSize() * 0.9));
}

void frmTSProps::setPrinters(Printers &printers)
{
    rtf->setPrinters(printers);
}

void frmTSProps::Form_Load()
{
    if (!Toolset)
        return;
    txtDescription->setText(Toolset->Description());
    rtf->setTextRTF(Toolset->LongDescription());
    chkHide->setChecked((Toolset->FLAGS() & inMenuFlag) == 0);
}

void frmTSProps::Form_Activate()
{
    while (QGuiApplication::overrideCursor())
        QGuiApplication::restoreOverrideCursor();
}

void frmTSProps::showEvent(QShowEvent *event)
{
    if (!std::exchange(m_loaded, true))
        Form_Load();
    QDialog::showEvent(event);
}

void frmTSProps::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        Form_Activate();
}

void frmTSProps::cmdOK_Click()
{
    if (Toolset) {
        const qint32 flags = Toolset->FLAGS();
        m_document.setProperties({txtDescription->text(), rtf->TextRTF(),
            chkHide->isChecked() ? flags & ~inMenuFlag : flags | inMenuFlag});
    }
    accept();
}

void frmTSProps::cmdCancel_Click()
{
    reject();
}
