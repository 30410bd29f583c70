#pragma once

#include <QObject>
#include <QVariant>

/// The tag of a control or menu item: a text that says something about it to the program, not to
/// the user. Empty where none was set.
namespace Tag {

inline QString of(const QObject &object)
{
    return object.property("Tag").toString();
}

inline void set(QObject &object, const QString &tag)
{
    object.setProperty("Tag", tag);
}

} // namespace Tag
