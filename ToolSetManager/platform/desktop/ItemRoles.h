#pragma once

#include <QList>
#include <QMetaType>

#include <utility>

/// Parts of a text, each its start and its length.
using TextMarks = QList<std::pair<int, int>>;

/// What a list view asks of its model beside the toolkit's roles.
enum ItemRole {
    GhostedRole = Qt::UserRole + 1, ///< True for a row that is drawn faint.
    FaintRole, ///< True for a row that is drawn faint for another reason.
    MarksRole, ///< TextMarks of what is marked in an item's text: ascending, without overlaps.
    BadgeRole ///< A QIcon for the end of an item; null for none. The tool tip says what it means.
};
