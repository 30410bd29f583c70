#include "model/BmtReader.h"

#include "platform/VbError.h"
#include "platform/text/CodePage.h"

#include <QtEndian>

QByteArrayView BmtReader::take(qint64 count)
{
    if (m_pastEnd || count < 0 || count > m_bytes.size() - m_position) {
        m_pastEnd = true;
        return {};
    }
    const QByteArrayView part = m_bytes.sliced(m_position, count);
    m_position += count;
    return part;
}

template <class T>
T BmtReader::takeNumber()
{
    const QByteArrayView part = take(sizeof(T));
    return m_pastEnd ? T() : qFromLittleEndian<T>(part.data());
}

QByteArrayView BmtReader::takeString()
{
    return take(takeNumber<quint16>());
}

QByteArrayView BmtReader::takeByteArray()
{
    const int dimensions = takeNumber<quint16>();
    if (dimensions == 0)
        return {};
    qint64 count = 1;
    for (int i = 0; i < dimensions && !m_pastEnd; ++i) {
        const qint64 elements = takeNumber<qint32>();
        takeNumber<qint32>(); // lower bound
        // Checked at each step, so that the product of several counts cannot overflow.
        if (elements < 0 || count * elements > m_bytes.size())
            m_pastEnd = true;
        else
            count *= elements;
    }
    return take(count);
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
    header.LongDescription = codePage.decode(takeString());
    header.Description = codePage.decode(takeString());
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
    m_position = 0;
    m_pastEnd = false;
    const QByteArrayView start = take(BmtFormat::textHeaderSize);
    if (!m_pastEnd
        && qstrnicmp(start.data(), BmtFormat::textHeader, BmtFormat::textHeaderSize) == 0) {
        return true;
    }
    m_position = 0;
    m_pastEnd = false;
    BmtFormat::Header read;
    try {
        parseBinaryHeader(read, codePage);
    } catch (const VbError &) {
        return false; // A foreign file counts as an empty set, so nobody asks why.
    }
    header = read;
    return true;
}

bool BmtReader::readRecord(BmtFormat::Record &record)
{
    // In file order, one statement each: the order is the format.
    record.name = takeString();
    record.location = takeString();
    record.hotkey = takeString();
    record.appName16 = takeString();
    record.kind = takeNumber<qint16>();
    record.accessOptions = takeNumber<qint16>();
    record.events = takeNumber<qint32>();
    record.commandLine = takeString();
    record.help = takeString();
    record.enabled = takeNumber<qint16>();
    record.helpId = takeNumber<qint16>();
    record.reserved = takeNumber<qint16>();
    record.appName32 = takeString();
    record.reservedText = takeString();
    record.picture = takeByteArray();
    return !m_pastEnd;
}
