// Gradients of the host as shading dictionaries (PDF Reference, 4.6.3 and 3.9).
#pragma once

#include "host/extension.h"
#include "host/gradient.h"
#include "reader/paint/colour_space.h"

#include <cstdint>
#include <string>

namespace corvane {

/// What texts of shadings and colour spaces need of the save.
class FunctionHolder {
public:
    virtual ~FunctionHolder() = default;
    /// Makes an object of its text, to be named again and again; its number.
    virtual std::int32_t hold(std::string function) = 0;
    /// Makes a stream of the entries of its dictionary and its data; its number.
    virtual std::int32_t holdStream(std::string entries, std::string data) = 0;
    /// What names a device space, so that its colours look as the artwork has them.
    virtual std::string spaceText(ColourSpace::Kind device) = 0;
};

/// What a shading shows of a gradient's stops.
enum class StopPart { colour, opacity };

/// Whether a gradient is seen through anywhere but beyond its ends, where a shading can end as
/// well.
bool hasOpacity(const GradientFacts& gradient);

/// The entries of a shading dictionary, in the gradient's own space. A gradient that repeats does
/// so as far as `area` reaches, a box on the artboard; past a limit its ends go on.
std::string shadingText(const GradientFacts& gradient, StopPart part, const Box& area,
                        FunctionHolder& functions);

/// The matrix of the space in which `shadingText` has the gradient: its own, unless that is flat.
RealMatrix shadingSpace(const GradientFacts& gradient);

} // namespace corvane
