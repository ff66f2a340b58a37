// Widths that font dictionaries say. Unit: 1/1000 of an em.
//
// Source: PDF Reference, 5.5.1 and 5.6.3.
#pragma once

#include "reader/document/cache.h"
#include "reader/font/cmap/range_table.h"
#include "runtime/memory.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace corvane {

/// Of the codes of a simple font: Widths, FirstChar and MissingWidth.
class SimpleWidths {
public:
    /// `descriptor` may be null.
    SimpleWidths(DocumentCache& cache, const Object& font, const Object& descriptor);

    /// Nothing where the dictionary has no widths at all: the font program tells then.
    std::optional<double> widthOf(std::uint8_t code) const;

private:
    bool isThere_ = false;
    std::array<double, 256> widths_{};
};

/// Of vertical writing: how far down a glyph goes, and where on the line its origin is.
struct VerticalMetrics {
    double advance = -1000; ///< up the page, so usually negative
    double originX = 0;
    double originY = 880;
    friend constexpr bool operator==(const VerticalMetrics&, const VerticalMetrics&) = default;
};

/// Of the CIDs of a composite font: DW, W, DW2 and W2.
class CidWidths {
public:
    CidWidths(DocumentCache& cache, const Object& descendant);

    double widthOf(std::uint32_t cid) const;
    VerticalMetrics verticalOf(std::uint32_t cid) const;

private:
    double usualWidth_ = 1000;
    RangeTable widthPlaces_; ///< indexes into `widths_`
    std::vector<double> widths_;
    VerticalMetrics usualVertical_;
    RangeTable verticalPlaces_; ///< indexes into `verticals_`
    std::vector<VerticalMetrics> verticals_;
    ZoneCharge charge_; ///< fonts may share what a file says once
};

} // namespace corvane
