#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

/// The text of an INI file that people edit as well: `[Section]` lines, `key=value` lines, comment
/// lines that begin with ";" or "#". Setting a value changes that value's line only; comments,
/// order, line ends and lines that make no sense stay as they are.
///
/// A value reaches to the end of its line, so `a;b` and `C:\VB\new` are read as they stand. Files
/// that were written by the toolkit's QSettings are read as well: names in percent notation, values
/// in quotation marks or with doubled backslashes. A value that would not come back as it is, say
/// one with blanks at its ends, is written in that notation, every other one as it stands.
class IniFile
{
public:
    explicit IniFile(const QByteArray &content = {});

    QByteArray content() const { return m_lines.join(); }

    /// The keys and values of a section in the file's order; a section may be in several places.
    /// Names differ by letter case. A key that stands there twice is listed twice, the one that
    /// counts last.
    QList<QPair<QString, QString>> values(const QString &section) const;

    /// Replaces the value that counts, or adds a line to the section, which is made when missing.
    void setValue(const QString &section, const QString &key, const QString &value);

private:
    /// A line as it is read; both texts are empty for comments and for what makes no sense.
    struct Parsed
    {
        bool isSection = false;
        QString name; ///< Of the section or the key.
        QString value;
    };
    static Parsed parsed(QByteArray line);
    QByteArray lineEnd() const;

    QByteArrayList m_lines; ///< With their line ends.
};
