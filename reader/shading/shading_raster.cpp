#include "reader/shading/shading_raster.h"

#include "reader/paint/seen_colour.h"
#include "reader/shading/shading_mesh.h"
#include "runtime/budget.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace corvane {

namespace {

/// Colours along the domain of a function: finer than levels of 255.
constexpr std::size_t rampLength = 1024;

/// Triangles may lie over one another, so many times all pixels in the mean.
constexpr std::int64_t mostLayers = 32;

/// Steps that a pixel takes beside its colour.
constexpr std::int64_t pixelSteps = 10;

std::uint8_t byteOf(double level) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(level, 0.0, 1.0) * 255));
}

/// The greatest place on the way from the first circle to the last whose circle goes through the
/// point (PDF Reference, 4.6.3, type 3).
std::optional<double> placeOnCircles(const Shading& shading, RealPoint p) {
    const auto& [x0, y0, r0, x1, y1, r1] = shading.coordinates;
    const double dx = x1 - x0;
    const double dy = y1 - y0;
    const double dr = r1 - r0;
    const double px = p.x - x0;
    const double py = p.y - y0;
    const double a = dx * dx + dy * dy - dr * dr;
    const double b = px * dx + py * dy + r0 * dr;
    const double c = px * px + py * py - r0 * r0;
    const auto counts = [&, r0 = r0](double s) {
        return r0 + s * dr >= 0 && (s >= 0 || shading.extendsStart) &&
               (s <= 1 || shading.extendsEnd);
    };
    if (a == 0) {
        const double s = c / (2 * b);
        return std::isfinite(s) && counts(s) ? std::optional(s) : std::nullopt;
    }
    const double under = b * b - a * c;
    if (!(under >= 0)) {
        return std::nullopt;
    }
    const double root = std::sqrt(under);
    const double greater = std::max((b + root) / a, (b - root) / a);
    const double smaller = std::min((b + root) / a, (b - root) / a);
    return counts(greater)   ? std::optional(greater)
           : counts(smaller) ? std::optional(smaller)
                             : std::nullopt;
}

} // namespace

ShadingRaster::ShadingRaster(const Shading& shading, const RealMatrix& matrix, const Box& area,
                             std::int32_t width, std::int32_t height)
    : shading_(shading), matrix_(matrix), back_(inverse(matrix).value_or(RealMatrix())),
      area_(area), width_(width), height_(height) {
    const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    charge_.resize(static_cast<std::int64_t>(count * sizeof(Pixel)));
    pixels_.resize(count);
}

std::span<const std::uint8_t> ShadingRaster::row(std::int32_t y) const {
    static_assert(sizeof(Pixel) == 4);
    const std::size_t first = static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
    return {pixels_[first].bytes.data(), 4 * static_cast<std::size_t>(width_)};
}

RealPoint ShadingRaster::centre(std::int32_t x, std::int32_t y) const {
    return {area_.left + (x + .5) * (area_.right - area_.left) / width_,
            area_.top - (y + .5) * (area_.top - area_.bottom) / height_};
}

ShadingRaster::Pixel& ShadingRaster::at(std::int32_t x, std::int32_t y) {
    return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                   static_cast<std::size_t>(x)];
}

namespace {

std::array<std::uint8_t, 4> opaque(const Colour& colour) {
    const SeenColour seen = seenColour(colour);
    return {seen.red, seen.green, seen.blue, 255};
}

} // namespace

/// Every pixel whose point has a colour; one takes so many steps.
template <class ColourOf>
void ShadingRaster::drawEach(StepMeter& meter, std::int64_t cost, const ColourOf& colourOf) {
    for (std::int32_t y = 0; y < height_; ++y) {
        meter.add(width_ * (pixelSteps + cost));
        for (std::int32_t x = 0; x < width_; ++x) {
            if (const std::optional<Pixel> pixel = colourOf(transform(back_, centre(x, y)))) {
                at(x, y) = *pixel;
            }
        }
    }
}

void ShadingRaster::makeRamp(StepMeter& meter) {
    const std::int64_t cost = shading_.cost();
    const double first = shading_.domain[0];
    const double last = shading_.domain[1];
    for (std::size_t i = 0; i < rampLength; ++i) {
        const double input =
            first + static_cast<double>(i) * (last - first) / static_cast<double>(rampLength - 1);
        meter.add(cost);
        ramp_.push_back({opaque(shading_.colourAt(std::span(&input, 1)))});
    }
}

ShadingRaster::Pixel ShadingRaster::rampAt(double input) const {
    const double length = shading_.domain[1] - shading_.domain[0];
    const double share = length != 0 ? (input - shading_.domain[0]) / length : 0;
    const double place = std::clamp(share, 0.0, 1.0) * static_cast<double>(rampLength - 1);
    return ramp_[static_cast<std::size_t>(std::lround(place))];
}

void ShadingRaster::drawFunction(StepMeter& meter) {
    const std::optional<RealMatrix> toDomain = inverse(shading_.matrix);
    if (!toDomain) {
        return;
    }
    const auto& [left, right, bottom, top] = shading_.domain;
    const Box domain{.left = left, .bottom = bottom, .right = right, .top = top};
    drawEach(meter, shading_.cost(), [&](RealPoint point) -> std::optional<Pixel> {
        const RealPoint in = transform(*toDomain, point);
        if (!(in.x >= domain.left && in.x <= domain.right && in.y >= domain.bottom &&
              in.y <= domain.top)) {
            return std::nullopt;
        }
        const std::array inputs = {in.x, in.y};
        return Pixel{opaque(shading_.colourAt(inputs))};
    });
}

void ShadingRaster::drawCircles(StepMeter& meter) {
    makeRamp(meter);
    const double first = shading_.domain[0];
    const double length = shading_.domain[1] - first;
    drawEach(meter, pixelSteps, [&](RealPoint point) -> std::optional<Pixel> {
        const std::optional<double> place = placeOnCircles(shading_, point);
        return place ? std::optional(rampAt(first + *place * length)) : std::nullopt;
    });
}

/// Pixels whose centres lie within, by their weights; triangles that share an edge leave no gap.
void ShadingRaster::fillTriangle(const std::array<RealPoint, 3>& points,
                                 const std::array<std::array<double, 3>, 3>& values) {
    const auto& [a, b, c] = points;
    const double area = (b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y);
    if (!std::isfinite(area) || area == 0) {
        return;
    }
    const auto [low, high] = std::minmax({a.y, b.y, c.y});
    const auto pixel = [](double value, std::int32_t most) {
        return static_cast<std::int32_t>(std::clamp(value, 0.0, static_cast<double>(most)));
    };
    // Half a pixel more on each side: what lies between two triangles belongs to both.
    constexpr double room = .5;
    const std::int32_t firstRow = pixel(std::floor(low - room), height_);
    const std::int32_t lastRow = pixel(std::ceil(high + room), height_);
    for (std::int32_t y = firstRow; y < lastRow; ++y) {
        const double py = y + .5;
        double left = INFINITY;
        double right = -INFINITY;
        const double edge = std::clamp(py, low, high);
        for (std::size_t i = 0; i < 3; ++i) {
            const RealPoint& p = points[i];
            const RealPoint& q = points[(i + 1) % 3];
            if (std::min(p.y, q.y) > edge || std::max(p.y, q.y) < edge) {
                continue;
            }
            const double share = p.y == q.y ? 0 : (edge - p.y) / (q.y - p.y);
            for (const double x :
                 {p.x + share * (q.x - p.x), p.y == q.y ? q.x : p.x + share * (q.x - p.x)}) {
                left = std::min(left, x);
                right = std::max(right, x);
            }
        }
        if (!(left <= right)) {
            continue;
        }
        const std::int32_t from = pixel(std::floor(left - room + .5), width_);
        const std::int32_t to = pixel(std::ceil(right + room - .5), width_);
        filled_ += to - from + 1;
        for (std::int32_t x = from; x < to; ++x) {
            const double px = std::clamp(x + .5, left, right);
            const double wb = std::clamp(
                ((px - a.x) * (c.y - a.y) - (c.x - a.x) * (edge - a.y)) / area, 0.0, 1.0);
            const double wc = std::clamp(
                ((b.x - a.x) * (edge - a.y) - (px - a.x) * (b.y - a.y)) / area, 0.0, 1.0);
            const double wa = std::max(0.0, 1 - wb - wc);
            std::array<double, 3> value{};
            for (std::size_t k = 0; k < value.size(); ++k) {
                value[k] = wa * values[0][k] + wb * values[1][k] + wc * values[2][k];
            }
            at(x, y) = ramp_.empty()
                           ? Pixel{{byteOf(value[0]), byteOf(value[1]), byteOf(value[2]), 255}}
                           : rampAt(value[0]);
        }
    }
}

bool ShadingRaster::drawMesh(DocumentCache& cache, StepMeter& meter) {
    if (!shading_.functions.empty()) {
        makeRamp(meter);
    }
    const double acrossStep = width_ / (area_.right - area_.left);
    const double upStep = height_ / (area_.top - area_.bottom);
    const RealMatrix toPixels{acrossStep,        0, 0, -upStep, -area_.left * acrossStep,
                              area_.top * upStep};
    const RealMatrix all = multiply(matrix_, toPixels);
    const std::int64_t most = mostLayers * width_ * height_;
    constexpr double cellPixels = 8;
    const double cell = cellPixels / std::max(meanStretch(all), 1e-9);
    const auto fill = [&](const MeshTriangle& triangle) {
        if (filled_ < most) {
            const std::int64_t before = filled_;
            fillTriangle({transform(all, triangle[0].point), transform(all, triangle[1].point),
                          transform(all, triangle[2].point)},
                         {triangle[0].value, triangle[1].value, triangle[2].value});
            meter.add((filled_ - before) * pixelSteps);
        }
    };
    const bool isWhole = forEachTriangle(
        cache, [&](std::int64_t steps) { meter.add(steps); }, shading_, cell, fill);
    return isWhole && filled_ < most;
}

/// What lies outside the shading's own box goes.
void ShadingRaster::cutToBox(StepMeter& meter) {
    const Box& box = *shading_.box;
    for (std::int32_t y = 0; y < height_; ++y) {
        meter.add(width_ * pixelSteps);
        for (std::int32_t x = 0; x < width_; ++x) {
            const RealPoint point = transform(back_, centre(x, y));
            if (!(point.x >= box.left && point.x <= box.right && point.y >= box.bottom &&
                  point.y <= box.top)) {
                at(x, y) = {};
            }
        }
    }
}

bool ShadingRaster::draw(DocumentCache& cache, StepMeter& meter, bool withBackground) {
    if (withBackground && !shading_.background.empty()) {
        std::ranges::fill(pixels_, Pixel{opaque(colourIn(*shading_.space, shading_.background))});
    }
    bool isWhole = true;
    if (shading_.isMesh()) {
        isWhole = drawMesh(cache, meter);
    } else if (shading_.kind == ShadingKind::function) {
        drawFunction(meter);
    } else {
        drawCircles(meter);
    }
    if (shading_.box) {
        cutToBox(meter);
    }
    return isWhole;
}

} // namespace corvane
