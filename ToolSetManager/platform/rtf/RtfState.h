#pragma once

#include "platform/rtf/RtfKeywords.h"
#include "platform/rtf/RtfStyle.h"
#include "platform/rtf/RtfTokenizer.h"

#include <QHashFunctions>

/// Character formats as control words set them: numbers into the tables.
struct RtfCharState
{
    static constexpr int noFont = -1;

    int font = noFont;
    int colour = 0;
    int background = 0;
    qint16 halfPoints = 24;
    qint16 offset = 0;
    quint16 flags = 0; ///< RtfCharStyle::Flag

    /// Does what a word of a character format says; other words do nothing.
    void apply(RtfKeyword keyword, const RtfToken &token);

    friend bool operator==(const RtfCharState &, const RtfCharState &) = default;
    struct Hash
    {
        size_t operator()(const RtfCharState &state) const
        {
            return qHashMulti(0, state.font, state.colour, state.background, state.halfPoints,
                state.offset, state.flags);
        }
    };
};

/// All that a group's end restores.
struct RtfState
{
    RtfCharState characters;
    RtfParagraphStyle paragraph;
    int list = 0; ///< Number of \ls.
    quint8 listLevel = 0;
    RtfTab::Kind nextTab = RtfTab::Left;
    RtfScript script = RtfScript::Any;
    bool inTable = false;
    bool oldListText = false; ///< Text goes to the paragraph's label.
    bool newPicture = false; ///< In a picture's newer form; the older one follows.
    bool oldPicture = false; ///< In the older one.
    int fallbackLength = 1; ///< Of \uc.

    RtfScript scriptAfter(RtfKeyword keyword) const;
    /// Does what a word of a paragraph format says; other words do nothing.
    void applyToParagraph(RtfKeyword keyword, const RtfToken &token);
};
