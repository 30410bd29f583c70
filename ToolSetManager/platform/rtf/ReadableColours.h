#pragma once

#include <QColor>
#include <QSyntaxHighlighter>

/// Shows coloured text that could hardly be read before a dark background in a lighter shade. Texts
/// are written for white paper: before a dark background their black and dark blue would vanish.
/// Only what is shown changes, never the document.
class ReadableColours : public QSyntaxHighlighter
{
    Q_OBJECT
public:
    ReadableColours();

    /// Follows the document while \a background is dark, and leaves it alone otherwise.
    void show(QTextDocument *document, const QColor &background);

    /// \a text, or a lighter shade of it where its contrast to a dark background is too low.
    static QColor readable(const QColor &text, const QColor &background);

protected:
    void highlightBlock(const QString &text) override;

private:
    QColor m_background;
};
