#pragma once

#include "platform/rtf/RtfReader.h"

#include <QStringList>

/// Rich text as the program's strings hold it, read the same way for every place that shows it.
namespace RichText {

/// Makes fonts of old texts that are not here those of their successors' widths; otherwise lines
/// would break elsewhere. Once is enough.
void substituteFonts();

/// A reader for texts of that code page which plays metafiles. Playing those of one reader may take
/// some seconds in all; those beyond are shown as a frame.
RtfReader reader(int codePage);

/// Replaces the document's content by the text, which is RTF or plain; what the reader takes as
/// its code page is that of the text.
void read(const QString &text, QTextDocument &document, RtfReader reader);

/// What a rich-text box of that font would write for a text. \a codePage is that of a text that
/// does not tell its own.
QString ownForm(const QString &text, const QString &family, double points, int codePage);

/// Names of the fonts to choose from: those of the screen, and those that documents mostly name,
/// which have stand-ins of the same widths where they are missing. Sorted.
QStringList screenFonts();

} // namespace RichText
