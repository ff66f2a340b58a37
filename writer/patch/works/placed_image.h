// Images that the artwork places: how two of them differ, and drawing one elsewhere.
#pragma once

#include "host/image.h"
#include "host/matrix.h"
#include "writer/patch/compare/comparison.h"
#include "writer/patch/patch_tools.h"

#include <array>
#include <string>

namespace corvane {

/// The corners of the square that an image fills.
inline constexpr std::array<RealPoint, 4> unitSquare = {{{0, 0}, {1, 0}, {0, 1}, {1, 1}}};

/// The key of the image that it shows; empty where it is not of a page.
std::string imageKey(const PlacedImage& placed);

/// How what the page shows and an object of the artwork differ.
ArtDifference compareImages(Art was, Art is);

/// By how much an image of the page moves, turns and grows to lie where the other one does. Raises
/// `unpatchable` where the former lies flat.
RealMatrix movementOfImage(Art was, Art is);

/// Draws what was an image of the page where the artwork has it, under the CTM of that image: by
/// its own bytes, or another picture in its place; as a group where it is to be seen through a soft
/// mask of the state, since one of its own would count instead of that. Raises `unpatchable` where
/// nothing can be drawn there.
void imageWorks(PatchTools& tools, const PaintedArt& was, Art is, const ArtDifference& difference);

} // namespace corvane
