#pragma once

#include "platform/rtf/RtfTokenizer.h"

/// Walks over the tokens up to the end of the group that the tokenizer stands in, and takes the
/// closing brace with them.
class RtfGroup
{
public:
    explicit RtfGroup(RtfTokenizer &tokenizer)
        : m_tokenizer(tokenizer)
    {
    }

    /// False at the end of the group or of the text.
    bool next()
    {
        token = m_tokenizer.next();
        if (token.kind == RtfToken::GroupStart)
            ++depth;
        else if (token.kind == RtfToken::GroupEnd)
            --depth;
        return depth > 0 && token.kind != RtfToken::End;
    }

    RtfToken token;
    int depth = 1; ///< 1 in the group itself; of a brace, the depth behind it.

private:
    RtfTokenizer &m_tokenizer;
};
