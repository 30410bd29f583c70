#pragma once

#include "platform/rtf/RtfBuilder.h"
#include "platform/rtf/RtfFormats.h"
#include "platform/rtf/RtfKeywords.h"
#include "platform/rtf/RtfPicture.h"
#include "platform/rtf/RtfReadOptions.h"
#include "platform/rtf/RtfRow.h"
#include "platform/rtf/RtfState.h"
#include "platform/rtf/RtfTables.h"
#include "platform/rtf/RtfWalker.h"

#include <QHash>

#include <optional>
#include <vector>

/// One run of the reader over one text: the state between tokens. The stack of states is on the
/// heap, and a group that changes nothing takes no room on it.
class RtfParser : private RtfWalker
{
public:
    /// All are borrowed.
    RtfParser(const RtfReadOptions &options, QByteArrayView bytes, QTextDocument &document);
    ~RtfParser() override;

    /// True when the text ended with a paragraph mark.
    bool run();

private:
    struct SavedState
    {
        RtfState state;
        qsizetype groups; ///< Groups that were open with this state, the changed one included.
    };
    enum class NewPicture { None, Shown, Failed };

    // --- Groups ---
    void groupOpened() override { ++m_unsavedGroups; }
    void groupClosed() override;
    /// To be called before the state changes.
    RtfState &change();
    RtfCharState &changeCharacters();

    // --- Tokens ---
    void bytes(QByteArrayView text, bool plain) override;
    bool isInLetter() override { return m_inLetter; }
    void flush() override;
    void unicode(char16_t unit) override;
    int fallbackLength() const override { return m_state.fallbackLength; }
    void word(RtfKeyword keyword, const RtfToken &token) override;
    void group(RtfWord word) override;
    void characterWord(RtfKeyword keyword, const RtfToken &token);
    void tableWord(RtfKeyword keyword, const RtfToken &token);
    void documentWord(RtfKeyword keyword, const RtfToken &token);

    // --- Characters ---
    void character(char16_t unit) override;
    void appendToLine(char16_t unit);
    void closeRun();
    const RtfCharset &charset();
    int currentFormat();
    RtfLine &line() { return m_state.oldListText ? m_label : m_line; }

    // --- Paragraphs ---
    void endParagraph();
    RtfParagraphStyle paragraphStyle() const;
    void addParagraph(const RtfParagraphStyle &style);
    void endRow();
    void endNestedRow();

    // --- Groups that are read at once ---
    void readOldList();
    void readField();
    void insertSymbol();
    void readPicture();
    void insertPicture(const RtfPicture &picture);
    void readNestedTableProperties();

    const RtfReadOptions &m_options;
    QTextDocument &m_document;
    RtfBuilder m_builder;

    // --- Groups ---
    RtfState m_state;
    std::vector<SavedState> m_saved;
    qsizetype m_unsavedGroups = 0; ///< Open groups in which nothing has changed yet.
    bool m_pageBreak = false; ///< The next paragraph starts a page.

    // --- Document ---
    RtfFormats m_formats;
    RtfListTable m_lists;

    // --- Text ---
    RtfLine m_line;
    RtfLine m_label; ///< What older readers show for a bullet or number.
    QByteArray m_pending; ///< Bytes of a multi-byte code page.
    bool m_inLetter = false; ///< The last of them begins a letter of two.
    const RtfCharset *m_charset = nullptr; ///< Of the current font; null when not looked up.
    int m_format = -1; ///< Of the current state; -1 when not looked up.
    int m_lastTextFormat = -1; ///< Of the current paragraph's last text.

    // --- Fields ---
    /// The character that a field stands for unless it has a result.
    struct Symbol
    {
        qsizetype depth; ///< Of the group that is the field.
        qsizetype length; ///< Of the text before it.
        RtfCharState look;
        char16_t unit;
    };
    std::optional<Symbol> m_symbol;
    qsizetype m_length = 0; ///< Of all lines that are done.

    // --- Tables ---
    RtfRow m_row;
    bool m_cellEnded = false; ///< The line's last character is the tab of the last cell.

    // --- Pictures ---
    qint64 m_pictureMemory;
    QHash<QString, QString> m_pictures; ///< Name of each picture, and of what shows it.
    NewPicture m_newPicture = NewPicture::None; ///< The last one in this paragraph.
};
