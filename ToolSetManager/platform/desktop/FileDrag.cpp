#include "platform/desktop/FileDrag.h"

#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
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
    if (!fits || (!copies && !links)) {
        event.ignore();
        return;
    }
    event.setDropAction(copies ? Qt::CopyAction : Qt::LinkAction);
    event.accept();
}

} // namespace FileDrag
