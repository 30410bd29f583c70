#include "platform/desktop/InstanceRequest.h"

#include "platform/desktop/FileNames.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr char openWord[] = "open ";

} // namespace

namespace InstanceRequest {

QByteArray comeForward()
{
    return QByteArrayLiteral("come forward");
}

QByteArray open(const QString &path)
{
    return openWord + QFile::encodeName(path);
}

QString pathToOpen(const QByteArray &message)
{
    if (!message.startsWith(openWord) || message.contains('\0'))
        return {};
    const QString path = QFile::decodeName(message.mid(sizeof(openWord) - 1));
    const QFileInfo file(path);
    if (!file.isAbsolute() || (!file.isFile() && !FileNames::isUnreadable(path)))
        return {};
    return QDir::toNativeSeparators(path);
}

} // namespace InstanceRequest
