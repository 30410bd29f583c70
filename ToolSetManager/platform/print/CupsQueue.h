#pragma once

#include <QList>
#include <QPair>
#include <QString>

/// The system's print service. It is loaded when it is first needed, because most starts of the
/// program print nothing.
namespace CupsQueue {

/// Hands a file to a queue, with options as `lp -o` takes them. Empty when the queue took it, else
/// why not.
QString submit(const QString &queue, const QString &path, const QString &title,
    const QList<QPair<QByteArray, QByteArray>> &options);

} // namespace CupsQueue
