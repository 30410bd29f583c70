#include "model/ToolSetSnapshot.h"

#include "model/ToolFields.h"
#include "platform/desktop/SafeFiles.h"

#include <QDataStream>
#include <QElapsedTimer>

#include <cstring>
#include <new>

namespace {

constexpr char magic[] = "ToolSetSnapshot 1\n";
constexpr quint32 endMark = 0x454E4421;
constexpr qsizetype pieceSize = 256 << 10;

enum TextForm : quint8 { Utf8, Utf16 };

/// UTF-8, which mostly is half as long as what is in memory. Text that is not valid (half a
/// surrogate pair) goes as it is.
void put(QDataStream &stream, const QString &text)
{
    const bool valid = text.isValidUtf16();
    const QByteArray bytes = valid
        ? text.toUtf8()
        : QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    stream << quint8(valid ? Utf8 : Utf16) << qint64(bytes.size());
    stream.writeRawData(bytes.constData(), static_cast<int>(bytes.size()));
}

bool fits(const QDataStream &stream, qint64 size)
{
    return size >= 0 && size <= stream.device()->bytesAvailable();
}

void take(QDataStream &stream, QString &text)
{
    quint8 form = Utf8;
    qint64 size = 0;
    stream >> form >> size;
    if (!fits(stream, size)) {
        stream.setStatus(QDataStream::ReadCorruptData);
        return;
    }
    const QByteArray bytes = stream.device()->read(size);
    if (form == Utf8) {
        text = QString::fromUtf8(bytes);
    } else {
        text.resize(bytes.size() / 2);
        std::memcpy(text.data(), bytes.constData(), static_cast<size_t>(text.size()) * 2);
    }
}

void put(QDataStream &stream, const QImage &picture)
{
    // The formats that pictures have here; they have no gaps between the rows.
    QImage image = picture;
    if (image.format() != QImage::Format_RGB32 && image.format() != QImage::Format_ARGB32
        && image.format() != QImage::Format_ARGB32_Premultiplied) {
        image = image.convertToFormat(
            image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    }
    stream << qint32(image.width()) << qint32(image.height()) << qint32(image.format());
    stream.writeRawData(
        reinterpret_cast<const char *>(image.constBits()), static_cast<int>(image.sizeInBytes()));
}

void take(QDataStream &stream, QImage &picture)
{
    qint32 width = 0;
    qint32 height = 0;
    qint32 format = 0;
    stream >> width >> height >> format;
    if (width == 0 && height == 0)
        return;
    const bool known = format == QImage::Format_RGB32 || format == QImage::Format_ARGB32
        || format == QImage::Format_ARGB32_Premultiplied;
    // The longest side keeps the product within its type.
    constexpr qint32 longest = 1 << 24;
    if (!known || width <= 0 || height <= 0 || width > longest || height > longest
        || !fits(stream, qint64(width) * height * 4)) {
        stream.setStatus(QDataStream::ReadCorruptData);
        return;
    }
    picture = QImage(width, height, static_cast<QImage::Format>(format));
    if (picture.isNull()) {
        stream.setStatus(QDataStream::ReadCorruptData);
        return;
    }
    stream.readRawData(
        reinterpret_cast<char *>(picture.bits()), static_cast<int>(picture.sizeInBytes()));
}

void put(QDataStream &stream, VbBool value)
{
    stream << value.raw();
}

void take(QDataStream &stream, VbBool &value)
{
    qint16 raw = 0;
    stream >> raw;
    value = VbBool::fromRaw(raw);
}

template <class Number>
void put(QDataStream &stream, Number value)
{
    stream << value;
}

template <class Number>
void take(QDataStream &stream, Number &value)
{
    stream >> value;
}

template <class Tool, class Act>
void forEachField(Tool &tool, Act act)
{
    ToolFields::forEach([&](const auto &field) { act(tool.*(field.field)); });
}

template <class Snapshot, class Act>
void forEachHeaderField(Snapshot &snapshot, Act act)
{
    act(snapshot.title);
    act(snapshot.path);
    act(snapshot.FLAGS);
    act(snapshot.Description);
    act(snapshot.LongDescription);
}

/// True when the file begins like a snapshot; the stream stands behind that then.
bool skipMagic(QDataStream &stream)
{
    QByteArray start(sizeof(magic), '\0');
    return stream.readRawData(start.data(), sizeof(magic)) == sizeof(magic)
        && start == QByteArrayView(magic, sizeof(magic));
}

std::optional<ToolSetSnapshot> readWhole(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QDataStream stream(&file);
    const auto taking = [&stream](auto &field) { take(stream, field); };
    ToolSetSnapshot snapshot;
    quint64 count = 0;
    if (!skipMagic(stream))
        return std::nullopt;
    forEachHeaderField(snapshot, taking);
    stream >> count;
    for (quint64 i = 0; i < count && stream.status() == QDataStream::Ok; ++i)
        forEachField(snapshot.tools.emplace_back(), taking);
    quint32 end = 0;
    stream >> end;
    if (stream.status() != QDataStream::Ok || end != endMark)
        return std::nullopt;
    return snapshot;
}

} // namespace

std::optional<ToolSetSnapshot> ToolSetSnapshot::read(const QString &path)
{
    try {
        return readWhole(path);
    } catch (const std::bad_alloc &) {
        return std::nullopt; // a damaged one that claims more than memory holds
    }
}

ToolSetSnapshot::Origin ToolSetSnapshot::readOrigin(const QString &path)
{
    QFile file(path);
    Origin origin;
    if (file.open(QIODevice::ReadOnly)) {
        QDataStream stream(&file);
        try {
            if (skipMagic(stream)) {
                take(stream, origin.title);
                take(stream, origin.path);
            }
        } catch (const std::bad_alloc &) {
            return {};
        }
    }
    return origin;
}

SnapshotWriter::SnapshotWriter(ToolSetSnapshot snapshot, const QString &path)
    : m_snapshot(std::move(snapshot))
    , m_path(path)
    , m_file(path + QStringLiteral(".part"))
{
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered,
            SafeFiles::filePermissions)) {
        m_error = m_file.errorString();
        m_state = State::Failed;
    }
}

SnapshotWriter::~SnapshotWriter()
{
    if (m_state == State::Writing)
        fail();
}

void SnapshotWriter::fail()
{
    m_file.remove();
    m_state = State::Failed;
}

SnapshotWriter::State SnapshotWriter::writeFor(std::chrono::milliseconds time)
{
    QElapsedTimer timer;
    timer.start();
    while (m_state == State::Writing && timer.elapsed() < time.count())
        writePiece();
    return m_state;
}

void SnapshotWriter::writePiece()
{
    QByteArray piece;
    QDataStream stream(&piece, QIODevice::WriteOnly);
    const auto putting = [&stream](const auto &field) { put(stream, field); };
    const bool first = m_file.pos() == 0;
    if (first) {
        stream.writeRawData(magic, sizeof(magic));
        forEachHeaderField(m_snapshot, putting);
        stream << quint64(m_snapshot.tools.size());
    }
    while (m_next < m_snapshot.tools.size() && piece.size() < pieceSize)
        forEachField(m_snapshot.tools[m_next++], putting);
    const bool last = m_next == m_snapshot.tools.size();
    if (last)
        stream << endMark;
    if (m_file.write(piece) != piece.size()) {
        m_error = m_file.errorString();
        fail();
        return;
    }
    if (!last)
        return;
    m_file.close();
    if (SafeFiles::rename(m_file.fileName(), m_path)) {
        m_state = State::Done;
    } else {
        m_error = qt_error_string();
        fail();
    }
}
