// Gradients and patterns as the art walk names them.
#pragma once

#include "host/artwork.h"
#include "reader/paint/colour_space.h"

#include <string_view>

namespace corvane {

struct Walk;

class PaintDrawing {
public:
    virtual ~PaintDrawing() = default;
    /// Makes a gradient, a pattern, a custom colour or a mixture of inks the colour for filling or
    /// for stroking.
    virtual void set(Walk& walk, const Colour& colour, bool isFill) = 0;
    /// The name of the space in which colours of a device space look as the artwork has them; empty
    /// where the device space does.
    virtual std::string_view spaceOf(ColourSpace::Kind device) = 0;
    /// The external graphics state whose soft mask shows as much of a colour as its stops say, set
    /// in the space of the artboard; empty where all of it is opaque.
    virtual std::string_view maskOf(const Colour& colour) = 0;
    /// The same for the content of a form that lies on the artboard, with the same resources.
    virtual PaintDrawing& onArtboard() = 0;
};

} // namespace corvane
