#pragma once

#include "model/CVBATool.h"

#include <array>

/// The kinds of tools (CVBATool::Kind) as lists show them.
namespace ToolKinds {

/// In the order of the list of kinds: that of the kind -1 first.
constexpr std::array<const char16_t *, 7> captions {u"(none)", u"Standard Executable",
    u"VB Quillon Executable", u"Macro", u"Help File", u"Text File", u"Separator"};

constexpr bool isKnown(qint16 kind)
{
    return kind >= CVBATool::NoKind && kind <= CVBATool::Separator;
}

/// Empty for a kind that is none.
inline QString caption(qint16 kind)
{
    return isKnown(kind)
        ? QString::fromUtf16(captions[static_cast<size_t>(kind - CVBATool::NoKind)])
        : QString();
}

} // namespace ToolKinds
