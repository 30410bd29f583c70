#pragma once

#include "model/BmtFormat.h"

#include <array>

class CodePage;
class QIODevice;

/// Decodes a tool set file. No count in it is trusted before it has been compared with what is left
/// of the file.
///
/// A file of any size is read through a window: the bytes of the record at hand and as many behind
/// them as fit. So memory is needed for the longest record, not for the file.
class BmtReader
{
public:
    /// What readRecord() has found.
    enum class Found {
        Record,
        End, ///< The file ends where a record could begin.
        CutOff, ///< It ends within a record.
        /// The record's texts are there, but no picture has the size that it states: less than no
        /// element, or more than `largestPicture`.
        ImpossiblePicture
    };

    static constexpr qsizetype usualWindow = 1 << 20;
    static constexpr qint64 largestPicture = qint64(256) << 20; ///< Bytes.

    /// Reads bytes in memory, which must outlive the reader and its records.
    explicit BmtReader(QByteArrayView bytes);
    /// Reads from the start of \a file, which is borrowed, open, and best unbuffered. A read that
    /// fails ends the file there; the device's errorString() has the reason.
    explicit BmtReader(QIODevice &file, qsizetype window = usualWindow);

    /// Reads the header into \a header and stands at the first record then. The text header leaves
    /// \a header as it is. False when the bytes are no tool set or the header is cut off;
    /// \a header is untouched then.
    bool readHeader(BmtFormat::Header &header, const CodePage &codePage);

    /// Reads the next record. It is valid until the next call.
    Found readRecord(BmtFormat::Record &record);

    qint64 size() const { return m_size; } ///< Bytes of the file.
    qint64 position() const { return m_position; } ///< Bytes that have been read.

private:
    /// A part of the file that a field will show. The window may move until the record is complete.
    struct Part
    {
        QByteArrayView *field = nullptr;
        qint64 offset = 0;
        qint64 size = 0;
    };

    void restart();
    void parseBinaryHeader(BmtFormat::Header &header, const CodePage &codePage);
    bool provide(qint64 count);
    QByteArrayView take(qint64 count);
    template <class T>
    T takeNumber();
    void takePart(QByteArrayView &field, qint64 count);
    void takeString(QByteArrayView &field) { takePart(field, takeNumber<quint16>()); }
    bool takePicture(QByteArrayView &field);
    void showParts();

    QIODevice *m_file = nullptr; ///< Null when all bytes are in memory.
    qint64 m_size;
    QByteArray m_buffer; ///< Of the window onto a file.
    QByteArrayView m_window;
    qint64 m_windowStart = 0; ///< Its place in the file.
    qint64 m_kept = 0; ///< The bytes from here on stay in the window.
    qint64 m_position = 0;
    std::array<Part, 16> m_parts;
    std::size_t m_partCount = 0;
    bool m_pastEnd = false;
};
