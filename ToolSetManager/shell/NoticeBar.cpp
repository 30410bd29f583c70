#include "shell/NoticeBar.h"

#include "platform/desktop/Icons.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

namespace {

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

NoticeBar::NoticeBar(const QString &text, const QString &icon, QWidget *parent)
    : QWidget(parent)
    , m_text(text)
    , m_icon(icon)
    , m_row(new QHBoxLayout(this))
    , lblIcon(new QLabel(this))
    , lblText(new QLabel(this))
{
    setObjectName(QStringLiteral("noticeBar"));
    setAccessibleName(m_text);
    lblText->setTextFormat(Qt::PlainText);
    lblText->setAccessibleName(m_text);
    lblText->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    // A tool tip that is rich text for sure: a file's name may look like it. What it says is said
    // without the marks.
    lblText->setToolTip(QStringLiteral("<span>%1</span>").arg(m_text.toHtmlEscaped()));
    lblText->setAccessibleDescription(m_text);
    m_row->setContentsMargins(8, 4, 8, 5);
    m_row->setSpacing(8);
    m_row->addWidget(lblIcon);
    m_row->addWidget(lblText, 1);
    refreshIcon();
}

QPushButton *NoticeBar::addButton(
    const QString &name, const QString &caption, const QString &toolTip)
{
    auto *button = new QPushButton(caption, this);
    button->setObjectName(name);
    button->setToolTip(toolTip);
    m_row->addWidget(button);
    return button;
}

void NoticeBar::refreshIcon()
{
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
    lblIcon->setPixmap(Icons::named(m_icon, QStyle::SP_MessageBoxInformation)
                           .pixmap(QSize(size, size), devicePixelRatioF()));
}

void NoticeBar::fitText()
{
    lblText->setText(lblText->fontMetrics().elidedText(m_text, Qt::ElideRight, lblText->width()));
}

void NoticeBar::paintEvent(QPaintEvent *)
{
    const QColor back = palette().color(QPalette::Window);
    const QColor accent = palette().color(QPalette::Highlight);
    QPainter painter(this);
    painter.fillRect(rect(), mixed(back, accent, 0.2));
    painter.fillRect(0, height() - 1, width(), 1, mixed(back, accent, 0.6));
}

void NoticeBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fitText();
}

void NoticeBar::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    fitText();
    // It comes by itself, so a screen reader announces it.
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void NoticeBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        refreshIcon();
}
