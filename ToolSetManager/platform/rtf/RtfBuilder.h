#pragma once

#include "platform/rtf/RtfStyle.h"

#include <QTextCursor>

#include <vector>

class QTextDocument;

/// A line of text in pieces of one format each. Formats are numbers of the RtfBuilder.
struct RtfLine
{
    struct Run
    {
        qsizetype end; ///< In `text`, exclusive.
        int format;
    };

    QString text;
    std::vector<Run> runs;

    bool isEmpty() const { return runs.empty(); }
    /// Removes the last \a count characters.
    void chop(qsizetype count);
    void clear()
    {
        text.resize(0); // keeps the room
        runs.clear();
    }
    /// Takes what was appended to `text` since the last run into a run of that format.
    void closeRun(int format);
};

/// Puts paragraphs into an empty document, one after the other.
class RtfBuilder
{
public:
    /// The document is borrowed; it must be empty. Undo should be off.
    explicit RtfBuilder(QTextDocument &document);
    ~RtfBuilder();
    RtfBuilder(const RtfBuilder &) = delete;
    RtfBuilder &operator=(const RtfBuilder &) = delete;

    /// Registers a format; the number is good for runs.
    int addFormat(const QTextCharFormat &format);
    const QTextCharFormat &format(int number) const { return m_formats[size_t(number)]; }

    /// \a label stands in front of the text; \a mark is the format of the paragraph's end.
    void addParagraph(
        const RtfLine &label, const RtfLine &line, const RtfParagraphStyle &style, int mark);
    bool isEmpty() const { return m_first; }

private:
    void insertRuns(const RtfLine &line);
    const QTextBlockFormat &blockFormat(const RtfParagraphStyle &style, int halfPoints);

    QTextCursor m_cursor;
    std::vector<QTextCharFormat> m_formats;
    RtfParagraphStyle m_lastStyle;
    int m_lastHalfPoints = 0;
    QTextBlockFormat m_lastFormat; ///< Of m_lastStyle with a mark of that size.
    int m_list = -1; ///< Object index of the list that bulleted paragraphs join.
    int m_listLength; ///< Its paragraphs.
    bool m_first = true;
};
