#pragma once

#include "platform/desktop/Accessible.h"

#include <QHeaderView>
#include <QTreeView>

/// The tables of a comparison: whole rows, several of which can be selected.
namespace RowTable {

inline QTreeView *make(const QString &name, const QString &accessibleName, QWidget *parent)
{
    auto *table = new QTreeView(parent);
    table->setObjectName(name);
    Accessible::setName(*table, accessibleName);
    table->setRootIsDecorated(false);
    table->setAllColumnsShowFocus(true);
    table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    table->header()->setSectionsMovable(false);
    table->header()->setStretchLastSection(true);
    return table;
}

} // namespace RowTable
