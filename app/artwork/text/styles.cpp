#include "app/artwork/text/styles.h"

namespace corvane {

namespace {

std::uint32_t hashOf(const PathStyle& style) {
    Hash hash;
    hash.add(style.fillPaint, style.strokePaint, style.clip, static_cast<std::uint8_t>(style.rule));
    hash.add(style.fill);
    hash.add(style.stroke);
    hash.add(style.lineWidth, style.cap, style.join, style.miterLimit, style.resolution,
             static_cast<std::uint32_t>(style.note));
    hash.add(style.dashCount, style.dashPhase);
    for (const Fixed length : style.dash) {
        hash.add(length);
    }
    for (const double entry : {style.pen.xx, style.pen.xy, style.pen.yy}) {
        hash.addNumber(entry);
    }
    return hash.value();
}

} // namespace

StyleTable::StyleTable(ArtworkBudget& budget) : styles_(budget), index_(budget) {
    add({});
}

std::uint32_t StyleTable::add(const PathStyle& style) {
    if (styles_.size() > 0 && styles_[latest_] == style) {
        return latest_;
    }
    const std::uint32_t hash = hashOf(style);
    const std::uint32_t known =
        index_.find(hash, [&](std::uint32_t number) { return styles_[number] == style; });
    if (known != NumberIndex::none) {
        return latest_ = known;
    }
    index_.reserve();
    const std::size_t number = styles_.size();
    styles_.resize(number + 1);
    styles_[number] = style;
    latest_ = static_cast<std::uint32_t>(number);
    index_.add(hash, latest_);
    return latest_;
}

} // namespace corvane
