// Text as the art walk writes it.
#pragma once

#include "host/artwork.h"

namespace corvane {

struct Walk;

class TextDrawing {
public:
    virtual ~TextDrawing() = default;
    /// Writes a text object of the artwork, in the space of the artboard.
    virtual void write(Walk& walk, Art text) = 0;
    /// Clips with text, which the clip of a group is.
    virtual void clip(Walk& walk, Art clip) = 0;
};

} // namespace corvane
