#include "toolset/FindBar.h"

#include "model/ToolSetDocument.h"
#include "platform/desktop/Icons.h"
#include "platform/desktop/ListView.h"
#include "shell/mTSM.h"
#include "toolset/ToolListModel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QToolButton>

#include <algorithm>

namespace {

constexpr std::chrono::milliseconds arrivalPause {100};

} // namespace

FindBar::FindBar(const mTSM &state, const ToolSetDocument &document, ListView &list,
    ToolListModel &model, QWidget *parent)
    : QWidget(parent)
    , m_state(state)
    , m_document(document)
    , m_list(list)
    , m_model(model)
    , txtFind(new QLineEdit(this))
    , lblFound(new QLabel(this))
    , tmrArrivals(new QTimer(this))
{
    setObjectName(QStringLiteral("findBar"));
    hide();
    auto *label = new QLabel(QStringLiteral("Fi&nd:"), this);
    label->setBuddy(txtFind);
    txtFind->setObjectName(QStringLiteral("txtFind"));
    txtFind->setAccessibleName(QStringLiteral("Find tools"));
    txtFind->setPlaceholderText(
        QStringLiteral("words of names, locations, help texts; or kind:macro, enabled:no, ..."));
    txtFind->setToolTip(ToolFilter::hint());
    txtFind->setClearButtonEnabled(true);
    txtFind->setAcceptDrops(false); // tools that are dragged across it are no words
    txtFind->installEventFilter(this);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(6, 0, 2, 4);
    row->addWidget(label);
    row->addWidget(txtFind, 1);
    cmdFindPrior =
        addButton(QStringLiteral("cmdFindPrior"), QStringLiteral("Previous match (Shift+F3)"));
    cmdFindNext = addButton(QStringLiteral("cmdFindNext"), QStringLiteral("Next match (F3)"));
    lblFound->setObjectName(QStringLiteral("lblFound"));
    lblFound->setTextFormat(Qt::PlainText);
    row->addWidget(lblFound);
    cmdCloseFind =
        addButton(QStringLiteral("cmdCloseFind"), QStringLiteral("Show all tools (Escape)"));
    setTabOrder(cmdCloseFind, &list);

    tmrArrivals->setSingleShot(true);
    tmrArrivals->setInterval(arrivalPause);
    connect(txtFind, &QLineEdit::textChanged, this, &FindBar::txtFind_Change);
    connect(cmdFindPrior, &QToolButton::clicked, this, [this] { findNext(false); });
    connect(cmdFindNext, &QToolButton::clicked, this, [this] { findNext(true); });
    connect(cmdCloseFind, &QToolButton::clicked, this, &FindBar::close);
    connect(tmrArrivals, &QTimer::timeout, this, &FindBar::tmrArrivals_Timer);
    connectModel(document);
}

QToolButton *FindBar::addButton(const QString &name, const QString &tip)
{
    auto *button = new QToolButton(this);
    button->setObjectName(name);
    button->setToolTip(tip);
    button->setAccessibleName(tip.section(QStringLiteral(" ("), 0, 0));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    layout()->addWidget(button);
    return button;
}

void FindBar::connectModel(const ToolSetDocument &document)
{
    const ToolFinder &finder = m_model.finder();
    connect(&finder, &ToolFinder::matchesChanged, tmrArrivals, [this] {
        if (!tmrArrivals->isActive())
            tmrArrivals->start();
    });
    connect(&finder, &ToolFinder::completed, this, &FindBar::tmrArrivals_Timer);
    connect(&m_model, &ToolListModel::shownAboutToChange, this, &FindBar::noteSelection);
    connect(&m_model, &ToolListModel::shownChanged, this, &FindBar::restoreSelection);
    connect(&m_model, &ToolListModel::filterGivenUp, this, [this] {
        m_lastWords = txtFind->text();
        const QSignalBlocker quiet(txtFind); // the list shows all already
        txtFind->clear();
        showCount();
    });
    for (const auto change : {&ToolSetDocument::toolsInserted, &ToolSetDocument::toolsRemoved})
        connect(&document, change, this, &FindBar::showCount);
    connect(&document, &ToolSetDocument::reset, this, &FindBar::showCount);
}

// --- Commands ---

void FindBar::open()
{
    showBar();
    txtFind->setFocus(Qt::ShortcutFocusReason);
    txtFind->selectAll();
}

void FindBar::showBar()
{
    if (!isHidden())
        return;
    m_model.prepareFilter();
    refreshIcons(); // not before: at start, windows are made before the theme is known
    show();
    Q_EMIT shown(true);
}

void FindBar::close()
{
    const bool hadKeyboard = isAncestorOf(QApplication::focusWidget());
    txtFind->clear();
    if (isHidden())
        return;
    m_model.endFilter();
    if (hadKeyboard)
        m_list.setFocus();
    hide();
    Q_EMIT shown(false);
    m_list.EnsureVisible();
}

void FindBar::findNext(bool forward)
{
    if (txtFind->text().isEmpty()) {
        if (m_lastWords.isEmpty()) {
            open();
            return;
        }
        showBar();
        txtFind->setText(m_lastWords);
    }
    const int count = m_model.rowCount();
    if (count == 0)
        return;
    const int row = m_list.SelectedItem();
    if (row < 0)
        m_list.setSelectedItem(forward ? 0 : count - 1);
    else
        m_list.setSelectedItem((row + (forward ? 1 : count - 1)) % count);
}

bool FindBar::hidesAll() const
{
    return m_model.rowCount() == 0 && m_document.count() > 0;
}

void FindBar::enterList()
{
    if (m_list.SelectedItem() < 0 && m_model.rowCount() > 0)
        m_list.setSelectedItem(0);
    m_list.setFocus();
}

// --- The field ---

void FindBar::txtFind_Change()
{
    if (!txtFind->text().isEmpty())
        m_lastWords = txtFind->text();
    m_typing = true;
    m_model.setFilter(ToolFilter(txtFind->text()));
    m_typing = false;
    showCount();
}

bool FindBar::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease
        && event->type() != QEvent::ShortcutOverride)
        return QWidget::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    // The list takes Escape for "select nothing" and "give up the cut". It must see neither the
    // press nor the release, nor a repetition, so the keyboard goes there only after the release.
    if (key->key() == Qt::Key_Escape) {
        event->accept();
        if (event->type() == QEvent::KeyPress)
            txtFind->clear();
        else if (event->type() == QEvent::KeyRelease && !key->isAutoRepeat())
            close();
        return true;
    }
    // In a text this one belongs to the text, like the toolkit's own key for it.
    const bool redoes = key->key() == Qt::Key_Y && key->modifiers() == Qt::ControlModifier;
    if (event->type() == QEvent::ShortcutOverride && redoes) {
        event->accept();
        return true;
    }
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    if (redoes) {
        txtFind->redo();
        return true;
    }
    switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        findNext(!key->modifiers().testFlag(Qt::ShiftModifier));
        return true;
    case Qt::Key_Down:
    case Qt::Key_PageDown:
        enterList();
        return true;
    default:
        return QWidget::eventFilter(watched, event);
    }
}

void FindBar::showCount()
{
    const bool finding = !m_model.finder().filter().isEmpty();
    QString text;
    if (finding) {
        text = QStringLiteral("%L1 of %L2").arg(m_model.rowCount()).arg(m_document.count());
        if (!m_model.finder().isComplete())
            text += u'\u2026'; // help texts are still being read
    }
    lblFound->setText(text);
    txtFind->setAccessibleDescription(text);
    cmdFindPrior->setEnabled(finding && m_model.rowCount() > 0);
    cmdFindNext->setEnabled(finding && m_model.rowCount() > 0);
    Q_EMIT countChanged();
}

// --- The list ---

void FindBar::tmrArrivals_Timer()
{
    // No row moves under a label that is being edited, nor under the mouse that drags.
    if (m_list.labelEditor() || m_state.DraggingTools) {
        tmrArrivals->start();
        return;
    }
    tmrArrivals->stop();
    QElapsedTimer timer;
    timer.start();
    m_model.showNewMatches();
    showCount();
    // A list of very many labels takes its time; the rest of it is the user's.
    const std::chrono::milliseconds taken(timer.elapsed());
    tmrArrivals->setInterval(std::max(arrivalPause, 5 * taken));
}

int FindBar::topPosition() const
{
    const int row = m_list.HitTest(QPoint(4, 4));
    return row < 0 ? 0 : m_model.positionAt(row);
}

void FindBar::noteSelection()
{
    m_selected = m_model.positionsOf(m_list.selectedRows());
    const int focused = m_list.focusedItem();
    m_focused = focused < 0 ? 0 : m_model.positionAt(focused);
    m_top = m_typing ? 0 : topPosition();
}

void FindBar::restoreSelection()
{
    m_list.selectRows(m_model.rowsOf(m_selected));
    m_list.setFocusedItem(m_model.rowOf(m_focused));
    if (m_top > 0 && m_model.rowOf(m_top) >= 0)
        m_list.scrollToTop(m_model.rowOf(m_top));
    else if (m_list.SelectedItem() < 0)
        m_list.scrollToTop(0);
    m_selected.clear();
}

// --- The bar ---

void FindBar::refreshIcons()
{
    cmdFindPrior->setIcon(Icons::named(QStringLiteral("go-up"), QStyle::SP_ArrowUp));
    cmdFindNext->setIcon(Icons::named(QStringLiteral("go-down"), QStyle::SP_ArrowDown));
    cmdCloseFind->setIcon(
        Icons::named(QStringLiteral("window-close"), QStyle::SP_TitleBarCloseButton));
}

void FindBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !isHidden())
        refreshIcons();
}
