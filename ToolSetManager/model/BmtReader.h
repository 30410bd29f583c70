#pragma once

#include "model/BmtFormat.h"

class CodePage;

/// Decodes a tool set file from its bytes, which must outlive the reader and its records. No count
/// in the bytes is trusted before it has been compared with what is left of them.
class BmtReader
{
public:
    explicit BmtReader(QByteArrayView bytes)
        : m_bytes(bytes)
    {
    }

    /// Reads the header into \a header and stands at the first record then. The text header leaves
    /// \a header as it is. False when the bytes are no tool set or the header is cut off;
    /// \a header is untouched then.
    bool readHeader(BmtFormat::Header &header, const CodePage &codePage);

    /// Reads the next record; false when less than a whole record is left.
    bool readRecord(BmtFormat::Record &record);

    /// Bytes that have been read.
    qsizetype position() const { return m_position; }

private:
    void parseBinaryHeader(BmtFormat::Header &header, const CodePage &codePage);

    QByteArrayView take(qint64 count);
    QByteArrayView takeString();
    QByteArrayView takeByteArray();
    template <class T>
    T takeNumber();

    QByteArrayView m_bytes;
    qsizetype m_position = 0;
    bool m_pastEnd = false;
};
