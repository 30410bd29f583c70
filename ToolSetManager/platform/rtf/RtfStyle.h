#pragma once

#include <QHash>
#include <QList>
#include <QRgb>
#include <QString>
#include <QTextBlockFormat>
#include <QTextCharFormat>

#include <optional>

class QFont;
class QTextDocument;

/// Looks of a run of text, as rich text knows them, and their form in a QTextDocument. What
/// QTextCharFormat has no property for rides in user properties of the format.
struct RtfCharStyle
{
    enum Flag : quint16 {
        Bold = 1,
        Italic = 2,
        Underline = 4,
        Strike = 8,
        Protected = 16, ///< Not to be changed by the user.
        Hidden = 32, ///< Part of the text, but not shown.
        Capitals = 64,
        SmallCapitals = 128,
        Superscript = 256, ///< Raised and smaller, unlike an offset.
        Subscript = 512
    };
    static constexpr int maximumHalfPoints = 3276;

    QString family;
    int halfPoints = 24; ///< Size; 1..maximumHalfPoints.
    int offset = 0; ///< Half points above (or, negative, below) the line of writing.
    quint16 flags = 0; ///< Bits of `Flag`.
    std::optional<QRgb> colour; ///< None: the colour of text on that screen or paper.
    std::optional<QRgb> background;

    bool has(Flag flag) const { return (flags & flag) != 0; }

    QTextCharFormat toFormat() const;
    /// \a standard gives family and size where the format has none.
    static RtfCharStyle fromFormat(const QTextCharFormat &format, const QFont &standard);

    /// A font's name as it is written; see RtfCharset::dropScript().
    static QString plainFamily(const QString &family);

    /// The size of a format that toFormat() has made.
    static int halfPointsOf(const QTextCharFormat &format);
    static bool isProtected(const QTextCharFormat &format);
    static bool isHidden(const QTextCharFormat &format);

    friend bool operator==(const RtfCharStyle &, const RtfCharStyle &) = default;
    friend size_t qHash(const RtfCharStyle &style, size_t seed = 0)
    {
        return qHashMulti(seed, style.family, style.halfPoints, style.offset, style.flags,
            style.colour.value_or(0), style.background.value_or(0));
    }
};

struct RtfTab
{
    enum Kind : quint8 { Left, Right, Centre, Decimal };

    int position = 0; ///< Twips from the edge, not from the indent.
    Kind kind = Left;

    friend bool operator==(const RtfTab &, const RtfTab &) = default;
};

/// Looks of a paragraph. Lengths are twips.
///
/// Bullets hang in front of the text, which starts at `leftIndent`; in a document they are a
/// QTextList, so membership is asked for and set by the caller.
struct RtfParagraphStyle
{
    enum Alignment : quint8 { Left, Right, Centre, Justified };
    static constexpr int maximumLength = 31680; ///< Either way; 22 inches.
    static constexpr qsizetype maximumTabs = 64;
    static int bounded(int twips) { return qBound(-maximumLength, twips, maximumLength); }

    /// Distance of the stops behind the last one of a paragraph, which all of a document share.
    static constexpr int usualTab = 720;
    static int defaultTab(const QTextDocument &document);
    static void setDefaultTab(QTextDocument &document, int twips);

    Alignment alignment = Left;
    bool bullet = false;
    bool rightToLeft = false;
    bool pageBreakBefore = false;
    bool lineSpacingMultiple = false; ///< `lineSpacing` counts 240ths of a line.
    int leftIndent = 0; ///< Of all lines.
    int rightIndent = 0;
    int firstIndent = 0; ///< Of the first line, on top of `leftIndent`; may be negative.
    int spaceBefore = 0;
    int spaceAfter = 0;
    int lineSpacing = 0; ///< 0: by the text; positive: at least; negative: exactly.
    QList<RtfTab> tabs; ///< Ascending.
    /// Of a table's row, what RtfRow makes of it: its left edge, the gap between a cell's edge and
    /// its text, the right edges of its cells. Empty for other paragraphs.
    QList<int> row;

    /// Margins are in pixels of 15 twips; tab stops are counted the way QTextDocument does it.
    /// \a halfPoints is the size of the paragraph's mark, and so of its bullet, for which there is
    /// room even where the text leaves none.
    QTextBlockFormat toFormat(int halfPoints = 0) const;
    static RtfParagraphStyle fromFormat(const QTextBlockFormat &format, bool bullet);

    friend bool operator==(const RtfParagraphStyle &, const RtfParagraphStyle &) = default;
};

/// Numbers of the user properties, clear of those that a program may use for itself.
enum RtfProperty {
    RtfOffsetProperty = QTextFormat::UserProperty + 0x5201, ///< int, half points
    RtfProtectedProperty, ///< bool
    RtfHiddenProperty, ///< bool
    RtfHiddenSizeProperty, ///< double, points: the size that shows when the text does
    RtfHiddenColourProperty, ///< uint
    RtfFamilyProperty, ///< QString: the family, for which another one may stand in
    RtfAutomaticColourProperty, ///< bool: the foreground is no colour of the text's own
    RtfIndentsProperty, ///< QPoint, twips: left and first indent of a bulleted paragraph
    RtfTabsProperty, ///< QList<int>, four times the position plus the kind
    RtfRowProperty, ///< QList<int>, RtfParagraphStyle::row
    RtfPictureKindProperty, ///< int
    RtfPictureDataProperty, ///< QByteArray
    RtfPictureExtentProperty, ///< QSize, the numbers of \picw and \pich
    RtfPictureGoalProperty ///< QSize, twips
};
