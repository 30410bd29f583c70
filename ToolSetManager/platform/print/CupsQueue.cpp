#include "platform/print/CupsQueue.h"

#include <QFile>
#include <QLibrary>

namespace {

// As the library's interface has them; an option is opaque here.
using Option = void;
using AddOption = int (*)(const char *name, const char *value, int count, Option **options);
using FreeOptions = void (*)(int count, Option *options);
using PrintFile = int (*)(
    const char *queue, const char *path, const char *title, int count, Option *options);
using LastErrorString = const char *(*)();

} // namespace

QString CupsQueue::submit(const QString &queue, const QString &path, const QString &title,
    const QList<QPair<QByteArray, QByteArray>> &options)
{
    QLibrary cups(QStringLiteral("cups"), 2);
    const auto addOption = reinterpret_cast<AddOption>(cups.resolve("cupsAddOption"));
    const auto freeOptions = reinterpret_cast<FreeOptions>(cups.resolve("cupsFreeOptions"));
    const auto printFile = reinterpret_cast<PrintFile>(cups.resolve("cupsPrintFile"));
    const auto lastError = reinterpret_cast<LastErrorString>(cups.resolve("cupsLastErrorString"));
    if (!addOption || !freeOptions || !printFile || !lastError)
        return cups.errorString();

    Option *list = nullptr;
    int count = 0;
    for (const auto &[name, value] : options)
        count = addOption(name.constData(), value.constData(), count, &list);
    const int job = printFile(queue.toUtf8().constData(), QFile::encodeName(path).constData(),
        title.toUtf8().constData(), count, list);
    freeOptions(count, list);
    if (job > 0)
        return {};
    const QString reason = QString::fromUtf8(lastError());
    return reason.isEmpty() ? QStringLiteral("The print service does not answer.") : reason;
}
