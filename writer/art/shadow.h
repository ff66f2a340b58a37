// The shadow of the graphics state: what the content written so far has set. What is not known is
// empty, and the next path writes it.
#pragma once

#include "host/artwork.h"
#include "writer/art/text/text_shadow.h"

#include <cstdint>
#include <optional>
#include <string>

namespace corvane {

struct Dash {
    std::int16_t count = 0;
    Fixed phase = 0;
    Fixed length[6] = {};
};

/// Whether two colours are the same by what their kind has.
bool compareColor(const Colour& a, const Colour& b);
/// Whether two dashes are the same by their counted lengths.
bool compareDash(const Dash& a, const Dash& b);

struct Shadow {
    std::optional<Colour> fill;
    std::optional<Colour> stroke;
    std::optional<Fixed> lineWidth;
    std::optional<Dash> dash;
    std::optional<std::int32_t> cap;
    std::optional<std::int32_t> join;
    std::optional<Fixed> miterLimit;
    std::optional<Fixed> resolution;
    std::optional<std::string> note;
    TextShadow text;
};

} // namespace corvane
