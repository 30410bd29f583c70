#include "platform/rtf/RichText.h"

#include "platform/picture/Metafile.h"
#include "platform/rtf/RtfStyle.h"
#include "platform/rtf/RtfText.h"
#include "platform/rtf/RtfWriter.h"

#include <QElapsedTimer>
#include <QFont>
#include <QFontDatabase>
#include <QTextDocument>

#include <memory>

namespace {

/// A metafile's own bitmap where that is all it shows, else what playing it gives.
RtfPicture::MetafileDecoder playMetafile(const std::shared_ptr<qint64> &spent)
{
    return [spent](QByteArrayView metafile, QSize, QSize pixels) {
        constexpr qint64 patience = 5000; // ms
        QImage bitmap = Metafile::soleBitmap(metafile);
        if (!bitmap.isNull() || *spent > patience)
            return bitmap;
        QElapsedTimer timer;
        timer.start();
        QImage played = Metafile::render(metafile, pixels);
        *spent += timer.elapsed();
        return played;
    };
}

} // namespace

void RichText::substituteFonts()
{
    static const bool done = [] {
        for (const char16_t *family : {u"MS Sans Serif", u"Microsoft Sans Serif", u"Tahoma",
                 u"System", u"MS Shell Dlg", u"Helv"}) {
            QFont::insertSubstitution(QString::fromUtf16(family), QStringLiteral("Arial"));
        }
        for (const char16_t *family : {u"MS Serif", u"Tms Rmn"})
            QFont::insertSubstitution(
                QString::fromUtf16(family), QStringLiteral("Times New Roman"));
        for (const char16_t *family : {u"Fixedsys", u"Courier", u"Terminal"})
            QFont::insertSubstitution(QString::fromUtf16(family), QStringLiteral("Courier New"));
        return true;
    }();
    Q_UNUSED(done)
}

RtfReader RichText::reader(int codePage)
{
    RtfReader reader;
    reader.options.defaultCodePage = codePage;
    reader.options.metafileDecoder = playMetafile(std::make_shared<qint64>(0));
    return reader;
}

void RichText::read(const QString &text, QTextDocument &document, RtfReader reader)
{
    if (RtfText::isRtf(text))
        reader.read(RtfText::toBytes(text, reader.options.defaultCodePage), document);
    else
        reader.readPlainText(text, document);
}

QString RichText::ownForm(const QString &text, const QString &family, double points, int codePage)
{
    QTextDocument document;
    QFont standard(family);
    standard.setPointSizeF(points);
    document.setDefaultFont(standard);
    RtfReader reader = RichText::reader(codePage);
    reader.options.metafileDecoder = nullptr; // what pictures show is not written
    read(text, document, std::move(reader));
    return QString::fromLatin1(RtfWriter::write(document));
}

QStringList RichText::screenFonts()
{
    QStringList names;
    const QStringList families = QFontDatabase::families();
    for (const QString &family : families)
        names.append(RtfCharStyle::plainFamily(family)); // that of two makers is there twice
    names.removeDuplicates();
    for (const char16_t *family :
        {u"Arial", u"Courier New", u"MS Sans Serif", u"Times New Roman"}) {
        if (!names.contains(QString::fromUtf16(family)))
            names.append(QString::fromUtf16(family));
    }
    names.sort(Qt::CaseInsensitive);
    return names;
}
