#pragma once

#include <QByteArrayView>
#include <QString>

/// The tool set file ("*.bmt"): a header and tool records back to back, all numbers little-endian,
/// no padding. A string is a 16-bit unsigned byte count and that many bytes in the code page.
/// A byte array is a 16-bit dimension count and for each dimension a 32-bit element count and a
/// 32-bit lower bound, then the bytes; a dimension count of 0 stands for "no array".
namespace BmtFormat {

constexpr qint16 currentVersion = 2;
constexpr qint16 oldVersion = 1; ///< Its records' event word holds the tool's flags instead.
constexpr qint16 marker = 140;
constexpr qsizetype longestString = 65535; ///< Bytes.
constexpr qint32 storedEvents = 0x03FFFFFF; ///< The 26 event bits; the others are written as 0.

/// The oldest layout starts with these characters (in any letter case) in place of a header.
constexpr char textHeader[] = "VB Quillon ToolSet v1.01";
constexpr qsizetype textHeaderSize = sizeof(textHeader) - 1;

/// The header's fields, in file order.
struct Header
{
    qint16 FileVersion = 0;
    qint16 Marker = 0;
    qint16 FLAGS = 0;
    QString LongDescription; ///< RTF, or empty.
    QString Description;
};

/// One tool as it stands in the file, in file order. Strings are in the code page; the views are
/// borrowed from the reader, or from the caller of the writer.
struct Record
{
    QByteArrayView name;
    QByteArrayView location;
    QByteArrayView hotkey;
    QByteArrayView appName16;
    qint16 kind = 0;
    qint16 accessOptions = 0;
    qint32 events = 0;
    QByteArrayView commandLine;
    QByteArrayView help;
    qint16 enabled = 0;
    qint16 helpId = 0;
    qint16 reserved = 0; ///< Written 0, not read.
    QByteArrayView appName32;
    QByteArrayView reservedText; ///< Written empty, not read.
    QByteArrayView picture; ///< A bitmap file and one extra byte; empty for none.
};

} // namespace BmtFormat
