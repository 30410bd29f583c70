#pragma once

#include <Qt>

/// What a list view asks of its model beside the toolkit's roles.
enum ItemRole {
    GhostedRole = Qt::UserRole + 1 ///< True for a row that is drawn faint.
};
