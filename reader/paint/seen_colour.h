// What colours look like on a screen.
#pragma once

#include "host/artwork.h"

#include <cstdint>

namespace corvane {

struct SeenColour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    bool isGray() const { return red == green && green == blue; }
    friend bool operator==(SeenColour, SeenColour) = default;
};

/// Gray and process colours as hosts show them: light is what ink and black leave over (PDF
/// Reference, 6.2.4). Anything else is black.
SeenColour seenColour(const Colour& colour);

} // namespace corvane
