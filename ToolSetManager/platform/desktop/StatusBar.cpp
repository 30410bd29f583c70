#include "platform/desktop/StatusBar.h"

#include <QLabel>
#include <QPainter>

namespace {

class PanelLabel : public QLabel
{
public:
    explicit PanelLabel(QWidget *parent)
        : QLabel(parent)
    {
        setTextFormat(Qt::PlainText);
        setMinimumWidth(40);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        const QRect inside = contentsRect().adjusted(4, 0, -4, 0);
        painter.drawText(inside, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
            fontMetrics().elidedText(text(), Qt::ElideMiddle, inside.width()));
    }
};

} // namespace

StatusBar::StatusBar(const QList<int> &shares, QWidget *parent)
    : QStatusBar(parent)
{
    for (const int share : shares) {
        auto *panel = new PanelLabel(this);
        panel->setObjectName(QStringLiteral("panel%1").arg(m_panels.size() + 1));
        addPermanentWidget(panel, share);
        m_panels.append(panel);
    }
}

QString StatusBar::panelText(int panel) const
{
    return m_panels.at(panel - 1)->text();
}

void StatusBar::setPanelText(int panel, const QString &text)
{
    m_panels.at(panel - 1)->setText(text);
}
