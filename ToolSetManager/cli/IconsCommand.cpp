#include "cli/Commands.h"
#include "cli/SetFile.h"
#include "platform/picture/ProgramIcons.h"

#include <QBuffer>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>

namespace {

QString listOf(const std::vector<IconFrame> &frames)
{
    QStringList all;
    for (const IconFrame &frame : frames) {
        all.append(frame.bitsPerPixel > 0
                ? QStringLiteral("%1x%1x%2").arg(frame.size).arg(frame.bitsPerPixel)
                : QStringLiteral("%1x%1").arg(frame.size));
    }
    return all.join(u' ');
}

} // namespace

Session::Result Commands::icons(Session &session, const QCommandLineParser &arguments)
{
    const QStringList paths = arguments.positionalArguments();
    QFile file(paths[0]);
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) {
        QString why = file.errorString();
        if (!file.exists())
            why = QStringLiteral("there is no such file");
        else if (!QFileInfo(file).isFile())
            why = QStringLiteral("not an ordinary file");
        session.error(paths[0], why);
        return Session::Trouble;
    }
    int size = ProgramIcons::usualSize;
    if (arguments.isSet(QStringLiteral("size"))) {
        size = arguments.value(QStringLiteral("size")).toInt();
        if (size < 1 || size > IconFrames::largestSide) {
            session.error({}, QStringLiteral("the size must be a number of pixels"));
            return Session::Trouble;
        }
    }
    const ProgramIcons icons(paths[0]);
    const int count = icons.count();
    if (paths.size() < 2) {
        session.printLine(QStringLiteral("%1 %2").arg(count).arg(count == 1 ? u"icon" : u"icons"));
        for (int i = 0; i < count; ++i)
            session.printLine(QString::number(i) + u'\t' + listOf(icons.frames(i)));
        return Session::Success;
    }
    if (count > 0 && !QDir().mkpath(paths[1])) {
        session.error(paths[1], QStringLiteral("the folder cannot be made"));
        return Session::Trouble;
    }
    for (int i = 0; i < count; ++i) {
        const QImage picture = icons.icon(i, size);
        if (picture.isNull()) {
            session.error(paths[0], QStringLiteral("the icon %1 cannot be read").arg(i));
            continue;
        }
        QBuffer bytes;
        bytes.open(QIODevice::WriteOnly);
        picture.save(&bytes, "PNG");
        if (!SetFile::writeBytes(session, bytes.data(),
                paths[1] + u'/' + QString::number(i) + QStringLiteral(".png")))
            return Session::Trouble;
    }
    return Session::Success;
}
