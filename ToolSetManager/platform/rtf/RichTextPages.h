#pragma once

#include <QRect>

#include <memory>
#include <vector>

class QPainter;
class QTextDocument;

/// Cuts a rich text into pages and draws them. The text is laid out once for each width, on a
/// reference of 1,440 dots to the inch, so that breaks are the same on screen, printer and paper
/// file, and one page costs what is on it.
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
        double top;
        double bottom;
    };

    void layOut(int width);
    void makeLayout();
    size_t lineOf(int character) const;
    size_t lineBeyond(size_t line, double height) const;

    const QTextDocument &m_document;
    std::unique_ptr<QTextDocument> m_layout; ///< A copy with the lengths of the reference.
    std::vector<Line> m_lines;
    int m_width = 0;
    bool m_shrunk = false; ///< Pictures were made to fit that width.
    int m_length = 0;
};
