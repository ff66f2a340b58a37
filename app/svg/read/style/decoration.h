// Lines along the letters of an element and of all elements within it (CSS Text Decoration 3).
#pragma once

#include "app/svg/read/style/computed_style.h"

#include <cstddef>
#include <memory>

namespace corvane {

/// Lengths are user units of the element that says it.
struct Decoration {
    std::shared_ptr<const Decoration> outer; ///< of the elements around, painted behind it
    std::size_t depth = 1;                   ///< with all of those
    bool isUnder = false;
    bool isOver = false;
    bool isThrough = false;
    double fontSize = 0;
    double thickness = 0; ///< 0: as the font has it
    bool saysColour = false;
    ScreenColour colour; ///< where it says one
    PaintValue fill;     ///< else it is painted as the element's own letters are, as the next
    PaintValue stroke;
};

/// Lines of elements within one another, which are painted over one another.
inline constexpr std::size_t deepestDecoration = 16;

/// Adds the lines of an element to those around it; `style` has its paints already. What artwork
/// does not have is counted.
void readDecoration(ComputedStyle& style, const Declared& declared, const LengthContext& lengths,
                    Tally& tally);

} // namespace corvane
