#include "model/BmtReader.h"

#include "platform/VbError.h"
#include "platform/text/CodePage.h"

#include <QIODevice>
#include <QtEndian>

#include <algorithm>
#include <cstring>

BmtReader::BmtReader(QByteArrayView bytes)
    : m_size(bytes.size())
    , m_window(bytes)
{
}

BmtReader::BmtReader(QIODevice &file, qsizetype window)
    : m_file(&file)
    , m_size(file.size())
    , m_buffer(std::min<qint64>(window, m_size), Qt::Uninitialized)
{
}

/// Brings the next bytes into the window; what must be kept moves to its start.
bool BmtReader::provide(qint64 count)
{
    const qint64 inWindow = m_windowStart + m_window.size() - m_position;
    if (count <= inWindow)
        return true;
    if (!m_file)
        return false;
    const qint64 kept = m_windowStart + m_window.size() - m_kept;
    const qint64 needed = m_position + count - m_kept;
    const char *from = m_window.data() + (m_kept - m_windowStart);
    if (needed > m_buffer.size()) {
        QByteArray larger(needed, Qt::Uninitialized);
        std::copy_n(from, kept, larger.data());
        m_buffer = std::move(larger);
    } else if (kept > 0) {
        std::memmove(m_buffer.data(), from, static_cast<std::size_t>(kept));
    }
    qint64 filled = kept;
    for (qint64 got = 1; got > 0 && filled < m_buffer.size(); filled += std::max<qint64>(got, 0))
        got = m_file->read(m_buffer.data() + filled, m_buffer.size() - filled);
    m_windowStart = m_kept;
    m_window = QByteArrayView(m_buffer.constData(), filled);
    return filled >= needed;
}

QByteArrayView BmtReader::take(qint64 count)
{
    if (m_pastEnd || count > m_size - m_position || !provide(count)) {
        m_pastEnd = true;
        return {};
    }
    const QByteArrayView part = m_window.sliced(m_position - m_windowStart, count);
    m_position += count;
    return part;
}

template <class T>
T BmtReader::takeNumber()
{
    const QByteArrayView part = take(sizeof(T));
    return m_pastEnd ? T() : qFromLittleEndian<T>(part.data());
}

void BmtReader::takePart(QByteArrayView &field, qint64 count)
{
    const qint64 offset = m_position;
    take(count);
    m_parts[m_partCount++] = {&field, offset, count};
}

void BmtReader::showParts()
{
    for (std::size_t i = 0; i < m_partCount && !m_pastEnd; ++i) {
        const Part &part = m_parts[i];
        *part.field = m_window.sliced(part.offset - m_windowStart, part.size);
    }
    m_partCount = 0;
}

/// False when the counts belong to no picture.
bool BmtReader::takePicture(QByteArrayView &field)
{
    const int dimensions = takeNumber<quint16>();
    qint64 count = dimensions == 0 ? 0 : 1;
    for (int i = 0; i < dimensions && !m_pastEnd; ++i) {
        const qint64 elements = takeNumber<qint32>();
        takeNumber<qint32>(); // lower bound
        if (elements < 0 && !m_pastEnd)
            return false;
        // Checked at each step, so that the product of several counts cannot overflow.
        if (count * elements > m_size)
            m_pastEnd = true;
        else
            count *= elements;
    }
    if (!m_pastEnd && count <= m_size - m_position && count > largestPicture)
        return false;
    takePart(field, count);
    return true;
}

void BmtReader::restart()
{
    m_position = 0;
    m_pastEnd = false;
}

void BmtReader::parseBinaryHeader(BmtFormat::Header &header, const CodePage &codePage)
{
    const auto garbled = [] {
        return VbError(VbError::NotAToolSet, QStringLiteral("CVBATools"),
            QStringLiteral("Not a VB Quillon Tool Set"));
    };
    header.FileVersion = takeNumber<qint16>();
    header.Marker = takeNumber<qint16>();
    header.FLAGS = takeNumber<qint16>();
    header.LongDescription = codePage.decode(take(takeNumber<quint16>()));
    header.Description = codePage.decode(take(takeNumber<quint16>()));
    if (m_pastEnd)
        throw garbled();
    if (header.FileVersion == BmtFormat::oldVersion) {
        header.LongDescription.clear();
        header.FLAGS |= 1;
        return;
    }
    if (header.Marker != BmtFormat::marker)
        throw garbled();
}

bool BmtReader::readHeader(BmtFormat::Header &header, const CodePage &codePage)
{
    restart();
    const QByteArrayView start = take(BmtFormat::textHeaderSize);
    if (!m_pastEnd
        && qstrnicmp(start.data(), BmtFormat::textHeader, BmtFormat::textHeaderSize) == 0) {
        return true;
    }
    restart();
    BmtFormat::Header read;
    try {
        parseBinaryHeader(read, codePage);
    } catch (const VbError &) {
        return false; // A foreign file counts as an empty set, so nobody asks why.
    }
    header = read;
    return true;
}

BmtReader::Found BmtReader::readRecord(BmtFormat::Record &record)
{
    if (m_position == m_size)
        return Found::End;
    m_kept = m_position;
    // In file order, one statement each: the order is the format.
    takeString(record.name);
    takeString(record.location);
    takeString(record.hotkey);
    takeString(record.appName16);
    record.kind = takeNumber<qint16>();
    record.accessOptions = takeNumber<qint16>();
    record.events = takeNumber<qint32>();
    takeString(record.commandLine);
    takeString(record.help);
    record.enabled = takeNumber<qint16>();
    record.helpId = takeNumber<qint16>();
    record.reserved = takeNumber<qint16>();
    takeString(record.appName32);
    takeString(record.reservedText);
    const bool picture = takePicture(record.picture);
    showParts();
    if (m_pastEnd)
        return Found::CutOff;
    return picture ? Found::Record : Found::ImpossiblePicture;
}
