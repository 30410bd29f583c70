#include "platform/rtf/RtfNumbering.h"

#include "platform/rtf/RtfSelection.h"

#include <QRegularExpression>
#include <QTextBlock>
#include <QTextCursor>

#include <array>
#include <utility>

namespace {

enum class Kind { Decimal, Letter, Roman };

/// The number at the beginning of an item, up to its tab.
struct Label
{
    QString before; ///< "(", or the numbers of the levels above.
    QString number;
    QString behind;

    qsizetype length() const { return before.size() + number.size() + behind.size() + 1; }
    /// Its value, if it can be of that kind.
    std::optional<int> value(Kind kind) const;
};

constexpr std::array<std::pair<int, const char *>, 13> romanDigits {
    {{1000, "m"}, {900, "cm"}, {500, "d"}, {400, "cd"}, {100, "c"}, {90, "xc"}, {50, "l"},
        {40, "xl"}, {10, "x"}, {9, "ix"}, {5, "v"}, {4, "iv"}, {1, "i"}}};

/// Empty for numbers that the kind does not have.
QString spelled(Kind kind, int number)
{
    constexpr int letters = 26;
    switch (kind) {
    case Kind::Decimal:
        return QString::number(number);
    case Kind::Letter:
        return number <= letters ? QString(QChar(u'a' + number - 1)) : QString();
    case Kind::Roman:
        break;
    }
    QString text;
    for (const auto &[value, digit] : romanDigits) {
        for (; number >= value; number -= value)
            text += QLatin1StringView(digit);
    }
    return text;
}

std::optional<int> Label::value(Kind kind) const
{
    if (kind == Kind::Decimal) {
        bool ok = false;
        const int value = number.toInt(&ok);
        return ok ? std::optional(value) : std::nullopt;
    }
    const QString lower = number.toLower();
    constexpr int most = 4000;
    int value = 0;
    if (kind == Kind::Letter) {
        value = lower.size() == 1 && lower[0].isLetter() ? lower[0].unicode() - u'a' + 1 : 0;
    } else {
        QStringView rest = lower;
        for (const auto &[digitValue, digit] : romanDigits) {
            const QLatin1StringView spelledDigit(digit);
            while (rest.startsWith(spelledDigit) && value < most) {
                value += digitValue;
                rest = rest.mid(spelledDigit.size());
            }
        }
    }
    return value > 0 && spelled(kind, value) == lower ? std::optional(value) : std::nullopt;
}

std::optional<Label> labelOf(const QTextBlock &block)
{
    static const QRegularExpression pattern(QStringLiteral(
        "^([(\\[]?(?:[0-9]{1,4}\\.)*)([0-9]{1,4}|[a-z]{1,9}|[A-Z]{1,9})([.)\\]:]{0,2})\\t"));
    if (!block.isValid() || block.textList())
        return std::nullopt;
    constexpr qsizetype longest = 64;
    const auto match = pattern.match(block.text().left(longest));
    if (!match.hasMatch())
        return std::nullopt;
    const Label label {match.captured(1), match.captured(2), match.captured(3)};
    // A year in front of a tab is no number of a list.
    if (label.behind.isEmpty() && !label.before.contains(u'.'))
        return std::nullopt;
    return label;
}

RtfParagraphStyle styleOf(const QTextBlock &block)
{
    return RtfParagraphStyle::fromFormat(block.blockFormat(), block.textList() != nullptr);
}

/// The value of the label in a list that counts \a kind, when it stands \a distance behind another
/// one.
bool follows(const Label &label, const Label &other, Kind kind, int distance)
{
    const auto value = label.value(kind);
    const auto from = other.value(kind);
    return value && from && *value == *from + distance && label.before == other.before
        && label.behind == other.behind;
}

/// The next paragraph of the same level, items of deeper ones left out.
QTextBlock neighbour(const QTextBlock &block, bool next)
{
    constexpr int farthest = 1000;
    const int indent = styleOf(block).leftIndent;
    QTextBlock other = block;
    for (int i = 0; i < farthest; ++i) {
        other = next ? other.next() : other.previous();
        if (!other.isValid() || styleOf(other).leftIndent <= indent)
            break;
    }
    return other;
}

/// What the list counts; empty when the paragraph is no item of one.
std::optional<Kind> kindOf(const QTextBlock &block, const Label &label)
{
    constexpr Kind kinds[] = {Kind::Decimal, Kind::Letter, Kind::Roman};
    for (const bool next : {false, true}) {
        const auto other = labelOf(neighbour(block, next));
        for (const Kind kind : kinds) {
            if (other && follows(label, *other, kind, next ? -1 : 1))
                return kind;
        }
    }
    if (styleOf(block).firstIndent >= 0)
        return std::nullopt;
    if (label.value(Kind::Roman) == 1)
        return Kind::Roman;
    for (const Kind kind : kinds) {
        if (label.value(kind))
            return kind;
    }
    return std::nullopt;
}

QString spelledAs(const Label &label, Kind kind, int number)
{
    const QString text = spelled(kind, number);
    return label.number.at(0).isUpper() ? text.toUpper() : text;
}

/// Counts the items behind the cursor's on; \a number is the cursor's.
void countOn(const QTextCursor &cursor, const Label &label, Kind kind, int number)
{
    QTextCursor at(cursor);
    for (QTextBlock block = neighbour(cursor.block(), true); block.isValid();
         block = neighbour(block, true)) {
        const auto next = labelOf(block);
        const QString text = spelledAs(label, kind, number + 1);
        if (!next || next->before != label.before || next->behind != label.behind
            || next->value(kind) != number || text.isEmpty())
            return;
        const int start = block.position() + static_cast<int>(next->before.size());
        at.setPosition(start + 1);
        const QTextCharFormat format = at.charFormat();
        at.setPosition(start);
        at.setPosition(start + static_cast<int>(next->number.size()), QTextCursor::KeepAnchor);
        at.insertText(text, format);
        ++number;
    }
}

} // namespace

namespace RtfNumbering {

std::optional<QTextCharFormat> enter(QTextCursor &cursor)
{
    const QTextBlock block = cursor.document()->findBlock(cursor.selectionStart());
    const auto label = labelOf(block);
    const auto kind = label ? kindOf(block, *label) : std::nullopt;
    if (!kind || cursor.selectionStart() < block.position() + label->length())
        return std::nullopt;
    const int number = *label->value(*kind) + 1;
    const QString next = spelledAs(*label, *kind, number);
    QTextCursor at(block);
    at.setPosition(block.position() + 1);
    const QTextCharFormat labelFormat = at.charFormat();
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    const QTextCharFormat typed = cursor.charFormat();
    const bool bare = block.length() - 1 == label->length();
    if (bare) {
        cursor.movePosition(QTextCursor::StartOfBlock, QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
        RtfParagraphStyle style = styleOf(block);
        style.leftIndent = qMax(0, style.leftIndent + style.firstIndent);
        style.firstIndent = 0;
        RtfSelection::setParagraph(cursor, style);
        cursor.setBlockCharFormat(typed);
    } else {
        cursor.insertBlock();
        if (!next.isEmpty())
            cursor.insertText(label->before + next + label->behind + u'\t', labelFormat);
        countOn(cursor, *label, *kind, number);
    }
    cursor.endEditBlock();
    return typed;
}

} // namespace RtfNumbering
