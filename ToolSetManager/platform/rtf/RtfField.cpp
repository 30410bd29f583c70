#include "platform/rtf/RtfField.h"

#include "platform/rtf/RtfGroup.h"

#include <QStringList>

namespace {

constexpr qsizetype longest = 500; ///< Of an instruction that matters here.

/// The words of an instruction; what stands in quotation marks is one.
QStringList wordsOf(const QString &instruction)
{
    QStringList words;
    bool quoted = false;
    bool open = false; // a word is under way
    for (const QChar c : instruction) {
        if (c == u'"') {
            quoted = !quoted;
            if (quoted)
                words.append(QString());
            open = quoted;
        } else if (c.isSpace() && !quoted) {
            open = false;
        } else {
            if (!open)
                words.append(QString());
            open = true;
            words.last().append(c);
        }
    }
    return words;
}

} // namespace

namespace RtfField {

std::optional<Symbol> read(RtfTokenizer &tokenizer, const RtfCharState &look)
{
    Symbol symbol;
    symbol.look = look;
    QString instruction;
    RtfGroup group(tokenizer);
    while (group.next()) {
        const RtfToken &token = group.token;
        const bool isFormat = token.kind == RtfToken::Word && instruction.isEmpty();
        const RtfKeyword keyword = isFormat ? rtfKeyword(token.text) : RtfKeyword();
        if (keyword.word < RtfWord::Script)
            symbol.look.apply(keyword, token);
        if (token.kind == RtfToken::Word)
            continue;
        if (instruction.size() > longest)
            continue;
        else if (token.kind == RtfToken::Text)
            instruction += QLatin1StringView(token.text.first(qMin(longest, token.text.size())));
        else if (token.kind == RtfToken::Symbol || token.kind == RtfToken::Byte)
            instruction += QLatin1Char(token.byte);
    }
    const QStringList words = wordsOf(instruction);
    if (words.size() < 2 || words.first().compare(u"SYMBOL", Qt::CaseInsensitive) != 0)
        return std::nullopt;
    symbol.code = words.at(1).toInt(nullptr, 0); // also 0xF04A
    for (qsizetype i = 2; i < words.size(); ++i) {
        const QString name = words.at(i).toLower();
        const QString value = words.value(i + 1);
        if (name == u"\\f")
            symbol.family = value;
        else if (name == u"\\s" && value.toInt() > 0)
            symbol.look.halfPoints = static_cast<qint16>(
                qBound(1, value.toInt(), RtfCharStyle::maximumHalfPoints / 2) * 2);
        else if (name == u"\\u")
            symbol.isUnicode = true;
    }
    if ((symbol.code & 0xFF00) == 0xF000)
        symbol.code &= 0xFF;
    if (symbol.code < 0x20 || symbol.code > 0xFFFF)
        return std::nullopt;
    return symbol;
}

} // namespace RtfField
