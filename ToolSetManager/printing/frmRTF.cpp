#include "printing/frmRTF.h"

#include "platform/desktop/ButtonIcons.h"
#include "platform/desktop/HelpTopic.h"
#include "platform/print/PdfPath.h"
#include "platform/print/Printers.h"
#include "platform/rtf/RichTextBox.h"
#include "printing/RTFPrinter.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int bandHeight = 360; ///< Twips, of header and footer.

/// A box that is only printed.
RichTextBox *makeBox(const QString &name, const QString &family, double points, QWidget *parent)
{
    auto *box = new RichTextBox(family, points, parent);
    box->setObjectName(name);
    box->hide();
    return box;
}

void setBold(RichTextBox *box)
{
    QFont font = box->font();
    font.setBold(true);
    box->setFont(font);
}

} // namespace

frmRTF::frmRTF(const Printers &printers, QWidget *parent)
    : QWidget(parent, Qt::Dialog)
    , m_printers(printers)
    , rtfHeader(makeBox(QStringLiteral("rtfHeader"), QStringLiteral("Arial"), 10, this))
    , rtfFooter(makeBox(QStringLiteral("rtfFooter"), QStringLiteral("Arial"), 10, this))
    , rtfDocument(
          makeBox(QStringLiteral("rtfDocument"), QStringLiteral("MS Sans Serif"), 8.5, this))
    , lblMsg(new QLabel)
    , cmdCancel(new QPushButton(QStringLiteral("Cancel")))
    , rtfPrint(new RTFPrinter(printers, this))
{
    setObjectName(QStringLiteral("frmRTF"));
    setWindowTitle(QStringLiteral("Printing Document"));
    setWindowModality(Qt::ApplicationModal);
    setAttribute(Qt::WA_DeleteOnClose);
    lblMsg->setObjectName(QStringLiteral("lblMsg"));
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setDefault(true);
    setBold(rtfHeader);
    setBold(rtfFooter);

    auto *all = new QVBoxLayout(this);
    all->addWidget(lblMsg);
    all->addWidget(cmdCancel, 0, Qt::AlignHCenter);
    setMinimumWidth(280);
    Form_Load();
}

void frmRTF::Form_Load()
{
    rtfPrint->HeaderBox = rtfHeader;
    rtfPrint->FooterBox = rtfFooter;
    rtfPrint->DocumentBox = rtfDocument;
    rtfPrint->setHeaderHeight(bandHeight);
    rtfPrint->setFooterHeight(bandHeight);
    connect(rtfPrint, &RTFPrinter::BeginPage, this, &frmRTF::rtfPrint_BeginPage);
    connect(rtfPrint, &RTFPrinter::EndDocument, this, &frmRTF::rtfPrint_EndDocument);
    ButtonIcons::giveCancel(*cmdCancel);
    HelpTopic::set(*this, "printing");
    connect(cmdCancel, &QPushButton::clicked, this, &frmRTF::cmdCancel_Click);
}

void frmRTF::setDocumentText(const QString &rtf)
{
    rtfDocument->setTextRTF(rtf);
}

void frmRTF::PrintDocument()
{
    if (m_printers.name() == Printers::pdfFile()) {
        rtfPrint->FileName = askForPdfPath(parentWidget(), QStringLiteral("Document"));
        if (rtfPrint->FileName.isEmpty()) {
            deleteLater();
            return;
        }
    }
    show();
    m_printing = true;
    rtfPrint->PrintRTF();
}

void frmRTF::rtfPrint_BeginPage(int Page)
{
    const QString text = QStringLiteral("Page ") + QLocale(QLocale::English).toString(Page);
    rtfFooter->setText(text);
    lblMsg->setText(text);
    lblMsg->repaint();
    // Between pages the user's Cancel is heard; the window is modal, so nothing else can be done.
    QCoreApplication::processEvents();
}

void frmRTF::rtfPrint_EndDocument()
{
    m_printing = false;
    close();
}

void frmRTF::cmdCancel_Click()
{
    rtfPrint->Cancel();
}

void frmRTF::closeEvent(QCloseEvent *event)
{
    if (!m_printing)
        return;
    event->ignore(); // it closes itself when the print has ended
    cmdCancel_Click();
}

void frmRTF::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        cmdCancel_Click();
    else
        QWidget::keyPressEvent(event);
}
