#pragma once

#include "model/CVBATool.h"

#include <QStringList>

class RtfPlainText;

/// Fields of tools as lists, messages and comparisons show them.
namespace FieldText {

QString yesNo(bool yes);
QString kind(qint16 kind); ///< Its caption, or the number of a kind that is none.

/// A bit of `AccessOptions` or of the events' mask with its name.
struct Bit
{
    qint32 bit;
    QString name;
};
const QList<Bit> &accessBits();
const QList<Bit> &eventBits();
/// Names of the bits that are set, in the order of \a bits, then the bits without a name as one
/// number.
QStringList names(quint32 mask, const QList<Bit> &bits);
QString access(qint16 options);
QString events(qint32 mask);

/// Size and a digest of the pixels: equal for equal pictures.
QString picture(const QImage &picture);

/// Of the field of that index in ToolFields, on one line for all fields but the help text. Of that
/// its words as \a plainText reads them, with line feeds, or the text as it is stored when that is
/// null.
QString of(const CVBATool &tool, int field, RtfPlainText *plainText = nullptr);

} // namespace FieldText
