#include "app/artwork/styles.h"

#include "app/artwork/error.h"

#include <bit>
#include <limits>

namespace corvane {

namespace {

constexpr std::size_t firstPlaces = 256;

/// A style that finds no place among so many is kept but not shared, so that a file which makes
/// hashes meet costs memory, not time.
constexpr std::size_t mostProbes = 64;

constexpr std::size_t noPlace = std::numeric_limits<std::size_t>::max();

class Hash {
public:
    template <class... Values>
    void add(Values... values) {
        ((state_ = (std::rotl(state_, 5) ^ static_cast<std::uint32_t>(values)) * multiplier), ...);
    }
    void add(const Colour& colour) {
        add(static_cast<std::uint32_t>(colour.kind), colour.component[0], colour.component[1],
            colour.component[2], colour.component[3], static_cast<std::uint32_t>(colour.origin));
    }
    std::size_t value() const { return static_cast<std::size_t>(state_ >> 32 ^ state_ >> 7); }

private:
    static constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15;
    std::uint64_t state_ = 0;
};

std::size_t hashOf(const PathStyle& style) {
    Hash hash;
    hash.add(style.fillPaint, style.strokePaint, style.clip, static_cast<std::uint8_t>(style.rule));
    hash.add(style.fill);
    hash.add(style.stroke);
    hash.add(style.lineWidth, style.cap, style.join, style.miterLimit, style.resolution);
    hash.add(style.dashCount, style.dashPhase);
    for (const Fixed length : style.dash) {
        hash.add(length);
    }
    return hash.value();
}

std::int64_t bytesOf(std::size_t places) {
    return static_cast<std::int64_t>(places * sizeof(std::uint32_t));
}

} // namespace

StyleTable::StyleTable(ArtworkBudget& budget) : budget_(&budget), styles_(budget) {
    add({});
}

StyleTable::~StyleTable() {
    budget_->discharge(bytesOf(places_.size()));
}

std::uint32_t StyleTable::add(const PathStyle& style) {
    if (styles_.size() > 0 && styles_[latest_] == style) {
        return latest_;
    }
    if (styles_.size() >= places_.size() / 2) {
        grow();
    }
    const std::size_t at = place(style);
    if (at != noPlace && places_[at] != 0) {
        return latest_ = places_[at] - 1;
    }
    const std::size_t number = styles_.size();
    styles_.resize(number + 1);
    styles_[number] = style;
    latest_ = static_cast<std::uint32_t>(number);
    if (at != noPlace) {
        places_[at] = latest_ + 1;
    }
    return latest_;
}

/// Where the style's number stands or would stand.
std::size_t StyleTable::place(const PathStyle& style) const {
    const std::size_t start = hashOf(style);
    for (std::size_t probe = 0; probe < mostProbes; ++probe) {
        const std::size_t at = (start + probe) & (places_.size() - 1);
        if (places_[at] == 0 || styles_[places_[at] - 1] == style) {
            return at;
        }
    }
    return noPlace;
}

void StyleTable::grow() {
    const std::size_t wanted = places_.empty() ? firstPlaces : places_.size() * 2;
    std::vector<std::uint32_t> places(wanted);
    budget_->charge(bytesOf(wanted - places_.size()));
    places_.swap(places);
    for (std::size_t number = 0; number < styles_.size(); ++number) {
        const std::size_t at = place(styles_[number]);
        if (at != noPlace && places_[at] == 0) {
            places_[at] = static_cast<std::uint32_t>(number) + 1;
        }
    }
}

} // namespace corvane
