#pragma once

#include "platform/rtf/RtfKeywords.h"
#include "platform/rtf/RtfTokenizer.h"

/// The grammar that all readers of a rich text share: which groups count and which do not, how many
/// characters stand in for a Unicode one, which symbols are characters, and how far a letter of two
/// bytes goes. What a piece means is the reader's matter.
class RtfWalker
{
public:
    virtual ~RtfWalker() = default;
    RtfWalker(const RtfWalker &) = delete;
    RtfWalker &operator=(const RtfWalker &) = delete;

protected:
    static constexpr int maximumFallback = 255; ///< Of \uc.

    /// The bytes are borrowed.
    explicit RtfWalker(QByteArrayView bytes)
        : m_tokenizer(bytes)
    {
    }

    /// Goes through the text, up to the end of its outermost group.
    void walk();
    /// Passes over the rest of the group in which the reader is.
    void skipGroup();
    /// To be called when the rest of a group has been taken from the tokenizer.
    void closeGroup();

    qsizetype depth() const { return m_depth; }
    RtfTokenizer &tokenizer() { return m_tokenizer; }

    // --- What the reader does ---
    virtual void groupOpened() = 0;
    virtual void groupClosed() = 0;
    /// Text as bytes of the code page in force; \a plain: all are printable ASCII.
    virtual void bytes(QByteArrayView text, bool plain) = 0;
    /// True when the last byte begins a letter of two.
    virtual bool isInLetter() = 0;
    /// What is known of bytes() must be settled now.
    virtual void flush() = 0;
    virtual void character(char16_t unit) = 0;
    /// A character spelled as a number; not a surrogate of a number beyond 16 bits.
    virtual void unicode(char16_t unit) { character(unit); }
    virtual int fallbackLength() const = 0;
    /// A control word that begins no group.
    virtual void word(RtfKeyword keyword, const RtfToken &token) = 0;
    /// The word that says what the group is in which the reader stands.
    virtual void group(RtfWord word) = 0;

private:
    void openGroup();
    void text(const RtfToken &token);
    void controlWord(const RtfToken &token);
    void symbol(char symbol);
    void number(int number);
    void paragraph();

    RtfTokenizer m_tokenizer;
    qsizetype m_depth = 0;
    int m_skipCharacters = 0; ///< Left of the fallback of the last \u.
    bool m_atGroupStart = false;
    bool m_ignorable = false; ///< `\*` was just read at a group's start.
    bool m_skipNextGroup = false;
};
