#include "model/StorableText.h"

#include "model/BmtFormat.h"
#include "platform/text/CodePage.h"

QString StorableText::problem(const CodePage &codePage, const QString &text)
{
    const qsizetype bad = codePage.firstUnencodable(text);
    if (bad >= 0) {
        const QString rest = text.mid(bad, 2);
        return QStringLiteral("the code page %1 has no character \"%2\"")
            .arg(codePage.number())
            .arg(rest.left(rest.at(0).isHighSurrogate() ? 2 : 1));
    }
    if (text.size() > BmtFormat::longestString) {
        return QStringLiteral("it has %L1 characters, and the file can hold %L2 at most")
            .arg(text.size())
            .arg(BmtFormat::longestString);
    }
    return {};
}
