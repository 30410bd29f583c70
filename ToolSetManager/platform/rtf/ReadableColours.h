#pragma once

#include <QColor>
#include <QObject>

class QTextDocument;

/// Shows coloured text that could hardly be read before a dark background in a lighter shade. Texts
/// are written for white paper: before a dark background their black and dark blue would vanish.
/// Only what is shown changes, never the document, which reports no change either.
class ReadableColours : public QObject
{
    Q_OBJECT
public:
    /// Follows the document, which must live longer.
    explicit ReadableColours(QTextDocument &document);

    void setBackground(const QColor &background);

    /// \a text, or a lighter shade of it where its contrast to a dark background is too low.
    static QColor readable(const QColor &text, const QColor &background);

private:
    /// The paragraphs with those characters; both ends count.
    void update(int first, int last);

    QTextDocument &m_document;
    QColor m_background = Qt::white;
};
