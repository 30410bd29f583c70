#include "toolset/ToolPictures.h"

#include "platform/desktop/mFileUtil.h"
#include "platform/picture/PictureControl.h"
#include "tooledit/ToolFromFile.h"

#include <QDeadlineTimer>

ToolPictures::ToolPictures(const ToolPlaces &places, QObject *parent)
    : QObject(parent)
    , m_places(places)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &ToolPictures::work);
    connect(&m_files, &FileLookup::answered, this, &ToolPictures::work);
}

QImage ToolPictures::picture(const CVBATool &tool)
{
    const QString location = tool.Location();
    const auto known = m_pictures.constFind(location);
    if (known != m_pictures.constEnd())
        return *known;
    if (!m_open.contains(location)) {
        m_open.insert(location, pathOf(location));
        m_timer.start(0);
    }
    return {};
}

QString ToolPictures::pathOf(QString location) const
{
    location = location.trimmed();
    if (location.size() > 1 && location.startsWith(u'"') && location.endsWith(u'"'))
        location = location.sliced(1).chopped(1);
    const QString path = m_places.drives.nativePath(location);
    const bool isBareName = !location.isEmpty() && !location.contains(u'/')
        && !location.contains(u'\\') && DosDrives::drive(location).isNull();
    // As the properties dialog does.
    return isBareName ? mFileUtil::AddSeparator(m_places.macroFolder) + location : path;
}

void ToolPictures::work()
{
    constexpr int pieceOfWork = 15; // milliseconds, a frame of the screen
    const QDeadlineTimer deadline(pieceOfWork);
    if (m_open.isEmpty())
        return;
    for (auto open = m_open.begin(); open != m_open.end();) {
        const FileLookup::State state =
            open->isEmpty() ? FileLookup::State::Missing : m_files.state(*open);
        if (state == FileLookup::State::Pending) {
            ++open;
            continue;
        }
        m_pictures.insert(open.key(), state == FileLookup::State::Found ? read(*open) : QImage());
        open = m_open.erase(open);
        if (deadline.hasExpired()) {
            m_timer.start(0);
            break;
        }
    }
    if (m_open.isEmpty())
        Q_EMIT completed();
}

QImage ToolPictures::read(const QString &path) const
{
    PictureControl picIcon;
    PictureControl picConvert;
    picConvert.resize(CVBATool::pictureSide, CVBATool::pictureSide);
    const bool loaded = ToolFromFile::loadIcon(
        mFileUtil::RealSpelling(path), m_places.macroFolder, picIcon, picConvert);
    return loaded ? picConvert.Picture() : QImage();
}
