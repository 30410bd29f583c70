#pragma once

#include <Qt>

/// What a list view asks of its model beside the toolkit's roles.
enum ItemRole {
    GhostedRole = Qt::UserRole + 1, ///< True for a row that is drawn faint.
    MarkRole ///< A QIcon for the end of a label; null for none. Its tool tip is the row's.
};
