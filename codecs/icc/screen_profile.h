// The colour profile of a screen, as bytes.
#pragma once

#include <string>

namespace corvane {

/// A display profile (ISO 15076-1, version 2.4) whose colours look as those of sRGB (IEC
/// 61966-2-1): of red, green and blue, or of gray with the same curve.
std::string screenProfile(bool isGray);

} // namespace corvane
