#pragma once

#include <QByteArray>
#include <QLocale>
#include <QString>

#include <array>
#include <memory>
#include <optional>

/// A single-byte Windows (ANSI) code page: the text form of tool set files.
///
/// Every one of the 256 byte values decodes to a character of its own and comes back as the same
/// byte. Bytes that the code page leaves undefined ride on private-use characters (U+F700 plus the
/// byte). All of one number share their tables.
class CodePage
{
public:
    /// Number as Windows counts them: 1250 to 1258, 874. Any other number means 1252.
    explicit CodePage(int number = 1252);

    /// The code page that Windows would use as its "ANSI code page" for that locale.
    static int numberForLocale(const QLocale &locale);
    static int systemNumber() { return numberForLocale(QLocale::system()); }

    int number() const { return m_number; }

    QString decode(QByteArrayView bytes) const;

    /// Empty when a character is not in the code page.
    std::optional<QByteArray> encode(QStringView text) const;

    /// The index of the first character that encode() would refuse; -1 when there is none.
    qsizetype firstUnencodable(QStringView text) const;

private:
    struct Tables
    {
        std::array<char16_t, 256> toUnicode;
        std::array<uchar, 65536> toByte; ///< 0 for "not there", except for U+0000.
    };

    const Tables &tables() const;
    std::shared_ptr<const Tables> makeTables() const;

    int m_number;
    mutable std::shared_ptr<const Tables> m_tables; ///< Null before the first use.
};
