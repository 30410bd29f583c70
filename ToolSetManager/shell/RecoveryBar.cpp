#include "shell/RecoveryBar.h"

#include "platform/desktop/Icons.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

namespace {

QString textFor(const QStringList &titles)
{
    if (titles.size() == 1) {
        return QStringLiteral("The program ended before the changes to \"%1\" were saved.")
            .arg(titles.constFirst());
    }
    return QStringLiteral("The program ended before the changes to %1 tool sets were saved: %2")
        .arg(titles.size())
        .arg(titles.join(QStringLiteral(", ")));
}

/// \a share of the second colour, so that the bar stands out a little on a light and on a dark
/// desktop.
QColor mixed(const QColor &first, const QColor &second, double share)
{
    const auto mix = [share](double a, double b) { return a + (b - a) * share; };
    return QColor::fromRgbF(static_cast<float>(mix(first.redF(), second.redF())),
        static_cast<float>(mix(first.greenF(), second.greenF())),
        static_cast<float>(mix(first.blueF(), second.blueF())));
}

} // namespace

RecoveryBar::RecoveryBar(const QStringList &titles, QWidget *parent)
    : QWidget(parent)
    , m_text(textFor(titles))
    , lblIcon(new QLabel(this))
    , lblText(new QLabel(this))
    , cmdRecover(new QPushButton(QStringLiteral("&Recover"), this))
    , cmdDiscard(new QPushButton(QStringLiteral("&Discard"), this))
{
    setObjectName(QStringLiteral("recoveryBar"));
    setAccessibleName(m_text);
    cmdRecover->setObjectName(QStringLiteral("cmdRecover"));
    cmdRecover->setToolTip(QStringLiteral("Open what was not saved as untitled tool sets"));
    cmdDiscard->setObjectName(QStringLiteral("cmdDiscard"));
    cmdDiscard->setToolTip(QStringLiteral("Delete what was not saved"));
    connect(cmdRecover, &QPushButton::clicked, this, &RecoveryBar::recover);
    connect(cmdDiscard, &QPushButton::clicked, this, &RecoveryBar::discard);
    lblText->setTextFormat(Qt::PlainText);
    lblText->setAccessibleName(m_text);
    lblText->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    // A tool tip that is rich text for sure: a file's name may look like it. What it says is said
    // without the marks.
    lblText->setToolTip(QStringLiteral("<span>%1</span>").arg(m_text.toHtmlEscaped()));
    lblText->setAccessibleDescription(m_text);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 8, 5);
    row->setSpacing(8);
    row->addWidget(lblIcon);
    row->addWidget(lblText, 1);
    row->addWidget(cmdRecover);
    row->addWidget(cmdDiscard);
    refreshIcon();
}

void RecoveryBar::refreshIcon()
{
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
    lblIcon->setPixmap(
        Icons::named(QStringLiteral("document-revert"), QStyle::SP_MessageBoxInformation)
            .pixmap(QSize(size, size), devicePixelRatioF()));
}

void RecoveryBar::fitText()
{
    lblText->setText(lblText->fontMetrics().elidedText(m_text, Qt::ElideRight, lblText->width()));
}

void RecoveryBar::paintEvent(QPaintEvent *)
{
    const QColor back = palette().color(QPalette::Window);
    const QColor accent = palette().color(QPalette::Highlight);
    QPainter painter(this);
    painter.fillRect(rect(), mixed(back, accent, 0.2));
    painter.fillRect(0, height() - 1, width(), 1, mixed(back, accent, 0.6));
}

void RecoveryBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fitText();
}

void RecoveryBar::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    fitText();
    // It comes by itself, so a screen reader is told.
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void RecoveryBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        refreshIcon();
}
