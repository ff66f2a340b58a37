#include "reader/paint/space_colour.h"

#include "objects/stack.h"
#include "reader/content/interpreter.h"
#include "reader/paint/ink.h"

#include <algorithm>

namespace corvane {

std::vector<double> popComponents(std::int32_t most) {
    std::vector<double> components(static_cast<std::size_t>(std::min(countStack(), most)));
    std::ranges::generate(components.rbegin(), components.rend(), popNumber);
    return components;
}

Colour computedColour(Interpreter& interpreter, const ColourSpace& space,
                      std::span<const double> components) {
    interpreter.progress.work(costOf(space));
    return colourIn(space, components);
}

void takeColour(Interpreter& interpreter, Paint& paint, Colour& colour) {
    const std::vector<double> components = popComponents(paint.space->components);
    colour = computedColour(interpreter, *paint.space, components);
    selectInk(interpreter, paint, colour, components);
}

} // namespace corvane
