#include "platform/text/CodePage.h"

#include <QStringDecoder>

#include <map>

namespace {

constexpr char16_t undefinedBase = 0xF700;

bool isKnown(int number)
{
    return (number >= 1250 && number <= 1258) || number == 874;
}

/// Most texts, which are alike in all the code pages. No early end, so that the compiler takes many
/// characters at once.
template <class Text>
bool isAscii(Text text)
{
    unsigned all = 0;
    for (const auto unit : text) {
        if constexpr (sizeof(unit) == 1)
            all |= static_cast<uchar>(unit);
        else
            all |= unit.unicode();
    }
    return all < 0x80;
}

} // namespace

CodePage::CodePage(int number)
    : m_number(isKnown(number) ? number : 1252)
{
}

const CodePage::Tables &CodePage::tables() const
{
    // Made once for each code page: every rich text that is read asks for some of them, and the
    // toolkit's converters are slow to set up.
    static std::map<int, std::shared_ptr<const Tables>> made;
    if (!m_tables) {
        auto &ready = made[m_number];
        if (!ready)
            ready = makeTables();
        m_tables = ready;
    }
    return *m_tables;
}

std::shared_ptr<const CodePage::Tables> CodePage::makeTables() const
{
    auto tables = std::make_shared<Tables>();
    tables->toByte.fill(0);
    const QByteArray name = "windows-" + QByteArray::number(m_number);
    for (int byte = 0; byte < 256; ++byte) {
        char16_t character = static_cast<char16_t>(byte);
        if (byte >= 0x80) {
            // A decoder for each byte: some of the converters keep state between calls.
            QStringDecoder decoder(name.constData(), QStringDecoder::Flag::Stateless);
            const char raw = static_cast<char>(byte);
            const QString text = decoder.isValid() ? decoder(QByteArrayView(&raw, 1)) : QString();
            const bool defined = text.size() == 1 && !decoder.hasError()
                && text[0] != QChar::ReplacementCharacter && tables->toByte[text[0].unicode()] == 0;
            character = defined ? text[0].unicode() : static_cast<char16_t>(undefinedBase + byte);
        }
        const auto index = static_cast<size_t>(byte);
        tables->toUnicode[index] = character;
        tables->toByte[character] = static_cast<uchar>(byte);
    }
    return tables;
}

int CodePage::numberForLocale(const QLocale &locale)
{
    const bool cyrillic = locale.script() == QLocale::CyrillicScript;
    switch (locale.language()) {
    case QLocale::Czech:
    case QLocale::Slovak:
    case QLocale::Polish:
    case QLocale::Hungarian:
    case QLocale::Romanian:
    case QLocale::Croatian:
    case QLocale::Slovenian:
    case QLocale::Albanian:
        return 1250;
    case QLocale::Bosnian:
    case QLocale::Serbian:
    case QLocale::Uzbek:
    case QLocale::Azerbaijani:
        if (cyrillic)
            return 1251;
        return locale.language() == QLocale::Bosnian || locale.language() == QLocale::Serbian
            ? 1250
            : 1254;
    case QLocale::Russian:
    case QLocale::Ukrainian:
    case QLocale::Belarusian:
    case QLocale::Bulgarian:
    case QLocale::Macedonian:
    case QLocale::Kazakh:
    case QLocale::Kirghiz:
    case QLocale::Tatar:
    case QLocale::Mongolian:
        return 1251;
    case QLocale::Greek:
        return 1253;
    case QLocale::Turkish:
        return 1254;
    case QLocale::Hebrew:
        return 1255;
    case QLocale::Arabic:
    case QLocale::Persian:
    case QLocale::Urdu:
        return 1256;
    case QLocale::Estonian:
    case QLocale::Latvian:
    case QLocale::Lithuanian:
        return 1257;
    case QLocale::Vietnamese:
        return 1258;
    case QLocale::Thai:
        return 874;
    default:
        return 1252;
    }
}

QString CodePage::decode(QByteArrayView bytes) const
{
    if (isAscii(bytes))
        return QString::fromLatin1(bytes);
    const Tables &tables = this->tables();
    QString text(bytes.size(), Qt::Uninitialized);
    QChar *to = text.data();
    for (const char byte : bytes)
        *to++ = QChar(tables.toUnicode[static_cast<uchar>(byte)]);
    return text;
}

std::optional<QByteArray> CodePage::encode(QStringView text) const
{
    if (isAscii(text))
        return text.toLatin1();
    const Tables &tables = this->tables();
    QByteArray bytes(text.size(), Qt::Uninitialized);
    char *to = bytes.data();
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t character = text[i].unicode();
        const uchar byte = tables.toByte[character];
        if (byte == 0 && character != 0)
            return std::nullopt;
        to[i] = static_cast<char>(byte);
    }
    return bytes;
}

qsizetype CodePage::firstUnencodable(QStringView text) const
{
    if (isAscii(text))
        return -1;
    const Tables &tables = this->tables();
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t character = text[i].unicode();
        if (tables.toByte[character] == 0 && character != 0)
            return i;
    }
    return -1;
}
