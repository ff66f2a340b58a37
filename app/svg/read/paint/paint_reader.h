// Resolves what `fill` and `stroke` name: gradients and patterns.
#pragma once

#include "app/svg/read/context.h"
#include "app/svg/read/paint/gradient_reader.h"

#include <cstddef>
#include <unordered_map>
#include <vector>

namespace corvane {

class PaintReader {
public:
    explicit PaintReader(ReadingContext& context) : context_(context) {}

    /// Gives `path` the gradients and patterns that `style` names. Where there is none of that id,
    /// it gets the fallback, and that is counted.
    void paint(PathStyle& path, const ComputedStyle& style, const PaintUse& use);

private:
    void paint(std::uint8_t& painted, Colour& colour, const PaintValue& value, const PaintUse& use);
    PaintSource resolve(pugi::xml_node server, Element element, const PaintUse& use);
    PaintSource gradient(pugi::xml_node server, const PaintUse& use, bool& fitsBox);

    ReadingContext& context_;
    std::unordered_map<std::size_t, std::vector<GradientStop>> stops_;
};

} // namespace corvane
