#include "shell/frmHelp.h"

#include "platform/desktop/Accessible.h"
#include "platform/desktop/Icons.h"
#include "shell/Frame.h"
#include "shell/HelpBrowser.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr int headingRole = Qt::UserRole;

} // namespace

frmHelp::frmHelp(QWidget *parent)
    : QWidget(parent, Qt::Window)
    , tvContents(new QTreeWidget(this))
    , m_browser(new HelpBrowser(this))
{
    Accessible::setRole(*this, QAccessible::Window);
    Accessible::makeDocument(*m_browser);
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(QStringLiteral("Tool Set Manager Help"));
    m_browser->setObjectName(QStringLiteral("manual"));
    m_browser->setAccessibleName(QStringLiteral("Manual"));
    m_browser->setSearchPaths({QStringLiteral(":/help")});
    tvContents->setObjectName(QStringLiteral("tvContents"));
    tvContents->setAccessibleName(QStringLiteral("Contents"));
    tvContents->setHeaderHidden(true);
    tvContents->setTextElideMode(Qt::ElideRight);

    auto *panes = new QSplitter(this);
    panes->setChildrenCollapsible(false);
    panes->addWidget(tvContents);
    panes->addWidget(m_browser);
    panes->setStretchFactor(1, 1);
    panes->setSizes({fontMetrics().averageCharWidth() * 40, 10000});
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(findLine());
    layout->addWidget(panes, 1);
    resize(QSize(1080, 680).boundedTo(screen()->availableSize() * 0.9)); // the pictures fit
    setTabOrder(cmdFindNext, tvContents);
    setTabOrder(tvContents, m_browser);

    connect(m_browser, &HelpBrowser::pageLoaded, this, &frmHelp::fillContents);
    connect(m_browser->verticalScrollBar(), &QScrollBar::valueChanged, this,
        &frmHelp::markCurrentHeading);
    connect(tvContents, &QTreeWidget::itemClicked, this, &frmHelp::tvContents_NodeClick);
    connect(tvContents, &QTreeWidget::itemActivated, this, &frmHelp::tvContents_NodeClick);
    addKeys();
    refreshIcons();
}

QWidget *frmHelp::findLine()
{
    auto *line = new QWidget(this);
    auto *label = new QLabel(QStringLiteral("Fi&nd:"), line);
    txtFind = new QLineEdit(line);
    txtFind->setObjectName(QStringLiteral("txtFind"));
    txtFind->setAccessibleName(QStringLiteral("Find in the manual"));
    txtFind->setToolTip(QStringLiteral("Text in this page (Ctrl+F)"));
    txtFind->setClearButtonEnabled(true);
    txtFind->setMaximumWidth(fontMetrics().averageCharWidth() * 50);
    label->setBuddy(txtFind);
    const auto button = [&](const QString &name, const QString &tip) {
        auto *made = new QToolButton(line);
        made->setObjectName(name);
        made->setToolTip(tip);
        made->setAccessibleName(tip.section(QStringLiteral(" ("), 0, 0));
        made->setAutoRaise(true);
        made->setFocusPolicy(Qt::TabFocus);
        made->setEnabled(false);
        return made;
    };
    cmdFindPrior =
        button(QStringLiteral("cmdFindPrior"), QStringLiteral("Previous match (Shift+F3)"));
    cmdFindNext = button(QStringLiteral("cmdFindNext"), QStringLiteral("Next match (F3)"));
    lblFound = new QLabel(line);
    lblFound->setObjectName(QStringLiteral("lblFound"));
    connect(txtFind, &QLineEdit::textChanged, this, &frmHelp::txtFind_Change);
    connect(cmdFindPrior, &QToolButton::clicked, this, [this] { find(true); });
    connect(cmdFindNext, &QToolButton::clicked, this, [this] { find(false); });

    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->addWidget(label);
    layout->addWidget(txtFind, 1);
    layout->addWidget(cmdFindPrior);
    layout->addWidget(cmdFindNext);
    layout->addWidget(lblFound);
    layout->addStretch(1);
    return line;
}

void frmHelp::addKeys()
{
    const auto key = [this](const QKeySequence &keys, auto act) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, act);
    };
    key(QKeySequence::Find, [this] {
        txtFind->setFocus();
        txtFind->selectAll();
    });
    key(Qt::Key_F3, [this] { find(false); });
    key(Qt::SHIFT | Qt::Key_F3, [this] { find(true); });
    key(Qt::ALT | Qt::Key_Left, [this] { m_browser->backward(); });
    key(Qt::ALT | Qt::Key_Right, [this] { m_browser->forward(); });
}

frmHelp *frmHelp::of(QWidget *dialog)
{
    auto *help = dialog->findChild<frmHelp *>(QString(), Qt::FindDirectChildrenOnly);
    return help ? help : new frmHelp(dialog);
}

void frmHelp::showHelp(const QString &helpFile, const QString &topic)
{
    // No viewer for these files exists here; the manual is in their place.
    const bool addIn = helpFile == QStringView(Frame::addInHelp);
    QUrl page(addIn ? QStringLiteral("addin.md") : QStringLiteral("manual.md"));
    // In a window that shows, each piece that is read would lay out the whole page.
    m_browser->setSource(page);
    show();
    raise();
    activateWindow();
    if (!topic.isEmpty()) { // a place is found in the window's own size
        page.setFragment(topic);
        m_browser->setSource(page);
    }
    m_browser->setFocus();
}

// --- Contents ---

void frmHelp::fillContents()
{
    const QSignalBlocker quiet(tvContents);
    tvContents->clear();
    QTreeWidgetItem *parent = nullptr;
    const auto &headings = m_browser->headings();
    for (int i = 0; i < headings.size(); ++i) {
        auto *node = headings[i].level > 2 && parent ? new QTreeWidgetItem(parent)
                                                     : new QTreeWidgetItem(tvContents);
        node->setText(0, headings[i].text);
        node->setToolTip(0, headings[i].text);
        node->setData(0, headingRole, i);
        if (headings[i].level <= 2)
            parent = node;
    }
    tvContents->expandAll();
    markCurrentHeading();
    tellMatches();
}

void frmHelp::markCurrentHeading()
{
    const int current = m_browser->currentHeading();
    const QSignalBlocker quiet(tvContents);
    for (QTreeWidgetItemIterator node(tvContents); *node; ++node) {
        if ((*node)->data(0, headingRole).toInt() == current)
            tvContents->setCurrentItem(*node);
    }
}

void frmHelp::tvContents_NodeClick(QTreeWidgetItem *node)
{
    QUrl place = m_browser->source();
    place.setFragment(m_browser->headings().at(node->data(0, headingRole).toInt()).anchor);
    m_browser->setSource(place);
}

// --- Find ---

void frmHelp::txtFind_Change(const QString &text)
{
    m_browser->find(text);
    tellMatches();
}

void frmHelp::find(bool backward)
{
    if (txtFind->text().isEmpty())
        txtFind->setFocus();
    m_browser->findNext(backward);
    tellMatches();
}

void frmHelp::tellMatches()
{
    const int count = m_browser->matchCount();
    cmdFindPrior->setEnabled(count > 0);
    cmdFindNext->setEnabled(count > 0);
    if (txtFind->text().isEmpty())
        lblFound->clear();
    else if (count == 0)
        lblFound->setText(QStringLiteral("Not found"));
    else if (m_browser->currentMatch() < 0)
        lblFound->setText(QStringLiteral("%1 found").arg(count));
    else
        lblFound->setText(QStringLiteral("%1 of %2").arg(m_browser->currentMatch() + 1).arg(count));
}

// --- The window ---

void frmHelp::refreshIcons()
{
    cmdFindPrior->setIcon(Icons::named(QStringLiteral("go-up"), QStyle::SP_ArrowUp));
    cmdFindNext->setIcon(Icons::named(QStringLiteral("go-down"), QStyle::SP_ArrowDown));
}

void frmHelp::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && cmdFindNext)
        refreshIcons();
}

void frmHelp::keyPressEvent(QKeyEvent *event)
{
    const bool finding = txtFind->hasFocus();
    if (event->key() == Qt::Key_Escape && finding) {
        txtFind->clear();
        m_browser->setFocus();
    } else if (event->key() == Qt::Key_Escape) {
        close();
    } else if (finding && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        find(event->modifiers().testFlag(Qt::ShiftModifier));
    } else {
        QWidget::keyPressEvent(event);
    }
}
