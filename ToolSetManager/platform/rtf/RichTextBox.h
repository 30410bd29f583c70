#pragma once

#include "platform/rtf/RtfProtection.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfSelection.h"

#include <QColor>
#include <QTextEdit>

#include <QImage>
#include <functional>
#include <memory>
#include <optional>

class QPainter;
class QTextDocumentFragment;
class ReadableColours;
class RichTextPages;

/// A box for formatted text with the properties of the rich-text box control. Lengths are twips,
/// positions count characters from 0, a paragraph's end as one.
///
/// `Sel...` properties speak of the selected text, or of the place where text would be typed. An
/// empty value means that the selection is mixed in that respect. Setting them from code also
/// changes protected text; the user cannot.
class RichTextBox : public QTextEdit
{
    Q_OBJECT
public:
    enum BorderStyleConstants { rtfNoBorder = 0, rtfFixedSingle = 1 };
    enum AlignmentConstants { rtfLeft = 0, rtfRight = 1, rtfCenter = 2 };

    /// Font of text that names none, and of an empty box.
    RichTextBox(const QString &family, double points, QWidget *parent = nullptr);
    ~RichTextBox() override;

    // --- The whole text ---
    /// The text as it was put in, until it is changed; then as the box writes it.
    QString TextRTF() const;
    /// Text that is not RTF is taken as plain text.
    void setTextRTF(const QString &rtf);
    /// As the box writes it, also when it was not changed.
    QString ownRTF() const;
    QString Text() const { return toPlainText(); }
    void setText(const QString &plain); ///< Also counts as text that was put in.
    /// Of texts put in from now on that do not tell theirs; at first the system's.
    void setCodePage(int number) { m_codePage = number; }

    // --- The box ---
    int BorderStyle() const { return m_borderStyle; }
    void setBorderStyle(int style);
    /// Where lines wrap, from the box's left edge; 0 for the width of what can be seen. A margin
    /// that only the box's frame or scroll bar covers means that width too.
    int RightMargin() const { return m_rightMargin; }
    void setRightMargin(int twips);
    /// The box's width.
    int widthInTwips() const;

    /// The longest text (bytes of RTF) that can be stored, for pasted pictures; 0 for no limit.
    qsizetype longestRTF() const { return m_longestRTF; }
    void setLongestRTF(qsizetype bytes) { m_longestRTF = bytes; }
    /// Inserts the picture with as many pixels as the longest text leaves room for. False, and
    /// nothing changed, when there is no room for any worth showing.
    bool insertSmallerPicture(const QImage &image);

    // --- The selection ---
    int SelStart() const;
    void setSelStart(int position); ///< Puts the insertion point there; nothing is selected then.
    int SelLength() const;
    void setSelLength(int length); ///< From SelStart() on.
    QString SelText() const;
    void setSelText(const QString &plain);
    QString SelRTF() const; ///< A complete text; nothing selected gives an empty one.
    void setSelRTF(const QString &rtf);

    // --- Characters of the selection ---
    std::optional<QString> SelFontName() const;
    void setSelFontName(const QString &family);
    std::optional<double> SelFontSize() const; ///< Points.
    void setSelFontSize(double points);
    std::optional<bool> SelBold() const;
    void setSelBold(bool on);
    std::optional<bool> SelItalic() const;
    void setSelItalic(bool on);
    std::optional<bool> SelUnderline() const;
    void setSelUnderline(bool on);
    std::optional<bool> SelStrikeThru() const;
    void setSelStrikeThru(bool on);
    std::optional<bool> SelProtected() const;
    void setSelProtected(bool on);
    /// Text of no colour of its own has that of the desktop's text.
    std::optional<QColor> SelColor() const;
    void setSelColor(const QColor &colour);
    std::optional<int> SelCharOffset() const; ///< Above the line of writing; negative: below.
    void setSelCharOffset(int twips);

    // --- Paragraphs of the selection ---
    std::optional<int> SelAlignment() const;
    void setSelAlignment(int alignment);
    std::optional<bool> SelBullet() const;
    void setSelBullet(bool on);
    std::optional<int> SelIndent() const; ///< Left edge of the first line.
    void setSelIndent(int twips);
    std::optional<int> SelHangingIndent() const; ///< Of the other lines, on top of SelIndent().
    void setSelHangingIndent(int twips);
    std::optional<int> SelRightIndent() const;
    void setSelRightIndent(int twips);
    std::optional<int> SelTabCount() const;
    void setSelTabCount(int count);
    /// Stop number \a index, from 0; empty also when there is none.
    std::optional<int> SelTabs(int index) const;
    void setSelTabs(int index, int twips);

    // --- Printing ---
    /// The whole text on paper, laid out when it is first asked for. Who has printed calls its
    /// release(); a change of the text does so, too.
    RichTextPages &pages();
    /// Draws the selected text, or all when nothing is selected or \a selectionOnly is false, onto
    /// pages with a painter whose units are twips. \a newPage is called between two pages.
    void SelPrint(QPainter &painter, const QRect &area, const std::function<void()> &newPage,
        bool selectionOnly = true);

Q_SIGNALS:
    void Change(); ///< The text or its formats have changed.
    void SelChange(); ///< The selection changed or the insertion point moved.
    /// A paste or a drop was refused, because its pictures would make the text that long. Null for
    /// formatted text with pictures in it.
    void PictureTooLong(const QImage &picture, qint64 bytes);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    QMimeData *createMimeDataFromSelection() const override;
    bool canInsertFromMimeData(const QMimeData *source) const override;
    void insertFromMimeData(const QMimeData *source) override;

private:
    void load(const QString &rtf);
    void wrap();
    double shownHeight(int from, int to) const;
    void fitHeight(int position, int added);
    void insertDocument(const QTextDocument &source, bool endsWithParagraph);
    void insertPicture(const QImage &image);
    /// What the text would measure with \a pasted in place of the selection.
    qint64 lengthWith(const QTextDocumentFragment &pasted) const;
    QTextDocumentFragment fragmentOf(const QImage &image) const;
    bool isLocked(RtfProtection::Touch touch) const;
    bool pressKey(const QKeyEvent &key);
    bool enterInList();
    void clearCutRows();
    /// Before text is typed or pasted.
    void dropLockedFormat();
    void reportSelection();

    template <class Get>
    auto charValue(Get get) const -> std::optional<decltype(get(QTextCharFormat()))>;
    template <class Get>
    auto paragraphValue(Get get) const -> std::optional<decltype(get(RtfParagraphStyle()))>;
    /// Of the selection, or of what will be typed.
    void changeCharacters(const RtfSelection::CharacterChange &change);
    void setFlag(RtfCharStyle::Flag flag, bool on);
    void changeParagraphs(const RtfSelection::ParagraphChange &change);

    QString m_given; ///< What was put in.
    int m_borderStyle = rtfFixedSingle;
    int m_rightMargin = 0;
    int m_codePage;
    qsizetype m_longestRTF = 0;
    std::pair<int, int> m_reportedSelection {0, 0};
    double m_mostHeight = 0; ///< What the text can take on the screen at most; pixels.
    double m_scale = 1; ///< Below 1 for a text that is too tall for the toolkit's layout.
    QImage m_smallDevice; ///< What such a text is laid out for; never drawn on.
    std::unique_ptr<RichTextPages> m_pages;
    std::unique_ptr<ReadableColours> m_colours;
};
