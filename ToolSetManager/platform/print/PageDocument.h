#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QMargins>
#include <QRect>
#include <QString>

#include <memory>
#include <optional>
#include <variant>
#include <vector>

class QPainter;

/// A sheet as a printer offers it, turned as it is printed. Twips.
struct Paper
{
    QSize size {11906, 16838};
    QMargins unprintable; ///< What the printer cannot reach at each edge.

    /// Each 1440, or a fifth of a sheet that is small, or what the printer cannot reach where that
    /// is more.
    QMargins margins() const;
};

/// Lays out text, rich text and pictures on pages and keeps each page as a list of drawing steps,
/// so that preview, printer and paper file show the same. Nothing depends on the device that the
/// pages are drawn on later.
///
/// All lengths are twips, counted from the paper's top left corner. Text goes to the current
/// position and moves it; what does not fit on the page goes on at the top of the next one.
class PageDocument
{
public:
    /// Values of Error().
    enum ErrorCode {
        NoError = 0,
        NoPrinter = 3, ///< No such printer is installed.
        CannotStart = 4, ///< The printer offers no usable sheet.
    };

    struct Text
    {
        double x;
        double baseline;
        int font; ///< Index into fonts().
        QString text;
    };
    struct Picture
    {
        QRect place;
        QImage image;
    };
    struct RichTextBody; ///< A rich text and its layout, shared by the pages that it runs over.
    /// The lines of a rich text that stand on one page.
    struct RichTextPart
    {
        std::shared_ptr<RichTextBody> body;
        QRect area;
        int first; ///< Characters, as RichTextPages counts them.
        int beyond;
        QString text() const;
    };
    using Step = std::variant<Text, Picture, RichTextPart>;

    PageDocument();
    ~PageDocument();
    PageDocument(const PageDocument &) = delete;
    PageDocument &operator=(const PageDocument &) = delete;

    // --- The document ---
    /// Forgets all pages and begins the first one of a new document. Without a printer's paper, or
    /// with one too small to write on, Error() tells it and no page is begun.
    void StartDoc(const std::optional<Paper> &paper);
    void NewPage();
    void EndDoc(); ///< Finishes the last page.
    void Clear(); ///< Forgets all pages: a document that was given up.
    int Error() const { return m_error; } ///< Of the last StartDoc().
    int PageCount() const { return static_cast<int>(m_pages.size()); }

    // --- The sheet ---
    int PageWidth() const { return m_paper.size.width(); }
    int PageHeight() const { return m_paper.size.height(); }
    int MarginLeft() const { return m_margins.left(); }
    int MarginBottom() const { return m_margins.bottom(); }
    QMargins margins() const { return m_margins; } ///< Those of the paper.
    /// Whether text can be written to the right of that place.
    bool hasRoomAt(int x) const;

    // --- Header and footer, of pages that are finished after they were set ---
    /// Left, centre and right part, divided by "|"; of more than two, the last two divide. "%d"
    /// is the page's number, "%%" a per cent sign.
    void setHeader(const QString &text) { m_header = text; }
    void setFooter(const QString &text) { m_footer = text; }
    void setHeaderFont(const QString &family, double points, bool bold); ///< Of both.

    /// Of rich texts written from now on that do not tell theirs; at first the system's.
    void setCodePage(int number) { m_codePage = number; }

    // --- Position and font ---
    int CurrentX() const { return qRound(m_x); }
    void setCurrentX(int x); ///< Text that is wrapped goes on below this place.
    int CurrentY() const { return qRound(m_y); }
    void setCurrentY(int y) { m_y = y; }
    /// Distance of lines from the left margin, for those that begin from now on.
    void setIndentLeft(int indent) { m_indent = indent; }
    void setFont(const QString &family, double points, bool bold);

    // --- Output ---
    /// Writes at the current position; CR LF (or one of both) ends a line. Lines are wrapped at
    /// the right margin.
    void setText(const QString &text);
    /// Writes rich text, or plain text with the current font, from the current line on, between
    /// the indent and the right margin. The position is at the line below it then. Line ends
    /// before and behind it mean nothing, as inside RTF.
    void setTextRTF(const QString &rtf);
    /// Draws the picture scaled to the rectangle; a null one is nothing. The position stays.
    void DrawPicture(const QImage &picture, const QRect &place);

    // --- The pages, counted from 1 ---
    /// Draws a page. The painter's units must be twips, its origin the paper's corner.
    void draw(QPainter &painter, int page) const;
    const std::vector<Step> &steps(int page) const;
    const std::vector<QFont> &fonts() const { return m_fonts; } ///< Sizes are pixels: twips.
    QString pageText(int page) const; ///< The page's text line by line, for those who listen.

private:
    using Page = std::vector<Step>;

    int useFont(const QString &family, double points, bool bold);
    double lineHeight() const;
    double lineStart() const;
    double right() const { return m_paper.size.width() - m_margins.right(); }
    double bottom() const { return m_paper.size.height() - m_margins.bottom(); }
    /// Goes to the next page, at the same distance from the left, when so much does not fit.
    void makeRoom(double height);
    void endLine();
    void writeWrapped(const QString &text);
    void write(const QString &text, double width);
    void finishPage();
    void writeMarginText(const QString &parts, bool header);
    QString numbered(QString part) const;

    Paper m_paper;
    QMargins m_margins;
    int m_error = NoError;
    QString m_header;
    QString m_footer;
    std::vector<QFont> m_fonts;
    std::vector<QFontMetricsF> m_metrics; ///< One for each font.
    int m_font = 0;
    int m_headerFont = 0;
    double m_x = 0;
    double m_y = 0;
    double m_column = 0; ///< Where wrapped text goes on.
    int m_indent = 0;
    int m_codePage;
    std::vector<Page> m_pages;
};
