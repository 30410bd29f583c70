#pragma once

#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

/// Drags files onto a widget as a file manager does.
namespace TestDrag {

/// What the drag was told, for a drop if it was not refused; with IgnoreAction nothing is dropped.
inline Qt::DropAction dropFiles(QWidget *target, const QStringList &paths,
    Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction,
    Qt::KeyboardModifiers keys = Qt::NoModifier)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls.append(path.contains(u':') ? QUrl(path) : QUrl::fromLocalFile(path));
    data.setUrls(urls);
    const QPoint place = target->rect().center();
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

} // namespace TestDrag
