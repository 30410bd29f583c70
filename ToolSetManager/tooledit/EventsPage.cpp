#include "tooledit/EventsPage.h"

#include "platform/desktop/Accessible.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>

#include <algorithm>

EventsPage::EventsPage(QWidget *parent)
    : QWidget(parent)
    , sstEvents(new QTabWidget(this))
{
    sstEvents->setObjectName(QStringLiteral("sstEvents"));
    sstEvents->setAccessibleName(QStringLiteral("Groups of events"));
    sstEvents->setUsesScrollButtons(true);
    for (int group = 0; group < VbEvents::groupCount; ++group) {
        sstEvents->addTab(
            groupPage(group), VbEvents::text(VbEvents::groups[std::size_t(group)].caption));
    }
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(sstEvents);
}

QWidget *EventsPage::groupPage(int index)
{
    constexpr int rows = 5;
    const auto g = static_cast<std::size_t>(index);
    const VbEvents::Group &group = VbEvents::groups[g];
    auto *page = new QWidget(sstEvents);
    Accessible::setRole(*page, QAccessible::Grouping);
    page->setAccessibleName(VbEvents::text(group.caption));
    auto *boxes = new QGridLayout;
    boxes->setHorizontalSpacing(24);
    for (int i = group.first; i <= group.last; ++i) {
        const auto n = static_cast<std::size_t>(i);
        const VbEvents::Event &event = VbEvents::events[n];
        auto *box = new QCheckBox(VbEvents::text(event.caption), page);
        box->setObjectName(QStringLiteral("chkEvent%1").arg(i));
        // The same captions stand in several groups.
        box->setToolTip(VbEvents::text(event.name));
        connect(box, &QCheckBox::toggled, this, [this, i] { Q_EMIT chkEvent_Click(i); });
        chkEvent[n] = box;
        boxes->addWidget(box, (i - group.first) % rows, (i - group.first) / rows);
    }
    boxes->setColumnStretch(2, 1);

    cmdSelectAll[g] = new QPushButton(QStringLiteral("Select &All"), page);
    cmdSelectAll[g]->setObjectName(QStringLiteral("cmdSelectAll%1").arg(index));
    cmdSelectNone[g] = new QPushButton(QStringLiteral("Select &None"), page);
    cmdSelectNone[g]->setObjectName(QStringLiteral("cmdSelectNone%1").arg(index));
    auto *buttons = new QHBoxLayout;
    for (QPushButton *button : {cmdSelectAll[g], cmdSelectNone[g]})
        buttons->addWidget(button);
    buttons->addStretch(1);
    connect(
        cmdSelectAll[g], &QPushButton::clicked, this, [this, index] { cmdSelectAll_Click(index); });
    connect(cmdSelectNone[g], &QPushButton::clicked, this,
        [this, index] { cmdSelectNone_Click(index); });

    auto *layout = new QVBoxLayout(page);
    layout->addLayout(boxes);
    layout->addStretch(1);
    layout->addLayout(buttons);
    return page;
}

QSize EventsPage::sizeHint() const
{
    const QMargins margins = layout()->contentsMargins();
    const int tabs = sstEvents->tabBar()->sizeHint().width() + margins.left() + margins.right();
    return QWidget::sizeHint().expandedTo({tabs, 0});
}

void EventsPage::giveFocus()
{
    const auto ticked = std::find_if(
        chkEvent.begin(), chkEvent.end(), [](const QCheckBox *box) { return box->isChecked(); });
    const auto event = ticked == chkEvent.end() ? 0 : int(ticked - chkEvent.begin());
    for (int group = 0; group < VbEvents::groupCount; ++group) {
        if (event <= VbEvents::groups[std::size_t(group)].last) {
            sstEvents->setCurrentIndex(group);
            break;
        }
    }
    chkEvent[std::size_t(event)]->setFocus(Qt::TabFocusReason);
}

void EventsPage::setEvents(qint32 mask)
{
    for (int i = 0; i < VbEvents::eventCount; ++i)
        chkEvent[std::size_t(i)]->setChecked(VbEvents::contains(mask, i));
}

qint32 EventsPage::events(qint32 former) const
{
    qint32 mask = former;
    for (int i = 0; i < VbEvents::eventCount; ++i)
        mask = VbEvents::with(mask, i, chkEvent[std::size_t(i)]->checkState() == Qt::Checked);
    return mask;
}

void EventsPage::cmdSelectAll_Click(int Index)
{
    setGroupByIndex(Index, true);
}

void EventsPage::cmdSelectNone_Click(int Index)
{
    setGroupByIndex(Index, false);
}

void EventsPage::setGroupByIndex(int Index, bool on)
{
    switch (Index) {
    case 0:
        SetFileEvents(on);
        break;
    case 1:
        SetReferenceEvents(on);
        break;
    case 2:
        SetSelControlEvents(on);
        break;
    case 3:
        SetControlEvents(on);
        break;
    case 4:
        SetComponentEvents(on);
        break;
    case 5:
        SetProjectEvents(on);
        break;
    default:
        break;
    }
}

void EventsPage::setGroup(std::size_t group, bool on)
{
    for (int i = VbEvents::groups[group].first; i <= VbEvents::groups[group].last; ++i)
        chkEvent[std::size_t(i)]->setChecked(on);
}
