#include "platform/print/PrintSetupDialog.h"

#include "platform/desktop/ButtonIcons.h"
#include "platform/desktop/HelpTopic.h"
#include "platform/desktop/Hourglass.h"
#include "platform/print/Printers.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

constexpr int sheetBox = 96; ///< Pixels; the longer edge of A4 takes most of it.

/// A sheet with some lines of text on it.
QPixmap drawnSheet(QSizeF paper, double ratio)
{
    QPixmap picture(QSize(sheetBox, sheetBox) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    const QSizeF size = paper.scaled(sheetBox - 12, sheetBox - 12, Qt::KeepAspectRatio);
    const QRectF sheet(
        QPointF((sheetBox - size.width()) / 2, (sheetBox - size.height()) / 2), size);
    painter.fillRect(sheet.translated(2, 2), QColor(0, 0, 0, 80));
    painter.fillRect(sheet, Qt::white);
    painter.setPen(QColor(150, 150, 150));
    painter.drawRect(sheet);
    const double inset = size.width() / 7;
    for (double y = sheet.top() + inset; y < sheet.bottom() - inset; y += 6)
        painter.drawLine(QPointF(sheet.left() + inset, y), QPointF(sheet.right() - inset, y));
    return picture;
}

} // namespace

PrintSetupDialog::PrintSetupDialog(Printers &printers, QWidget *parent)
    : QDialog(parent)
    , m_printers(printers)
    , cboPrinter(new QComboBox)
    , lblPrinter(new QLabel)
    , cboPaper(new QComboBox)
    , optPortrait(new QRadioButton(QStringLiteral("P&ortrait")))
    , optLandscape(new QRadioButton(QStringLiteral("&Landscape")))
    , lblSheet(new QLabel)
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel))
{
    setObjectName(QStringLiteral("PrintSetupDialog"));
    setWindowTitle(QStringLiteral("Print Setup"));
    HelpTopic::set(*this, "printing");
    cboPrinter->setObjectName(QStringLiteral("cboPrinter"));
    cboPaper->setObjectName(QStringLiteral("cboPaper"));
    optPortrait->setObjectName(QStringLiteral("optPortrait"));
    optLandscape->setObjectName(QStringLiteral("optLandscape"));
    lblPrinter->setTextFormat(Qt::PlainText);
    lblPrinter->setWordWrap(true);
    cboPrinter->setMinimumContentsLength(32);
    lblSheet->setFixedSize(sheetBox, sheetBox);

    auto *printerBox = new QGroupBox(QStringLiteral("Printer"));
    auto *printerForm = new QFormLayout(printerBox);
    printerForm->addRow(QStringLiteral("&Name:"), cboPrinter);
    printerForm->addRow(QStringLiteral("Type:"), lblPrinter);

    auto *paperBox = new QGroupBox(QStringLiteral("Paper"));
    auto *paperForm = new QFormLayout(paperBox);
    paperForm->addRow(QStringLiteral("Si&ze:"), cboPaper);
    paperForm->labelForField(cboPaper)->setMinimumWidth(
        printerForm->labelForField(cboPrinter)->sizeHint().width()); // the boxes stand in line

    auto *orientationBox = new QGroupBox(QStringLiteral("Orientation"));
    auto *orientationRow = new QHBoxLayout(orientationBox);
    auto *choices = new QVBoxLayout;
    choices->addStretch();
    choices->addWidget(optPortrait);
    choices->addWidget(optLandscape);
    choices->addStretch();
    orientationRow->addWidget(lblSheet);
    orientationRow->addLayout(choices, 1);

    auto *all = new QVBoxLayout(this);
    all->addWidget(printerBox);
    all->addWidget(paperBox);
    all->addWidget(orientationBox);
    all->addWidget(m_buttons);
    all->setSizeConstraint(QLayout::SetFixedSize);

    {
        Hourglass busy;
        cboPrinter->addItems(m_printers.names());
        cboPrinter->setCurrentText(m_printers.name());
        showPrinter();
        showPaper(m_printers.pageSize());
    }
    const bool landscape = m_printers.orientation() == QPageLayout::Landscape;
    (landscape ? optLandscape : optPortrait)->setChecked(true);
    ButtonIcons::settle(*m_buttons);
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(cboPrinter->count() > 0);

    connect(cboPrinter, &QComboBox::currentIndexChanged, this, &PrintSetupDialog::showPrinter);
    connect(cboPaper, &QComboBox::currentIndexChanged, this, &PrintSetupDialog::showOrientation);
    connect(optLandscape, &QRadioButton::toggled, this, &PrintSetupDialog::showOrientation);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &PrintSetupDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &PrintSetupDialog::reject);
    showOrientation();
}

void PrintSetupDialog::askWhatToPrint(bool hasSelection)
{
    setWindowTitle(QStringLiteral("Print"));
    m_buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("&Print"));
    auto *box = new QGroupBox(QStringLiteral("Text"));
    auto *optAll = new QRadioButton(QStringLiteral("&All"));
    optSelection = new QRadioButton(QStringLiteral("&Selection"));
    optAll->setObjectName(QStringLiteral("optAll"));
    optSelection->setObjectName(QStringLiteral("optSelection"));
    optSelection->setEnabled(hasSelection);
    (hasSelection ? optSelection : optAll)->setChecked(true);
    auto *row = new QHBoxLayout(box);
    row->addWidget(optAll);
    row->addWidget(optSelection);
    row->addStretch();
    auto *all = qobject_cast<QVBoxLayout *>(layout());
    all->insertWidget(all->count() - 1, box);
}

bool PrintSetupDialog::selectionOnly() const
{
    return optSelection && optSelection->isChecked();
}

void PrintSetupDialog::showPrinter()
{
    const QString printer = cboPrinter->currentText();
    lblPrinter->setText(Printers::description(printer));
    const QPageSize former = chosenPaper();
    const QSignalBlocker quiet(cboPaper);
    cboPaper->clear();
    const auto sizes = Printers::pageSizes(printer);
    for (const QPageSize &size : sizes)
        cboPaper->addItem(size.name(), QVariant::fromValue(size));
    showPaper(Printers::defaultPageSize(printer));
    showPaper(former);
    showOrientation();
}

void PrintSetupDialog::showOrientation()
{
    QSizeF paper = chosenPaper().size(QPageSize::Millimeter);
    if (optLandscape->isChecked())
        paper.transpose();
    lblSheet->setPixmap(drawnSheet(paper, devicePixelRatioF()));
}

void PrintSetupDialog::showPaper(const QPageSize &size)
{
    // Several sizes may measure the same; the key tells them apart.
    int found = -1;
    for (int i = cboPaper->count() - 1; i >= 0; --i) {
        const auto offered = cboPaper->itemData(i).value<QPageSize>();
        if (offered.key() == size.key()) {
            found = i;
            break;
        }
        if (offered.isEquivalentTo(size))
            found = i;
    }
    if (found >= 0)
        cboPaper->setCurrentIndex(found);
}

QPageSize PrintSetupDialog::chosenPaper() const
{
    return cboPaper->currentData().value<QPageSize>();
}

void PrintSetupDialog::accept()
{
    m_printers.choose(cboPrinter->currentText(), chosenPaper(),
        optLandscape->isChecked() ? QPageLayout::Landscape : QPageLayout::Portrait);
    QDialog::accept();
}
