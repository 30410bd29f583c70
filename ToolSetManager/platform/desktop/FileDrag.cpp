#include "platform/desktop/FileDrag.h"

#include <QCursor>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

namespace FileDrag {

QStringList paths(const QDropEvent &event)
{
    QStringList found;
    if (!event.mimeData()->hasUrls())
        return found;
    const auto urls = event.mimeData()->urls();
    for (const QUrl &url : urls) {
        const QString path = url.toLocalFile();
        if (QFileInfo(path).isFile())
            found.append(QDir::toNativeSeparators(path));
    }
    return found;
}

QString names(const QStringList &paths)
{
    QStringList found;
    for (const QString &path : paths)
        found.append(QFileInfo(path).fileName());
    return found.join(QStringLiteral(", "));
}

void answer(QDropEvent &event, bool fits)
{
    const bool copies = event.possibleActions().testFlag(Qt::CopyAction);
    const bool links = event.possibleActions().testFlag(Qt::LinkAction);
    // While the hourglass stands windows only paint; drags of other programs come through all the
    // same, and a set that is just being written must not change.
    const QCursor *pointer = QGuiApplication::overrideCursor();
    const bool busy = pointer && pointer->shape() == Qt::WaitCursor;
    if (!fits || busy || (!copies && !links)) {
        event.ignore();
        return;
    }
    event.setDropAction(copies ? Qt::CopyAction : Qt::LinkAction);
    event.accept();
}

} // namespace FileDrag
