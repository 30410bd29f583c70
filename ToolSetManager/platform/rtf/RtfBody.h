#pragma once

#include "platform/rtf/RtfOutput.h"
#include "platform/rtf/RtfStyle.h"

#include <QByteArray>
#include <QHash>

#include <map>
#include <vector>

class QTextBlock;
class QTextDocument;
class QTextFragment;
class RtfRow;
struct RtfPicture;

/// The writing side's text under way: gathers fonts and colours while the body is written, and
/// writes only what differs from what was written before.
class RtfBody
{
public:
    /// The document is borrowed.
    explicit RtfBody(const QTextDocument &document);

    /// \a whole: all of it will be written, its mark included; only then it can be a table's row.
    void startParagraph(const QTextBlock &block, bool whole);
    /// Writes \a length characters of the fragment from its character \a start on.
    void addFragment(const QTextFragment &fragment, int start, int length);
    void endParagraph(const QTextBlock &block);

    /// The complete text.
    QByteArray take();

private:
    /// What is in force at the end of the body.
    struct Written
    {
        int font = -1;
        int halfPoints = 0;
        int offset = 0;
        quint16 flags = 0;
        int colour = 0;
        int background = 0;
    };
    /// A character format of the document, looked up once.
    struct Format
    {
        bool known = false;
        bool picture = false;
        RtfCharStyle style;
        int colour = 0;
        int background = 0;
        std::vector<std::pair<int, int>> fonts; ///< Charset and font number.
    };

    Format &format(int index);
    /// The charset for what any font has: the present one if that saves a change of the font.
    int neutralCharset(const Format &format) const;
    int fontNumber(Format &format, int charset);
    int fontNumber(const QString &family, int charset);
    int colourNumber(const std::optional<QRgb> &colour);

    void writeParagraphStyle(const RtfParagraphStyle &style);
    void writeRow(const RtfRow &row);
    void writeTabs(const RtfParagraphStyle &style);
    void writeBulletText();
    /// Brings what is in force to the format, with a font of that charset.
    void writeFormat(Format &format, int charset);
    void writeFlag(quint16 changed, quint16 flags, RtfCharStyle::Flag flag, const char *word);
    void writeText(QStringView text, Format &format);
    void writeCharacter(char16_t unit, Format &format);
    void writePicture(const QTextCharFormat &format);
    void writePictureData(const RtfPicture &picture);
    QImage pictureImage(const QTextCharFormat &format) const;

    const QTextDocument &m_document;
    QFont m_standard;
    RtfOutput m_body;

    std::vector<Format> m_formats; ///< By the document's format numbers.
    std::map<std::pair<QString, int>, int> m_fonts; ///< By family and charset.
    QList<std::pair<QString, int>> m_fontList;
    QHash<QRgb, int> m_colours;
    QList<QRgb> m_colourList;

    Written m_written;
    int m_charset = 0; ///< Of the font in force.
    RtfParagraphStyle m_paragraph;
    int m_blockFormat = -1; ///< Number of the document's format that m_paragraph is.
    bool m_paragraphWritten = false;
    bool m_inRow = false; ///< Tabs are the ends of cells.
};
