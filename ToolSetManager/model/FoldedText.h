#pragma once

#include <QByteArray>
#include <QByteArrayMatcher>
#include <QString>

#include <string>
#include <string_view>

/// Text in the form in which it is searched without regard to letter case: folded once, as UTF-8,
/// which takes half of the memory and is searched by bytes.
namespace FoldedText {

/// Appends the text, folded. White space of any kind becomes a blank. Leaves room at the end.
void append(std::string &folded, QStringView text);

/// The folded text without room at its end.
inline std::string of(QStringView text)
{
    std::string folded;
    append(folded, text);
    folded.shrink_to_fit();
    return folded;
}

/// Finds one text in many folded ones.
class Needle
{
public:
    Needle() = default; ///< Empty; it is everywhere.
    /// \a text is folded here.
    explicit Needle(QStringView text);

    const QByteArray &text() const { return m_text; } ///< Folded.
    bool isIn(std::string_view folded) const;

private:
    QByteArray m_text;
    QByteArrayMatcher m_matcher;
};

} // namespace FoldedText
