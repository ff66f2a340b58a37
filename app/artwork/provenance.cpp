#include "app/artwork/provenance.h"

#include <array>

namespace corvane {

namespace {

constexpr std::array<std::string_view, omissionKinds> names = {
    "text",
    "image",
    "form",
    "shading",
    "other",
    "pattern",
    "colourSpace",
    "colourProfile",
    "ink",
    "transparency",
    "softMask",
    "overprint",
    "renderingIntent",
    "deviceSetting",
    "optionalContent",
    "markedContent",
    "unknownOperator",
    "damagedOperator",
    "longDash",
    "unequalStrokeScale",
};
static_assert(!names.back().empty());

} // namespace

std::string_view omissionName(Omission kind) {
    const auto index = static_cast<std::size_t>(kind);
    return index < names.size() ? names[index] : omissionName(Omission::other);
}

} // namespace corvane
