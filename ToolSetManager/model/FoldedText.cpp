#include "model/FoldedText.h"

#include <QChar>

namespace FoldedText {

void append(std::string &folded, QStringView text)
{
    // Most text is ASCII; the rest may take up to three bytes for each code unit.
    size_t at = folded.size();
    folded.resize(at + 3 * static_cast<size_t>(text.size()));
    const auto put = [&](char32_t byte) { folded[at++] = static_cast<char>(byte); };
    const qsizetype size = text.size();
    for (qsizetype i = 0; i < size; ++i) {
        char32_t c = text[i].unicode();
        if (QChar::isHighSurrogate(c) && i + 1 < size && text[i + 1].isLowSurrogate()) {
            c = QChar::surrogateToUcs4(text[i], text[i + 1]);
            ++i;
        }
        if (c >= U'A' && c <= U'Z') {
            put(c + (U'a' - U'A'));
        } else if (c < 0x80) {
            put(c == U'\t' || c == U'\n' || c == U'\r' ? U' ' : c);
        } else if (QChar::isSpace(c)) {
            put(U' ');
        } else if (const char32_t lower = QChar::toCaseFolded(c); lower < 0x80) {
            put(lower);
        } else if (lower < 0x800) {
            put(0xC0 | lower >> 6);
            put(0x80 | (lower & 0x3F));
        } else if (lower < 0x10000) {
            put(0xE0 | lower >> 12);
            put(0x80 | (lower >> 6 & 0x3F));
            put(0x80 | (lower & 0x3F));
        } else {
            put(0xF0 | lower >> 18);
            put(0x80 | (lower >> 12 & 0x3F));
            put(0x80 | (lower >> 6 & 0x3F));
            put(0x80 | (lower & 0x3F));
        }
    }
    folded.resize(at);
}

Needle::Needle(QStringView text)
    : m_text(QByteArray::fromStdString(of(text)))
    , m_matcher(m_text)
{
}

bool Needle::isIn(std::string_view folded) const
{
    // The matcher skips by the length of the text, which pays from three bytes on.
    if (m_text.size() < 3)
        return folded.find({m_text.data(), static_cast<size_t>(m_text.size())}) != folded.npos;
    return m_matcher.indexIn(folded.data(), static_cast<qsizetype>(folded.size())) >= 0;
}

} // namespace FoldedText
