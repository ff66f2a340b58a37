#include "codecs/dct/samples/upsample.h"

#include "codecs/dct/samples/vector.h"

#include <algorithm>

namespace corvane {

namespace {

using V = DctVector;

/// Numbers before and behind a row of sums.
constexpr std::size_t margin = 16;

/// Between two samples: (3 * a + b + bias) / 2^shift.
template <int shift>
V::Words mixed(V::Words a, V::Words b, V::Words bias) {
    const V::Words three = V::add(V::add(a, a), a);
    return V::template shiftRight<shift>(V::add(V::add(three, b), bias));
}

void widen(const std::uint8_t* from, std::size_t width, std::int16_t* to) {
    for (std::size_t x = 0; x < width; x += 8) {
        V::store(to + x, V::loadBytes(from + x));
    }
}

/// Three parts of the nearer row and one of the farther.
void sumRows(const std::uint8_t* near, const std::uint8_t* far, std::size_t width,
             std::int16_t* to) {
    for (std::size_t x = 0; x < width; x += 8) {
        V::store(to + x, mixed<0>(V::loadBytes(near + x), V::loadBytes(far + x), V::splat(0)));
    }
}

void mixRows(const std::uint8_t* near, const std::uint8_t* far, std::size_t width,
             std::int16_t bias, std::uint8_t* out) {
    const V::Words biases = V::splat(bias);
    for (std::size_t x = 0; x < width; x += 16) {
        V::storeBytes(out + x,
                      V::narrowBytes(
                          mixed<2>(V::loadBytes(near + x), V::loadBytes(far + x), biases),
                          mixed<2>(V::loadBytes(near + x + 8), V::loadBytes(far + x + 8), biases)));
    }
}

/// Each of `width` numbers to two samples, of which the first leans to the left neighbour.
template <int shift>
void doubleRow(std::int16_t* sums, std::size_t width, std::int16_t even, std::int16_t odd,
               std::uint8_t* out) {
    sums[-1] = sums[0];
    sums[width] = sums[width - 1];
    const V::Words biasLeft = V::splat(even);
    const V::Words biasRight = V::splat(odd);
    for (std::size_t x = 0; x < width; x += 8) {
        const V::Words here = V::load(sums + x);
        const V::Words left = mixed<shift>(here, V::load(sums + x - 1), biasLeft);
        const V::Words right = mixed<shift>(here, V::load(sums + x + 1), biasRight);
        V::storeBytes(out + 2 * x, V::narrowBytes(V::interleaveLow(left, right),
                                                  V::interleaveHigh(left, right)));
    }
}

} // namespace

DctUpsampler::DctUpsampler(const DctFrame& frame) : width_(frame.width), sums_(4 * margin) {
    for (const DctComponent& component : frame.components) {
        Plane plane{.width = component.width,
                    .ratio = {component.horizontal, frame.most},
                    .ratioDown = {component.vertical, frame.tallest}};
        const bool sameAcross = component.horizontal == frame.most;
        const bool sameDown = component.vertical == frame.tallest;
        // Two samples are too few for a slope.
        const bool across = std::size_t{2} * component.horizontal == frame.most && plane.width > 2;
        const bool down = std::size_t{2} * component.vertical == frame.tallest;
        if (sameAcross && sameDown) {
            plane.method = Method::none;
        } else if (across && sameDown) {
            plane.method = Method::across;
        } else if (sameAcross && down) {
            plane.method = Method::down;
        } else if (across && down) {
            plane.method = Method::both;
        } else {
            plane.method = Method::replicate;
        }
        if (plane.method != Method::none) {
            plane.out.resize(frame.width + 4 * margin);
            sums_.resize(std::max(sums_.size(), plane.width + 4 * margin));
        }
        planes_.push_back(std::move(plane));
    }
}

const std::uint8_t* DctUpsampler::row(const DctStrips& strips, std::size_t component,
                                      std::size_t y) {
    Plane& plane = planes_[component];
    const std::size_t own = y * plane.ratioDown[0] / plane.ratioDown[1];
    const std::uint8_t* const here = strips.row(component, own);
    const bool upper = y % 2 == 0;
    const std::uint8_t* const other =
        strips.row(component, upper ? own - std::min<std::size_t>(own, 1) : own + 1);
    std::uint8_t* const out = plane.out.data();
    std::int16_t* const sums = sums_.data() + margin;
    switch (plane.method) {
    case Method::none:
        return here;
    case Method::replicate:
        for (std::size_t x = 0; x < width_; ++x) {
            out[x] = here[x * plane.ratio[0] / plane.ratio[1]];
        }
        break;
    case Method::across:
        widen(here, plane.width, sums);
        doubleRow<2>(sums, plane.width, 1, 2, out);
        break;
    case Method::down:
        mixRows(here, other, plane.width, upper ? 1 : 2, out);
        break;
    case Method::both:
        sumRows(here, other, plane.width, sums);
        doubleRow<4>(sums, plane.width, 8, 7, out);
        break;
    }
    return out;
}

} // namespace corvane
