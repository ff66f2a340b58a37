// Text of the original profile: what of it belongs to the graphics state, and the line under
// construction.
#pragma once

#include "host/artwork.h"
#include "host/classic_text.h"
#include "runtime/charged_list.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>

namespace corvane::classic {

/// From codes of the page to those of the host.
using EncodingMap = std::array<std::uint8_t, 256>;

enum class FontKind : std::int32_t { type1 = 1, multipleMaster = 2, trueType = 3, type3 = 4 };

/// A font of the page as the host is asked for it.
struct SelectedFont {
    std::string name = "Helvetica"; ///< of the host
    FontKind kind = FontKind::type1;
    EncodingMap encoding = identityMap();

private:
    static constexpr EncodingMap identityMap() {
        EncodingMap map{};
        for (std::size_t code = 0; code < map.size(); ++code) {
            map[code] = static_cast<std::uint8_t>(code);
        }
        return map;
    }
};

/// In units of text space.
struct TextState {
    std::shared_ptr<const SelectedFont> font = firstFont();
    Fixed size = 0;
    std::int32_t renderMode = 0; ///< 0 to 7
    Fixed rise = 0;
    Fixed characterSpacing = 0;
    Fixed wordSpacing = 0;
    Fixed lineOffsetX = 0; ///< of the last `TD`
    Fixed lineOffsetY = 0; ///< likewise, or below 0 the leading of `TL`
    Fixed horizontalScale = wholePercent;
    Fixed verticalScale = wholePercent; ///< no operator changes it
    friend bool operator==(const TextState&, const TextState&) = default;

private:
    static const std::shared_ptr<const SelectedFont>& firstFont();
};

/// Kerning that waits for the end of the line.
struct PendingKern {
    std::int32_t position = 0; ///< in the run
    Fixed amount = 0;          ///< ems
};

/// The text object of the content, and the line that it is building.
struct TextLineState {
    bool isOpen = false; ///< between `BT` and `ET`
    Matrix matrix;
    Art object = Art::null;          ///< of the host; null: no line is open
    RunHandle run = RunHandle::null; ///< of that object
    ChargedList<PendingKern> kerns;  ///< the newest last
};

} // namespace corvane::classic
