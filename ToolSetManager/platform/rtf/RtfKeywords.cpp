#include "platform/rtf/RtfKeywords.h"

#include "platform/rtf/RtfPicture.h"
#include "platform/rtf/RtfStyle.h"

#include <array>
#include <string_view>

namespace {

struct Row
{
    std::string_view name;
    RtfWord word;
    int value = 0;
};

using W = RtfWord;
using Flag = RtfCharStyle::Flag;
using Para = RtfParagraphStyle;

constexpr Row rows[] = {
    {"tab", W::Character, '\t'},
    {"line", W::Character, 0x2028},
    {"lbr", W::Character, 0x2028},
    {"emdash", W::Character, 0x2014},
    {"endash", W::Character, 0x2013},
    {"emspace", W::Character, 0x2003},
    {"enspace", W::Character, 0x2002},
    {"qmspace", W::Character, 0x2005},
    {"bullet", W::Character, 0x2022},
    {"lquote", W::Character, 0x2018},
    {"rquote", W::Character, 0x2019},
    {"ldblquote", W::Character, 0x201C},
    {"rdblquote", W::Character, 0x201D},
    {"zwj", W::Character, 0x200D},
    {"zwnj", W::Character, 0x200C},
    {"zwbo", W::Character, 0x200B},
    {"zwnbo", W::Character, 0x2060},
    {"ltrmark", W::Character, 0x200E},
    {"rtlmark", W::Character, 0x200F},
    {"u", W::Unicode},
    {"uc", W::FallbackLength},
    {"par", W::Paragraph},
    {"sect", W::Section},
    {"page", W::Page},

    {"plain", W::Plain},
    {"b", W::CharacterFlag, Flag::Bold},
    {"i", W::CharacterFlag, Flag::Italic},
    {"ul", W::CharacterFlag, Flag::Underline},
    {"uld", W::CharacterFlag, Flag::Underline},
    {"uldash", W::CharacterFlag, Flag::Underline},
    {"uldashd", W::CharacterFlag, Flag::Underline},
    {"uldashdd", W::CharacterFlag, Flag::Underline},
    {"uldb", W::CharacterFlag, Flag::Underline},
    {"ulhair", W::CharacterFlag, Flag::Underline},
    {"ulhwave", W::CharacterFlag, Flag::Underline},
    {"uldbwave", W::CharacterFlag, Flag::Underline},
    {"ulldash", W::CharacterFlag, Flag::Underline},
    {"ululdbwave", W::CharacterFlag, Flag::Underline},
    {"ulth", W::CharacterFlag, Flag::Underline},
    {"ulthd", W::CharacterFlag, Flag::Underline},
    {"ulthdash", W::CharacterFlag, Flag::Underline},
    {"ulthdashd", W::CharacterFlag, Flag::Underline},
    {"ulthdashdd", W::CharacterFlag, Flag::Underline},
    {"ulthldash", W::CharacterFlag, Flag::Underline},
    {"ulw", W::CharacterFlag, Flag::Underline},
    {"ulwave", W::CharacterFlag, Flag::Underline},
    {"ulnone", W::FlagOff, Flag::Underline},
    {"strike", W::CharacterFlag, Flag::Strike},
    {"striked", W::CharacterFlag, Flag::Strike},
    {"protect", W::CharacterFlag, Flag::Protected},
    {"v", W::CharacterFlag, Flag::Hidden},
    {"caps", W::CharacterFlag, Flag::Capitals},
    {"scaps", W::CharacterFlag, Flag::SmallCapitals},
    {"super", W::CharacterFlag, Flag::Superscript},
    {"sub", W::CharacterFlag, Flag::Subscript},
    {"nosupersub", W::FlagOff, Flag::Superscript | Flag::Subscript},
    {"f", W::Font},
    {"fs", W::FontSize},
    {"cf", W::Colour},
    {"highlight", W::Background},
    {"cb", W::Background},
    {"chcbpat", W::Background},
    {"up", W::OffsetUp},
    {"dn", W::OffsetDown},
    {"loch", W::Script, int(RtfScript::Western)},
    {"hich", W::Script, int(RtfScript::Other)},
    {"dbch", W::Script, int(RtfScript::EastAsian)},
    {"rtlch", W::Script, int(RtfScript::RightToLeft)},
    {"ltrch", W::Script, int(RtfScript::Any)},
    {"afs", W::AssociatedSize},
    {"ab", W::AssociatedFlag, Flag::Bold},
    {"ai", W::AssociatedFlag, Flag::Italic},

    {"pard", W::ParagraphDefaults},
    {"ql", W::Alignment, Para::Left},
    {"qr", W::Alignment, Para::Right},
    {"qc", W::Alignment, Para::Centre},
    {"qj", W::Alignment, Para::Justified},
    {"qd", W::Alignment, Para::Justified},
    {"li", W::LeftIndent},
    {"ri", W::RightIndent},
    {"fi", W::FirstIndent},
    {"sb", W::SpaceBefore},
    {"sa", W::SpaceAfter},
    {"sl", W::LineSpacing},
    {"slmult", W::LineSpacingMultiple},
    {"tqr", W::TabKind, RtfTab::Right},
    {"tqc", W::TabKind, RtfTab::Centre},
    {"tqdec", W::TabKind, RtfTab::Decimal},
    {"tx", W::TabStop},
    {"pagebb", W::PageBreakBefore},
    {"ltrpar", W::Direction, 0},
    {"rtlpar", W::Direction, 1},
    {"ls", W::ListNumber},
    {"ilvl", W::ListLevel},

    {"intbl", W::InTable},
    {"trowd", W::RowDefaults},
    {"trleft", W::RowLeft},
    {"trgaph", W::RowGap},
    {"cellx", W::CellEdge},
    {"cell", W::Cell},
    {"nestcell", W::NestedCell},
    {"row", W::Row},
    {"nestrow", W::NestedRow},
    {"nesttableprops", W::NestedTableProperties},

    {"ansi", W::Ansi},
    {"ansicpg", W::AnsiCodePage},
    {"mac", W::CodePage, 10000},
    {"pc", W::CodePage, 437},
    {"pca", W::CodePage, 850},
    {"deff", W::DefaultFont},
    {"deftab", W::DefaultTab},

    {"fonttbl", W::FontTable},
    {"colortbl", W::ColourTable},
    {"listtable", W::ListTable},
    {"listoverridetable", W::ListOverrideTable},
    {"pn", W::OldList},
    {"pntext", W::OldListText},
    {"listtext", W::OldListText},
    {"pict", W::Picture},
    {"shppict", W::NewPicture},
    {"nonshppict", W::OldPicture},
    {"ud", W::Entered},
    {"upr", W::EitherOr},
    {"annotation", W::Skipped},
    {"comment", W::Skipped},
    {"fldinst", W::FieldInstruction},
    {"filetbl", W::Skipped},
    {"footer", W::Skipped},
    {"footerf", W::Skipped},
    {"footerl", W::Skipped},
    {"footerr", W::Skipped},
    {"footnote", W::Skipped},
    {"ftncn", W::Skipped},
    {"ftnsep", W::Skipped},
    {"ftnsepc", W::Skipped},
    {"aftncn", W::Skipped},
    {"aftnsep", W::Skipped},
    {"aftnsepc", W::Skipped},
    {"header", W::Skipped},
    {"headerf", W::Skipped},
    {"headerl", W::Skipped},
    {"headerr", W::Skipped},
    {"info", W::Skipped},
    {"list", W::Skipped},
    {"nonesttables", W::Skipped},
    {"objalias", W::Skipped},
    {"objclass", W::Skipped},
    {"objdata", W::Skipped},
    {"objname", W::Skipped},
    {"pntxta", W::Skipped},
    {"pntxtb", W::Skipped},
    {"private", W::Skipped},
    {"revtbl", W::Skipped},
    {"rxe", W::Skipped},
    {"sn", W::Skipped},
    {"sp", W::Skipped},
    {"stylesheet", W::Skipped},
    {"sv", W::Skipped},
    {"tc", W::Skipped},
    {"tcn", W::Skipped},
    {"txe", W::Skipped},
    {"xe", W::Skipped},

    {"fcharset", W::FontCharset},
    {"cpg", W::FontCodePage},
    {"red", W::Red},
    {"green", W::Green},
    {"blue", W::Blue},
    {"listlevel", W::ListEntry},
    {"listid", W::ListIdentity},
    {"levelnfc", W::ListStyle},
    {"levelnfcn", W::ListStyle},
    {"pnlvlblt", W::BulletLevel},
    {"pnlvl", W::OtherLevel},
    {"pnlvlbody", W::OtherLevel},
    {"pnlvlcont", W::OtherLevel},
    {"wmetafile", W::PictureKind, RtfPicture::Metafile},
    {"dibitmap", W::PictureKind, RtfPicture::Bitmap},
    {"pngblip", W::PictureKind, RtfPicture::Png},
    {"jpegblip", W::PictureKind, RtfPicture::Jpeg},
    {"emfblip", W::PictureKind, RtfPicture::EnhancedMetafile},
    {"wbitmap", W::PictureKind, RtfPicture::DeviceBitmap},
    {"macpict", W::PictureKind, RtfPicture::MacPicture},
    {"pmmetafile", W::PictureKind, RtfPicture::Os2Metafile},
    {"picw", W::PictureWidth},
    {"pich", W::PictureHeight},
    {"picwgoal", W::PictureGoalWidth},
    {"pichgoal", W::PictureGoalHeight},
    {"picscalex", W::PictureScaleX},
    {"picscaley", W::PictureScaleY},
};

constexpr size_t slotCount = 1024; // a power of two, some six times the rows: short searches

constexpr size_t slotOf(std::string_view name)
{
    unsigned hash = 2166136261u;
    for (const char c : name)
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    return (hash ^ (hash >> 15)) % slotCount;
}

constexpr std::array<unsigned char, slotCount> makeSlots()
{
    static_assert(std::size(rows) < 255);
    std::array<unsigned char, slotCount> table {}; // row number + 1
    for (size_t i = 0; i < std::size(rows); ++i) {
        size_t slot = slotOf(rows[i].name);
        while (table[slot])
            slot = (slot + 1) % slotCount;
        table[slot] = static_cast<unsigned char>(i + 1);
    }
    return table;
}

constexpr auto slotTable = makeSlots();

} // namespace

RtfKeyword rtfKeyword(QByteArrayView name)
{
    const std::string_view wanted(name.data(), static_cast<size_t>(name.size()));
    if (wanted.size() > 20)
        return {};
    for (size_t slot = slotOf(wanted); slotTable[slot]; slot = (slot + 1) % slotCount) {
        const Row &row = rows[slotTable[slot] - 1];
        if (row.name == wanted)
            return {row.word, row.value};
    }
    return {};
}
