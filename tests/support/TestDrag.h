#pragma once

#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

/// Drags onto a widget, as another program or another list does.
namespace TestDrag {

/// Drags data to a place in a widget. What it was told then, for a drop if it was not refused; with
/// IgnoreAction nothing is dropped.
inline Qt::DropAction drop(QWidget *target, const QMimeData &data, const QPoint &place,
    Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction,
    Qt::KeyboardModifiers keys = Qt::NoModifier)
{
    const auto button = Qt::LeftButton;
    QDragEnterEvent enter(place, offered, &data, button, keys);
    QCoreApplication::sendEvent(target, &enter);
    QDragMoveEvent move(place, offered, &data, button, keys);
    QCoreApplication::sendEvent(target, &move);
    if (!enter.isAccepted() || !move.isAccepted()) {
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(target, &leave);
        return Qt::IgnoreAction;
    }
    QDropEvent drop(place, offered, &data, button, keys);
    QCoreApplication::sendEvent(target, &drop);
    return drop.isAccepted() ? drop.dropAction() : Qt::IgnoreAction;
}

/// The same with files.
inline Qt::DropAction dropFiles(QWidget *target, const QStringList &paths,
    Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction,
    Qt::KeyboardModifiers keys = Qt::NoModifier)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls.append(path.contains(u':') ? QUrl(path) : QUrl::fromLocalFile(path));
    data.setUrls(urls);
    return drop(target, data, target->rect().center(), offered, keys);
}

} // namespace TestDrag
