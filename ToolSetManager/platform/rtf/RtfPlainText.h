#pragma once

#include "platform/rtf/RtfCharset.h"

#include <QString>

/// The words of rich texts without their looks, for searching: what RtfReader would show, except
/// that pictures, symbol fonts and the numbers and bullets of lists do not count. It costs a small
/// part of what a QTextDocument costs. Never fails, as RtfReader.
class RtfPlainText
{
public:
    /// \a codePage is that of texts that do not tell theirs.
    explicit RtfPlainText(int codePage);

    /// Paragraphs and lines end with a line feed. Text that is not RTF is returned as it is.
    QString read(const QString &text);

private:
    class Run;

    int m_codePage;
    RtfCharsets m_charsets;
};
