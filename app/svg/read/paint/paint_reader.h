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
    /// it gets the fallback; that is counted where there is none. `around` is what bears or uses
    /// the path: its paints are fitted to that.
    void paint(PathStyle& path, const ComputedStyle& style, const PaintUse& use,
               const PaintUse& around);

private:
    void paint(std::uint8_t& painted, Colour& colour, const PaintValue& value, const PaintUse& use);
    std::optional<PaintSource> resolve(pugi::xml_node server, Element element, const PaintUse& use);
    std::optional<PaintSource> gradient(pugi::xml_node server, const PaintUse& use, bool& fitsBox);

    ReadingContext& context_;
    std::unordered_map<std::size_t, std::vector<GradientStop>> stops_;
};

} // namespace corvane
