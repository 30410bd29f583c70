#include "model/HotKey.h"

#include <QString>

#include <algorithm>
#include <utility>

namespace {

enum Modifier { Ctrl = 1, Alt = 2, Shift = 4 };

constexpr std::pair<const char16_t *, Modifier> modifierWords[] = {
    {u"control", Ctrl}, {u"ctrl", Ctrl}, {u"alt", Alt}, {u"shift", Shift}};
constexpr std::pair<char16_t, Modifier> modifierSigns[] = {
    {u'^', Ctrl}, {u'%', Alt}, {u'+', Shift}};

/// Names of keys without blanks, and the name that is kept of those that have several.
constexpr std::pair<const char16_t *, const char16_t *> keyNames[] = {{u"backspace", u"Backspace"},
    {u"bksp", u"Backspace"}, {u"bs", u"Backspace"}, {u"break", u"Break"}, {u"pause", u"Break"},
    {u"capslock", u"CapsLock"}, {u"clear", u"Clear"}, {u"delete", u"Delete"}, {u"del", u"Delete"},
    {u"down", u"Down"}, {u"end", u"End"}, {u"enter", u"Enter"}, {u"return", u"Enter"},
    {u"escape", u"Escape"}, {u"esc", u"Escape"}, {u"help", u"Help"}, {u"home", u"Home"},
    {u"insert", u"Insert"}, {u"ins", u"Insert"}, {u"left", u"Left"}, {u"numlock", u"NumLock"},
    {u"pagedown", u"PageDown"}, {u"pgdn", u"PageDown"}, {u"pageup", u"PageUp"},
    {u"pgup", u"PageUp"}, {u"printscreen", u"PrintScreen"}, {u"prtsc", u"PrintScreen"},
    {u"right", u"Right"}, {u"scrolllock", u"ScrollLock"}, {u"space", u"Space"}, {u"tab", u"Tab"},
    {u"up", u"Up"}};

QString keyName(const QString &text)
{
    if (text.size() == 1)
        return text.at(0).isPrint() ? text.toUpper() : QString();
    const QString name = QString(text).remove(u' ').toLower();
    bool isNumber = false;
    const int number = QStringView(name).mid(1).toInt(&isNumber);
    if (name.startsWith(u'f') && isNumber && number >= 1 && number <= 24)
        return name.toUpper();
    const auto *known = std::find_if(std::begin(keyNames), std::end(keyNames),
        [&](const auto &entry) { return name == QStringView(entry.first); });
    return known == std::end(keyNames) ? QString() : QString::fromUtf16(known->second);
}

QString joined(int modifiers, const QString &key)
{
    if (key.isEmpty())
        return {};
    return QStringLiteral("%1%2%3%4")
        .arg(modifiers & Ctrl ? u"Ctrl+" : u"", modifiers & Alt ? u"Alt+" : u"",
            modifiers & Shift ? u"Shift+" : u"", key);
}

/// "^+{F5}": signs and one key.
QString fromSigns(QStringView text)
{
    int modifiers = 0;
    while (text.size() > 1) {
        const auto *sign = std::find_if(std::begin(modifierSigns), std::end(modifierSigns),
            [&](const auto &entry) { return text.front() == entry.first; });
        if (sign == std::end(modifierSigns))
            break;
        modifiers |= sign->second;
        text = text.sliced(1);
    }
    if (text.size() > 2 && text.startsWith(u'{') && text.endsWith(u'}'))
        return joined(modifiers, keyName(text.sliced(1).chopped(1).toString()));
    return text.size() == 1 ? joined(modifiers, keyName(text.toString())) : QString();
}

/// "Ctrl+Shift+F5": words and one key, with plus signs, hyphens or blanks between them.
QString fromWords(QStringView text)
{
    int modifiers = 0;
    for (bool found = true; found;) {
        found = false;
        for (const auto &[word, modifier] : modifierWords) {
            const QStringView name(word);
            if (!text.startsWith(name, Qt::CaseInsensitive))
                continue;
            const QStringView rest = text.sliced(name.size());
            QStringView key = rest.trimmed();
            if (key.size() > 1 && (key.front() == u'+' || key.front() == u'-'))
                key = key.sliced(1).trimmed();
            if (key.isEmpty() || key.size() == rest.size())
                continue; // the word goes on
            modifiers |= modifier;
            text = key;
            found = true;
            break;
        }
    }
    return joined(modifiers, keyName(text.toString()));
}

} // namespace

QString HotKey::canonical(QStringView text)
{
    text = text.trimmed();
    const QString key = fromWords(text);
    return key.isEmpty() ? fromSigns(text) : key;
}
