#include "platform/desktop/StatusBar.h"

#include "platform/desktop/DesktopProgram.h"
#include "platform/desktop/Icons.h"

#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QToolButton>

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
    if (cmdOpen && panel == m_resultPanel)
        cmdOpen->hide();
}

void StatusBar::showResult(int panel, const QString &text, const QString &file)
{
    setPanelText(panel, text);
    m_resultPanel = panel;
    m_result = file;
    if (file.isEmpty()) {
        if (cmdOpen)
            cmdOpen->hide();
        return;
    }
    if (!cmdOpen)
        makeOpenButton();
    cmdOpen->setIcon(Icons::named(QStringLiteral("document-open"), QStyle::SP_DialogOpenButton));
    cmdOpen->setToolTip(QStringLiteral("Open \"%1\"").arg(file));
    cmdOpen->show();
}

void StatusBar::makeOpenButton()
{
    cmdOpen = new QToolButton;
    cmdOpen->setObjectName(QStringLiteral("cmdOpen"));
    cmdOpen->setText(QStringLiteral("Open"));
    cmdOpen->setAccessibleName(QStringLiteral("Open"));
    cmdOpen->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    cmdOpen->setAutoRaise(true);
    cmdOpen->setFocusPolicy(Qt::TabFocus);
    const int line = m_panels.constFirst()->sizeHint().height(); // the bar keeps its height
    cmdOpen->setIconSize({line, line});
    cmdOpen->setMaximumHeight(line + 4);
    addPermanentWidget(cmdOpen);
    connect(
        cmdOpen, &QToolButton::clicked, this, [this] { DesktopProgram::open(window(), m_result); });
}

void StatusBar::setFacts(const QStringList &facts)
{
    while (m_facts.size() < facts.size()) {
        auto *label = new QLabel(this);
        label->setObjectName(QStringLiteral("fact%1").arg(m_facts.size() + 1));
        label->setTextFormat(Qt::PlainText);
        label->setContentsMargins(4, 0, 4, 0);
        addPermanentWidget(label);
        m_facts.append(label);
    }
    for (qsizetype i = 0; i < m_facts.size(); ++i) {
        QLabel *label = m_facts[i];
        // A long name must not make the frame wider.
        const int room = label->fontMetrics().averageCharWidth() * 40;
        const QString fact = facts.value(i);
        label->setText(label->fontMetrics().elidedText(fact, Qt::ElideMiddle, room));
        label->setAccessibleName(fact);
        label->setVisible(!fact.isEmpty());
    }
}

void StatusBar::showProgress(const QString &what, int percent)
{
    if (!m_progress) {
        m_progress = new QProgressBar;
        m_progress->setObjectName(QStringLiteral("progress"));
        // No higher than the panels, or the bar would grow for good with its first progress.
        m_progress->setMaximumHeight(m_panels.constFirst()->sizeHint().height());
        insertPermanentWidget(0, m_progress, 1);
    }
    m_progress->setAccessibleName(what);
    m_progress->setFormat(what + QStringLiteral(" - %p%"));
    m_progress->setValue(percent);
    m_progress->show();
}

void StatusBar::endProgress()
{
    if (m_progress)
        m_progress->hide();
}
