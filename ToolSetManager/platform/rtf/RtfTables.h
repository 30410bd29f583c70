#pragma once

#include <QHash>
#include <QList>
#include <QRgb>
#include <QString>

#include <optional>
#include <vector>

class RtfCharsets;
class RtfTokenizer;

/// The tables at the start of a rich text, to whose entries its body refers by number. Each read()
/// takes the rest of the table's group, whatever is in it.

struct RtfFont
{
    QString family; ///< Empty when the table does not say.
    int codePage = 1252; ///< As RtfCharset counts them.
};

class RtfFontTable
{
public:
    /// \a documentPage is the code page of fonts that do not tell theirs.
    void read(RtfTokenizer &tokenizer, int documentPage, RtfCharsets &charsets);

    /// The number of a font of that name; it is added when there is none.
    int number(const QString &family, int documentPage);
    /// Null for a number that is not there.
    const RtfFont *find(int number) const;

private:
    QHash<int, RtfFont> m_fonts;
    QHash<QString, int> m_added; ///< Numbers of those that number() has made.
};

class RtfColourTable
{
public:
    void read(RtfTokenizer &tokenizer);

    /// Empty for "automatic" and for a number that is not there.
    std::optional<QRgb> find(int number) const;

private:
    std::vector<std::optional<QRgb>> m_colours;
};

/// Lists as word processors keep them: what matters here is which levels have bullets.
class RtfListTable
{
public:
    void readLists(RtfTokenizer &tokenizer);
    void readOverrides(RtfTokenizer &tokenizer);

    bool isBullet(int number, int level) const;

private:
    QHash<int, QList<int>> m_lists; ///< By identity: the style of each level.
    QHash<int, int> m_overrides; ///< The identity of each list number.
};
