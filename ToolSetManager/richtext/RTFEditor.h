#pragma once

#include "platform/rtf/RichTextBox.h"

#include <QHash>
#include <QIcon>
#include <QVariantMap>
#include <QWidget>

class QAction;
class PrintJob;
class Printers;
class QComboBox;
class QTimer;
class Toolbar;

/// An editor for formatted text: a rich-text box with a small toolbar and boxes for font and size,
/// which follow the selection. Changes are told to the host after a short pause, so that a burst of
/// keystrokes is one notice. Tab and Enter, also with Ctrl, belong to the text, never to the dialog
/// around.
class RTFEditor : public QWidget
{
    Q_OBJECT
public:
    explicit RTFEditor(QWidget *parent = nullptr);
    ~RTFEditor() override;

    // --- Properties ---
    QString TextRTF() const { return rtControl->TextRTF(); }
    void setTextRTF(const QString &rtf); ///< Raises no Change.
    int BorderStyle() const { return rtControl->BorderStyle(); } ///< Of the text box.
    void setBorderStyle(int style) { rtControl->setBorderStyle(style); }
    /// Twips. 0 sets the automatic margin, as it is at first: the box's width less 60. Any other
    /// value sets that margin.
    /// Kept: an automatic margin reads back as what it is, a set one as 0.
    int RightMargin() const;
    void setRightMargin(int twips);
    /// The longest text (bytes of RTF) that can be stored; 0 for no limit. A picture that would
    /// make the text longer is not pasted, or made smaller on request.
    void setLongestRTF(qsizetype bytes) { rtControl->setLongestRTF(bytes); }
    /// The pictures of the buttons, by key.
    QHash<QString, QIcon> ImageList() const { return m_images; }
    /// False while a form is being designed: the toolbar does not follow the selection then.
    bool UserMode() const { return m_userMode; }
    void setUserMode(bool on) { m_userMode = on; }

    // --- Persistence in the host's property bag: "BorderStyle", "RightMargin" ---
    void UserControl_ReadProperties(const QVariantMap &bag);
    QVariantMap UserControl_WriteProperties() const;

    // --- The selection: as in RichTextBox ---
    std::optional<int> SelAlignment() const { return rtControl->SelAlignment(); }
    void setSelAlignment(int alignment) { rtControl->setSelAlignment(alignment); }
    std::optional<bool> SelBold() const { return rtControl->SelBold(); }
    void setSelBold(bool on) { rtControl->setSelBold(on); }
    std::optional<bool> SelBullet() const { return rtControl->SelBullet(); }
    void setSelBullet(bool on) { rtControl->setSelBullet(on); }
    std::optional<int> SelCharOffset() const { return rtControl->SelCharOffset(); }
    void setSelCharOffset(int twips) { rtControl->setSelCharOffset(twips); }
    std::optional<QColor> SelColor() const { return rtControl->SelColor(); }
    void setSelColor(const QColor &colour) { rtControl->setSelColor(colour); }
    std::optional<QString> SelFontName() const { return rtControl->SelFontName(); }
    void setSelFontName(const QString &family) { rtControl->setSelFontName(family); }
    std::optional<double> SelFontSize() const { return rtControl->SelFontSize(); }
    void setSelFontSize(double points) { rtControl->setSelFontSize(points); }
    std::optional<int> SelHangingIndent() const { return rtControl->SelHangingIndent(); }
    void setSelHangingIndent(int twips) { rtControl->setSelHangingIndent(twips); }
    std::optional<int> SelIndent() const { return rtControl->SelIndent(); }
    void setSelIndent(int twips) { rtControl->setSelIndent(twips); }
    std::optional<bool> SelItalic() const { return rtControl->SelItalic(); }
    void setSelItalic(bool on) { rtControl->setSelItalic(on); }
    int SelLength() const { return rtControl->SelLength(); }
    void setSelLength(int length) { rtControl->setSelLength(length); }
    std::optional<bool> SelProtected() const { return rtControl->SelProtected(); }
    void setSelProtected(bool on) { rtControl->setSelProtected(on); }
    std::optional<int> SelRightIndent() const { return rtControl->SelRightIndent(); }
    void setSelRightIndent(int twips) { rtControl->setSelRightIndent(twips); }
    QString SelRTF() const { return rtControl->SelRTF(); }
    void setSelRTF(const QString &rtf) { rtControl->setSelRTF(rtf); }
    int SelStart() const { return rtControl->SelStart(); }
    void setSelStart(int position) { rtControl->setSelStart(position); }
    std::optional<bool> SelStrikeThru() const { return rtControl->SelStrikeThru(); }
    void setSelStrikeThru(bool on) { rtControl->setSelStrikeThru(on); }
    std::optional<int> SelTabCount() const { return rtControl->SelTabCount(); }
    void setSelTabCount(int count) { rtControl->setSelTabCount(count); }
    std::optional<int> SelTabs(int index) const { return rtControl->SelTabs(index); }
    void setSelTabs(int index, int twips) { rtControl->setSelTabs(index, twips); }
    QString SelText() const { return rtControl->SelText(); }
    void setSelText(const QString &plain) { rtControl->setSelText(plain); }
    std::optional<bool> SelUnderline() const { return rtControl->SelUnderline(); }
    void setSelUnderline(bool on) { rtControl->setSelUnderline(on); }

    // --- Operations ---
    /// Prints the selection, or all text when nothing is selected. False when that failed.
    /// Prints the selected text, or all when nothing is selected, onto the pages of a job that has
    /// been started, within the margins of its paper.
    void SelPrint(PrintJob &job) { print(job, true); }

    /// Where the toolbar's button prints to; borrowed. Without it the button does nothing.
    void setPrinters(Printers &printers) { m_printers = &printers; }
    /// True when a formatting button shows a mixed selection.
    bool isMixed(const QString &key) const;

    QSize sizeHint() const override { return {480, 240}; }
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void Change(); ///< The text has changed; at most once in a tenth of a second.
    /// Occurs when the current selection of text in the RichTextBox control has changed or the
    /// insertion point has moved.
    void SelChange();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    // --- rtControl ---
    void rtControl_Change();
    void rtControl_SelChange();
    void rtControl_PictureTooLong(const QImage &picture, qint64 bytes);
    // --- tbControl ---
    void tbControl_ButtonClick(const QString &key);
    // --- boxes ---
    void cboFonts_Click();
    void cboFontSize_Click();
    // --- timers ---
    void tmrSelchange_Timer(); ///< 100 ms after the last change of the selection.
    void tmrResize_Timer(); ///< 100 ms after the size has changed.

private:
    void UserControl_Initialize();
    void UserControl_EnterFocus(); ///< The focus has come from outside.
    void focusChanged(QWidget *old, QWidget *now);
    void SyncToolbar();
    void syncButton(const QString &key, std::optional<bool> value);
    void toggle(std::optional<bool> value, void (RichTextBox::*set)(bool));
    void chooseColour();
    void printSelection();
    void print(PrintJob &job, bool selectionOnly);
    void refreshImages();
    void showImage(QAction *button);

    // --- Controls ---
    Toolbar *tbControl;
    QComboBox *cboFonts;
    QComboBox *cboFontSize;
    QWidget *m_bar; ///< The three above, in a row.
    RichTextBox *rtControl;
    QTimer *tmrSelchange;
    QTimer *tmrResize;

    // --- State ---
    QHash<QString, QIcon> m_images;
    bool m_changed = false; ///< Change is due.
    bool m_synchronising = false; ///< The boxes follow the selection: they must not write to it.
    bool m_automaticMargin = true;
    Printers *m_printers = nullptr;
    bool m_userMode = true;
};
