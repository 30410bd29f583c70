#pragma once

/// By these two a running frame is found: by a second start of the program and by the opener, which
/// knows nothing else of the frame.
namespace FrameIdentity {

constexpr char16_t windowClass[] = u"ThunderRT5MDIForm";
constexpr char16_t caption[] = u"VB Quillon Tool Set Manager";

} // namespace FrameIdentity
