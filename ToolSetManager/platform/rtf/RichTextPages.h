#pragma once

#include <QHash>
#include <QRect>

#include <memory>
#include <vector>

class QPainter;
class QTextCharFormat;
class QTextDocument;

/// Cuts a rich text into pages and draws them. The text is laid out on a reference of 1,440 dots
/// to the inch, so that breaks are the same on screen, printer and paper file, and one page costs
/// what is on it.
///
/// The layout is made piece by piece, as far as it is asked for: the toolkit's layout cannot be
/// higher than 8,388,607 units, and long paragraphs take it more than their share of time. A piece
/// begins with a paragraph or with a line of one, so that pages are those of a single layout. Only
/// the pieces used last are kept; of the others the places of their lines are.
///
/// Characters are positions in the document; rectangles are twips.
class RichTextPages
{
public:
    /// The document is borrowed. After it has changed, release() before the next call.
    explicit RichTextPages(const QTextDocument &document);
    ~RichTextPages();

    /// The first character that does not fit when the text from \a first on is put into an area of
    /// that size; at least one line is taken. At the end of the text it is the text's length.
    int firstBeyond(int first, QSize area);

    /// Draws the characters from \a first up to \a beyond, which firstBeyond() has given, into
    /// \a area. The painter's units must be twips. Text of no colour of its own is black. Pictures
    /// wider than the area, and a line higher than it, are made smaller.
    void draw(QPainter &painter, const QRect &area, int first, int beyond);

    /// Height of those characters' lines.
    int height(int first, int beyond, int width);

    /// Gives the layout back; the next call makes it anew.
    void release();

private:
    struct Line
    {
        int start; ///< First character.
        double top; ///< From the top of the text.
        double bottom;
    };
    /// Lines that are laid out together.
    struct Piece
    {
        int start; ///< First character.
        size_t firstLine;
        double top; ///< Of the layout, from the top of the text.
        std::unique_ptr<QTextDocument> layout; ///< Null while it is not kept.
    };

    void layOut(int width);
    void layOutTo(int character); ///< On until the line of that character is known.
    void layOutPiece();
    std::unique_ptr<QTextDocument> makeLayout(int start) const;
    QTextDocument &layoutOf(size_t piece);
    void keep(size_t piece, std::unique_ptr<QTextDocument> layout);
    void drawLines(QPainter &painter, size_t piece, size_t first, size_t beyond);
    double heightOf(const QTextCharFormat &format, int number) const;
    size_t lineOf(int character);
    size_t lineBeyond(size_t line, double height);

    const QTextDocument &m_document;
    std::vector<Piece> m_pieces;
    std::vector<Line> m_lines; ///< Of all pieces.
    std::vector<size_t> m_kept; ///< The pieces that have a layout, the one used last at the end.
    mutable QHash<int, double> m_heights; ///< See heightOf(); by the format's number.
    int m_next = 0; ///< Where the next piece begins; behind the text's length after the last one.
    double m_nextTop = 0;
    int m_width = 0;
    int m_length = 0;
};
