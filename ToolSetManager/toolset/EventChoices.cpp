#include "toolset/EventChoices.h"

#include "model/VbEvents.h"

#include <QHeaderView>

namespace {

enum Column { EventColumn, ChangeColumn };

} // namespace

EventChoices::EventChoices(QWidget *parent)
    : QTreeWidget(parent)
{
    setAccessibleName(QStringLiteral("Events"));
    setHeaderLabels({QStringLiteral("Event"), QStringLiteral("Change")});
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    for (const VbEvents::Group &group : VbEvents::groups) {
        auto *heading = new QTreeWidgetItem(this, {VbEvents::text(group.caption)});
        for (int event = group.first; event <= group.last; ++event) {
            const auto &entry = VbEvents::events[static_cast<size_t>(event)];
            auto *item = new QTreeWidgetItem(heading, {VbEvents::text(entry.name)});
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable | Qt::ItemIsUserTristate);
            item->setCheckState(EventColumn, Qt::PartiallyChecked);
            describe(item);
            m_events.append(item);
        }
        heading->setExpanded(true);
    }
    header()->setStretchLastSection(true);
    resizeColumnToContents(EventColumn);
    setCurrentItem(topLevelItem(0));
    connect(this, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem *item, int column) {
        if (column != EventColumn)
            return;
        describe(item);
        Q_EMIT changed();
    });
}

void EventChoices::describe(QTreeWidgetItem *item)
{
    switch (item->checkState(EventColumn)) {
    case Qt::Checked:
        item->setText(ChangeColumn, QStringLiteral("add"));
        break;
    case Qt::Unchecked:
        item->setText(ChangeColumn, QStringLiteral("remove"));
        break;
    default:
        item->setText(ChangeColumn, QStringLiteral("as it is"));
    }
}

qint32 EventChoices::mask(Qt::CheckState state) const
{
    qint32 mask = 0;
    for (int event = 0; event < VbEvents::eventCount; ++event) {
        if (m_events[event]->checkState(EventColumn) == state)
            mask = VbEvents::with(mask, event, true);
    }
    return mask;
}
