#pragma once

#include <QObject>

/// The control of that name below \a parent.
template <class Control>
Control *child(const QObject *parent, const char *name)
{
    return parent->findChild<Control *>(QLatin1String(name));
}
