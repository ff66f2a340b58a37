// Finds settings of a page that artwork cannot hold, and counts them as omissions.
#pragma once

#include "host/matrix.h"
#include "objects/object.h"

#include <cstdint>

namespace corvane {

struct ColourSpace;
struct Interpreter;

/// The entries of an external graphics state (`gs`) that are not used; the state remembers which
/// are not as a page begins.
void noteStateLosses(Interpreter& interpreter, const Object& entries);

/// `GraphicsState::settings` without those that `Transparency` holds.
std::uint16_t withoutTransparency(std::uint16_t settings);

/// The bit of a soft mask in `GraphicsState::settings`.
extern const std::uint16_t softMaskSetting;

/// A rendering intent other than the one that a page begins with.
void noteIntentLoss(Interpreter& interpreter, const Object& intent);

/// The profile and the ink of a colour space, and of the spaces within it.
void noteSpaceLosses(Interpreter& interpreter, const ColourSpace& space);

/// What the default colour spaces in force have that artwork cannot hold.
void noteDefaultSpaces(Interpreter& interpreter);

/// The default colour spaces of the page in use, for a profile that ignores them.
void noteIgnoredDefaults(Interpreter& interpreter);

/// A stroke under a matrix by which its width depends on its direction, as no pen says it.
void noteStrokeLoss(Interpreter& interpreter, const RealMatrix& matrix);

} // namespace corvane
