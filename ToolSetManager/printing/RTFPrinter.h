#pragma once

#include <QObject>
#include <QRect>
#include <QString>

class PrintJob;
class Printers;
class RichTextBox;
struct Paper;

/// Prints the document of a rich-text box page by page, with margins, and with two other boxes
/// rendered into a band at the top and at the bottom of each page. All lengths are twips.
class RTFPrinter : public QObject
{
    Q_OBJECT
public:
    /// The bands of a page, counted from the corner of what the printer can reach. Right and
    /// bottom exclusive.
    struct Bands
    {
        QRect header;
        QRect body;
        QRect footer;
        QRect page; ///< All that the printer can reach.
    };
    static constexpr int footerGap = 360; ///< Between body and footer; there is none at the top.

    /// The printers are borrowed.
    explicit RTFPrinter(const Printers &printers, QObject *parent = nullptr);

    // --- Fields: borrowed; only the document is required ---
    RichTextBox *HeaderBox = nullptr;
    RichTextBox *FooterBox = nullptr;
    RichTextBox *DocumentBox = nullptr;
    QString FileName; ///< Where the printer "PDF File" writes to.

    // --- Properties: distances from the paper's edges, heights of the bands ---
    qint32 LeftMargin() const { return m_leftMargin; }
    void setLeftMargin(qint32 twips) { m_leftMargin = twips; }
    qint32 RightMargin() const { return m_rightMargin; }
    void setRightMargin(qint32 twips) { m_rightMargin = twips; }
    qint32 TopMargin() const { return m_topMargin; }
    void setTopMargin(qint32 twips) { m_topMargin = twips; }
    qint32 BottomMargin() const { return m_bottomMargin; }
    void setBottomMargin(qint32 twips) { m_bottomMargin = twips; }
    qint32 HeaderHeight() const { return m_headerHeight; }
    void setHeaderHeight(qint32 twips) { m_headerHeight = twips; }
    qint32 FooterHeight() const { return m_footerHeight; }
    void setFooterHeight(qint32 twips) { m_footerHeight = twips; }

    // --- Operations ---
    /// Prints the document, or nothing when it is cancelled. Throws VbError when the printer or
    /// the file refuses; EndDocument is raised before that too.
    void PrintRTF();
    /// Takes effect when the next page begins; on the last page, when the document would end.
    void Cancel() { m_cancelled = true; }

    Bands bands(const Paper &paper) const;

Q_SIGNALS:
    void BeginPage(int Page); ///< Counted from 1; before anything is drawn on it.
    void EndDocument(); ///< Once for each print, finished or not.

private:
    /// Draws the pages; false when it was cancelled.
    bool printPages(PrintJob &job);
    void releaseLayouts();

    const Printers &m_printers;
    qint32 m_leftMargin = 1440;
    qint32 m_rightMargin = 1440;
    qint32 m_topMargin = 1440;
    qint32 m_bottomMargin = 1440;
    qint32 m_headerHeight = 0;
    qint32 m_footerHeight = 0;
    bool m_cancelled = false;
};
