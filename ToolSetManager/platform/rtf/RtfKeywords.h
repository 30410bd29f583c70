#pragma once

#include <QByteArrayView>

/// The control words that the reader knows. All others are passed over.
enum class RtfWord : unsigned char {
    Unknown,
    // Text
    Character, ///< A character of its own; `value` is its code.
    Unicode,
    FallbackLength,
    Paragraph,
    Section,
    Page,
    // Character formats
    Plain,
    CharacterFlag, ///< Switches the flag `value` of RtfCharState.
    FlagOff,
    Font,
    FontSize,
    Colour,
    Background,
    OffsetUp,
    OffsetDown,
    Script, ///< What the words for associated formats speak of, from here on: an RtfScript.
    AssociatedSize,
    AssociatedFlag,
    // Paragraph formats
    ParagraphDefaults,
    Alignment, ///< `value` is one of RtfParagraphStyle::Alignment.
    LeftIndent,
    RightIndent,
    FirstIndent,
    SpaceBefore,
    SpaceAfter,
    LineSpacing,
    LineSpacingMultiple,
    TabKind, ///< Of the next stop; `value` is one of RtfTab::Kind.
    TabStop,
    PageBreakBefore,
    Direction, ///< `value` 1: from right to left.
    ListNumber,
    ListLevel,
    // Tables
    InTable,
    RowDefaults,
    RowLeft,
    RowGap,
    CellEdge,
    Cell,
    NestedCell,
    Row,
    NestedRow,
    // Document
    Ansi,
    AnsiCodePage,
    CodePage, ///< The document's, `value` is its number.
    DefaultTab,
    DefaultFont,
    // Groups
    FontTable,
    ColourTable,
    ListTable,
    ListOverrideTable,
    OldList,
    OldListText,
    Picture,
    NewPicture,
    OldPicture,
    NestedTableProperties,
    FieldInstruction,
    Entered, ///< A group whose text counts.
    EitherOr, ///< The next group says the same in bytes only.
    Skipped, ///< A group whose text does not count.
    // Within tables and pictures
    FontCharset,
    FontCodePage,
    Red,
    Green,
    Blue,
    ListEntry,
    ListIdentity,
    ListStyle,
    BulletLevel,
    OtherLevel,
    PictureKind, ///< `value` is one of RtfPicture::Kind.
    PictureWidth,
    PictureHeight,
    PictureGoalWidth,
    PictureGoalHeight,
    PictureScaleX,
    PictureScaleY
};

/// Kinds of letters that may have formats of their own in one text.
enum class RtfScript : unsigned char {
    Any,
    Western, ///< `\loch`
    Other, ///< `\hich`
    EastAsian, ///< `\dbch`
    RightToLeft ///< Or whichever direction the text does not have.
};

struct RtfKeyword
{
    RtfWord word = RtfWord::Unknown;
    int value = 0;
};

/// Finds a control word; letter case counts.
RtfKeyword rtfKeyword(QByteArrayView name);
