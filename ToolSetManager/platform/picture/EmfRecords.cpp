#include "platform/picture/EmfRecords.h"

#include <cmath>
#include <cstring>

double EmfRecord::real(qsizetype offset) const
{
    const auto raw = at<quint32>(offset);
    float value = 0;
    static_assert(sizeof(raw) == sizeof(value));
    std::memcpy(&value, &raw, sizeof(value));
    return std::isfinite(value) ? double(value) : 0;
}

QColor EmfRecord::colour(qsizetype offset) const
{
    return {at<quint8>(offset), at<quint8>(offset + 1), at<quint8>(offset + 2)};
}

QRectF EmfRecord::rectangle(qsizetype offset) const
{
    return {QPointF(point(offset)), QPointF(point(offset + 8))};
}

QByteArrayView EmfRecord::part(qsizetype field) const
{
    const qint64 offset = count(field);
    const qint64 size = count(field + 4);
    if (offset < 8 || offset > bytes.size() || size > bytes.size() - offset)
        return {};
    return bytes.sliced(offset, size);
}

bool EmfHeader::recognises(QByteArrayView metafile)
{
    constexpr quint32 signature = 0x464D4520;
    return LittleEndian::at<quint32>(metafile, 0) == EmfRecord::Header
        && LittleEndian::at<quint32>(metafile, 40) == signature;
}

std::optional<EmfHeader> EmfHeader::read(QByteArrayView metafile)
{
    constexpr qsizetype shortest = 88;
    constexpr qsizetype withMicrometres = 108;
    if (!recognises(metafile))
        return std::nullopt;
    const auto record = EmfReader(metafile).next();
    if (!record || record->bytes.size() < shortest)
        return std::nullopt;
    EmfHeader header;
    header.bounds = record->rectangle(8).adjusted(0, 0, 1, 1); // its last pixels are inside
    header.frame = record->rectangle(24);
    header.objects = record->at<quint16>(56);
    header.device = QSizeF(record->number(72), record->number(76));
    header.millimetres = QSizeF(record->number(80), record->number(84));
    if (record->bytes.size() >= withMicrometres && record->number(100) > 0
        && record->number(104) > 0)
        header.millimetres = QSizeF(record->number(100), record->number(104)) / 1000;
    if (header.device.isEmpty() || header.millimetres.isEmpty()) {
        header.device = {96, 96};
        header.millimetres = {25.4, 25.4};
    }
    return header;
}

QRectF EmfHeader::frameOnDevice() const
{
    if (frame.isEmpty())
        return bounds;
    constexpr double unitsPerMillimetre = 100;
    const double x = device.width() / millimetres.width() / unitsPerMillimetre;
    const double y = device.height() / millimetres.height() / unitsPerMillimetre;
    return {frame.x() * x, frame.y() * y, frame.width() * x, frame.height() * y};
}

std::optional<EmfRecord> EmfReader::next()
{
    constexpr qsizetype shortest = 8;
    const qint64 size = LittleEndian::at<quint32>(m_rest, 4);
    if (size < shortest || size > m_rest.size())
        return std::nullopt;
    EmfRecord record {LittleEndian::at<quint32>(m_rest, 0), m_rest.first(size)};
    m_rest = m_rest.sliced(size);
    if (record.type == EmfRecord::EndOfFile)
        return std::nullopt;
    return record;
}
