#pragma once

#include <QString>

class QTextDocument;

/// A document as text, for comparison: one line a paragraph, `<...>` its style where it is not the
/// usual one, `{...:text}` a run whose format is not the usual one (Arial, 12 points). Lengths are
/// twips, sizes half points. Pictures are `[kind WxH, bytes]`.
///
///     <qc li720>plain {b i f=Courier New fs20:formatted}
QString rtfDump(const QTextDocument &document);
