// The shadow of the state of text: what the styles of the host ask for, and what the content
// written so far has set.
#pragma once

#include "host/classic_text.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace corvane {

using WidthTable = std::array<Fixed, 256>; ///< ems

/// What `renderWorks` writes in front of letters.
struct RenderState {
    std::string family; ///< resource name of the font, its length byte first
    std::optional<Fixed> size;
    Fixed width = 0; ///< of the font's blank, in ems
    std::optional<Fixed> wordSpace;
    std::optional<Fixed> charSpace;
    std::optional<std::int32_t> render; ///< mode
    WidthTable widths{};
};

struct TextShadow {
    std::optional<std::string> faceStyle; ///< name of the host's font
    std::optional<CharStyle> charStyle;
    ParaStyle paraStyle;
    FlowStyle flowStyle;
    RenderState wanted;
    RenderState written;
};

} // namespace corvane
