#include "toolset/CheckPanel.h"

#include "platform/desktop/Icons.h"
#include "toolset/FindingsModel.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QToolButton>
#include <QTreeView>

CheckPanel::CheckPanel(QWidget *parent)
    : QWidget(parent)
    , m_model(new FindingsModel(this))
    , m_grip(new QWidget(this))
    , lblFindings(new QLabel(this))
    , tvwFindings(new QTreeView(this))
{
    setObjectName(QStringLiteral("checkPanel"));
    setAccessibleName(QStringLiteral("Check"));
    setFocusProxy(tvwFindings);
    m_grip->setFixedHeight(4);
    m_grip->setCursor(Qt::SplitVCursor);
    m_grip->installEventFilter(this);
    lblFindings->setObjectName(QStringLiteral("lblFindings"));
    lblFindings->setTextFormat(Qt::PlainText);
    lblFindings->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    auto *row = new QHBoxLayout;
    row->setContentsMargins(6, 0, 2, 0);
    row->setSpacing(2);
    row->addWidget(lblFindings, 1);
    const auto add = [&](const char *name, const char *caption, const char *toolTip, auto signal) {
        QToolButton *button = addButton(
            QString::fromLatin1(name), QString::fromLatin1(caption), QString::fromLatin1(toolTip));
        connect(button, &QToolButton::clicked, this, signal);
        row->addWidget(button);
        return button;
    };
    add("cmdDrives", "Drives...", "Choose the folders in which drives such as C: are looked up",
        &CheckPanel::drivesRequested);
    add("cmdPreviewFindings", "Preview...", "Show the findings as they are printed",
        &CheckPanel::previewRequested);
    add("cmdPrintFindings", "Print...", "Print the findings", &CheckPanel::printRequested);
    QToolButton *close =
        add("cmdCloseCheck", "", "Close the check (Escape)", &CheckPanel::closeRequested);
    close->setIcon(Icons::named(QStringLiteral("window-close"), QStyle::SP_TitleBarCloseButton));
    setUpView();
    hide();

    auto *all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(1);
    all->addWidget(m_grip);
    all->addLayout(row);
    all->addWidget(tvwFindings, 1);
}

QToolButton *CheckPanel::addButton(
    const QString &name, const QString &caption, const QString &toolTip)
{
    auto *button = new QToolButton(this);
    button->setObjectName(name);
    button->setText(caption);
    button->setToolTip(toolTip);
    button->setAccessibleName(caption.isEmpty() ? toolTip : QString(caption).remove(u'.'));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->installEventFilter(this); // for Escape
    return button;
}

void CheckPanel::setUpView()
{
    tvwFindings->setObjectName(QStringLiteral("tvwFindings"));
    tvwFindings->setAccessibleName(QStringLiteral("Findings"));
    tvwFindings->setAccessibleDescription(
        QStringLiteral("Enter opens the field in the properties of the tool"));
    tvwFindings->setModel(m_model);
    tvwFindings->setRootIsDecorated(false);
    tvwFindings->setItemsExpandable(false);
    tvwFindings->setUniformRowHeights(true);
    tvwFindings->setAllColumnsShowFocus(true);
    tvwFindings->header()->setSortIndicator(
        FindingsModel::SeverityColumn, Qt::DescendingOrder); // as the model begins
    tvwFindings->setSortingEnabled(true);
    const int letter = fontMetrics().averageCharWidth();
    const int widths[] = {letter * 20, letter * 22, letter * 16, letter * 62};
    for (int column = 0; column < FindingsModel::AdviceColumn; ++column)
        tvwFindings->setColumnWidth(column, widths[column]);
    tvwFindings->installEventFilter(this);
    connect(tvwFindings, &QTreeView::clicked, this,
        [this](const QModelIndex &index) { choose(index.row()); });
}

// --- Findings ---

void CheckPanel::setFindings(const QList<ToolCheck::Row> &findings, const QString &summary)
{
    m_model->setFindings(findings);
    lblFindings->setText(summary);
    if (!tvwFindings->currentIndex().isValid() && m_model->rowCount() > 0)
        tvwFindings->setCurrentIndex(m_model->index(0, 0));
}

void CheckPanel::choose(int row)
{
    if (row < 0 || row >= m_model->rowCount())
        return;
    const ToolCheck::Row &found = m_model->findingAt(row);
    Q_EMIT chosen(found.tool, QLatin1StringView(found.finding.field));
}

bool CheckPanel::keyPressed(int key)
{
    if (key == Qt::Key_Escape) {
        Q_EMIT closeRequested();
        return true;
    }
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && tvwFindings->hasFocus()) {
        choose(tvwFindings->currentIndex().row());
        return true;
    }
    return false;
}

// --- Height ---

int CheckPanel::heightIn(int room) const
{
    const int row = fontMetrics().height() + 8;
    const int usual = qMax(room * 2 / 5, row * 5);
    // Three rows of the list stay.
    return qBound(0, m_chosenHeight > 0 ? m_chosenHeight : usual, qMax(0, room - row * 3));
}

bool CheckPanel::gripEvent(QEvent *event)
{
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseMove)
        return false;
    const auto *mouse = static_cast<QMouseEvent *>(event);
    if (!(mouse->buttons() & Qt::LeftButton))
        return false;
    const int y = mapToParent(m_grip->mapTo(this, mouse->position().toPoint())).y();
    if (event->type() == QEvent::MouseButtonPress) {
        m_gripOffset = y - geometry().top();
    } else {
        m_chosenHeight = qMax(1, geometry().bottom() + 1 - (y - m_gripOffset));
        Q_EMIT heightChanged();
    }
    return true;
}

// --- Events ---

bool CheckPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_grip)
        return gripEvent(event);
    if (event->type() == QEvent::KeyPress && keyPressed(static_cast<QKeyEvent *>(event)->key()))
        return true;
    return QWidget::eventFilter(watched, event);
}

void CheckPanel::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        m_model->refreshIcons();
        Q_EMIT iconsChanged();
    }
}
