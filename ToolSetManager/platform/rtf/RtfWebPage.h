#pragma once

#include <QTextDocument>

/// A page from the clipboard on its way to rich text: its lists and tables become what rich text
/// here has for them. Nothing is fetched for it; only pictures that are in the page itself show.
class RtfWebPage : public QTextDocument
{
public:
    RtfWebPage(const QString &html, const QFont &standard);

    /// The page as rich text: bullets as bullets, each level further in; numbers as text in front
    /// of hanging paragraphs; rows of tables as rows (RtfRow). What stands in a cell is one
    /// paragraph.
    QByteArray toRtf() const;

protected:
    QVariant loadResource(int type, const QUrl &name) override;
};
