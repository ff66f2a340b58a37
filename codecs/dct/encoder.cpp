#include "codecs/dct/encoder.h"

#include "codecs/dct/error.h"
#include "codecs/dct/markers.h"
#include "codecs/dct/samples/colour.h"
#include "codecs/dct/samples/subsample.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>

namespace corvane {

namespace {

/// Where the coefficients lie, column by column, in the order in which they are coded; and back.
struct Order {
    std::array<std::uint8_t, dctBlockSize> place{};
    std::array<std::uint8_t, dctBlockSize> position{};
    Order() {
        for (std::size_t i = 0; i < dctBlockSize; ++i) {
            const std::size_t natural = dctNaturalOrder[i];
            place[i] = static_cast<std::uint8_t>(natural % 8 * 8 + natural / 8);
            position[place[i]] = static_cast<std::uint8_t>(i);
        }
    }
};

const Order& columnOrder() {
    static const Order order;
    return order;
}

/// Bits that hold a value (ISO/IEC 10918-1, table F.1).
unsigned sizeOf(std::int32_t value) {
    return static_cast<unsigned>(std::bit_width(static_cast<std::uint32_t>(std::abs(value))));
}

} // namespace

DctEncoder::DctEncoder(const DctSettings& settings, DctSink& sink)
    : settings_(settings), output_(sink), unitsLeft_(settings.restartInterval) {
    check();
    for (std::size_t i = 0; i < settings_.components; ++i) {
        // With one component a unit is one block, whatever its factors.
        const DctSampling sampling =
            settings_.components == 1 ? DctSampling{} : settings_.sampling[i];
        planes_.push_back({.horizontal = sampling.horizontal, .vertical = sampling.vertical});
        most_ = std::max<std::size_t>(most_, sampling.horizontal);
        tallest_ = std::max<std::size_t>(tallest_, sampling.vertical);
    }
    units_ = (settings_.width + 8 * most_ - 1) / (8 * most_);
    decideTables();
    for (Plane& plane : planes_) {
        plane.stride = units_ * 8 * most_ + rowSlack;
        const std::size_t bytes = plane.stride * 8 * tallest_;
        const bool subsampled = plane.horizontal < most_ || plane.vertical < tallest_;
        charge_.resize(charge_.bytes() + static_cast<std::int64_t>(subsampled ? 2 * bytes : bytes));
        plane.full.resize(bytes);
        plane.reduced.resize(subsampled ? bytes : 0);
    }
    DCTEgenHeader();
}

void DctEncoder::check() const {
    constexpr std::size_t largest = 65535;
    const DctSettings& s = settings_;
    const auto given = [](std::size_t count) { return count <= 2; };
    const auto sized = [](std::size_t size) { return size > 0 && size <= largest; };
    if (!sized(s.width) || !sized(s.height) || s.components == 0 ||
        s.components > dctComponentLimit || s.restartInterval > largest || s.quality < 0 ||
        !given(s.quantisers.size()) || !given(s.dcCodes.size()) ||
        s.acCodes.size() != s.dcCodes.size()) {
        dct_error();
    }
    std::size_t blocks = 0;
    for (std::size_t i = 0; i < s.components; ++i) {
        const auto [horizontal, vertical] = s.sampling[i];
        if (horizontal < 1 || horizontal > 4 || vertical < 1 || vertical > 4) {
            dct_error();
        }
        blocks += std::size_t{horizontal} * vertical;
    }
    // ISO/IEC 10918-1, B.2.3.
    if (s.components > 1 && blocks > 10) {
        dct_error();
    }
}

void DctEncoder::decideTables() {
    const bool subsampled = most_ > 1 || tallest_ > 1;
    for (std::size_t i = 0; i < planes_.size(); ++i) {
        const bool chroma = settings_.transform && planes_.size() >= 3 && (i == 1 || i == 2);
        const bool below = !settings_.transform &&
                           (planes_[i].horizontal < most_ || planes_[i].vertical < tallest_);
        planes_[i].table = chroma || below ? 1 : 0;
        tables_ = std::max(tables_, planes_[i].table + 1);
    }
    for (std::size_t i = 0; i < tables_; ++i) {
        const DctQuantiser& builtIn = i == 0 ? qluma : subsampled ? qkroma_ds : qkroma;
        const auto& own = settings_.quantisers;
        const DctQuantiser& from = own.empty() ? builtIn : own[std::min(i, own.size() - 1)];
        std::ranges::transform(from, quantisers_[i].begin(), [this](std::uint16_t entry) {
            const std::int64_t scaled = (std::int64_t{entry} * settings_.quality + 32768) >> 16;
            return static_cast<std::uint16_t>(std::clamp<std::int64_t>(scaled, 1, 255));
        });
        divisors_[i] = DCTEScaleQT(quantisers_[i]);
        const auto& dc = settings_.dcCodes;
        const auto& ac = settings_.acCodes;
        dcCodes_[i] = dc.empty() ? dctBuiltInDc[i] : dc[std::min(i, dc.size() - 1)];
        acCodes_[i] = ac.empty() ? dctBuiltInAc[i] : ac[std::min(i, ac.size() - 1)];
        dcTables_[i] = dctEncodeTable(dcCodes_[i]);
        acTables_[i] = dctEncodeTable(acCodes_[i]);
    }
}

void DctEncoder::putRow(const std::uint8_t* pixels) {
    if (row_ == settings_.height) {
        return;
    }
    std::array<std::uint8_t*, dctComponentLimit> to{};
    for (std::size_t i = 0; i < planes_.size(); ++i) {
        to[i] = planes_[i].full.data() + inStrip_ * planes_[i].stride;
    }
    dctSplitRow(settings_.transform && planes_.size() >= 3, pixels, settings_.width,
                std::span(to).first(planes_.size()));
    for (Plane& plane : planes_) {
        DCTEFixRight(plane, inStrip_);
    }
    ++row_;
    if (++inStrip_ == 8 * tallest_) {
        DCTEcodeStrip();
    }
}

/// Repeats the last pixel up to the end of the last unit.
void DctEncoder::DCTEFixRight(Plane& plane, std::size_t row) const {
    std::uint8_t* const samples = plane.full.data() + row * plane.stride;
    std::memset(samples + settings_.width, samples[settings_.width - 1],
                units_ * 8 * most_ - settings_.width);
}

/// Repeats the last row up to the end of the strip.
void DctEncoder::DCTEFixBottom() {
    const std::size_t rows = 8 * tallest_;
    const std::size_t last = inStrip_ == 0 ? rows - 1 : inStrip_ - 1;
    for (Plane& plane : planes_) {
        for (std::size_t row = inStrip_; row < rows; ++row) {
            std::memmove(plane.full.data() + row * plane.stride,
                         plane.full.data() + last * plane.stride, plane.stride);
        }
    }
}

void DctEncoder::DCTEcodeStrip() {
    for (Plane& plane : planes_) {
        if (!plane.reduced.empty()) {
            dctSubsample({.from = plane.full.data(),
                          .stride = plane.stride,
                          .width = units_ * 8 * plane.horizontal,
                          .height = 8 * plane.vertical,
                          .across = {plane.horizontal, most_},
                          .down = {plane.vertical, tallest_}},
                         plane.reduced.data());
        }
    }
    for (std::size_t unit = 0; unit < units_; ++unit) {
        codeUnit(unit);
    }
    inStrip_ = 0;
}

void DctEncoder::codeUnit(std::size_t unit) {
    if (settings_.restartInterval != 0) {
        if (unitsLeft_ == 0) {
            putRestart();
        }
        --unitsLeft_;
    }
    for (Plane& plane : planes_) {
        const std::uint8_t* const samples =
            (plane.reduced.empty() ? plane.full : plane.reduced).data();
        for (std::size_t y = 0; y < plane.vertical; ++y) {
            for (std::size_t x = 0; x < plane.horizontal; ++x) {
                codeBlock(plane,
                          samples + 8 * y * plane.stride + 8 * (unit * plane.horizontal + x));
            }
        }
    }
}

void DctEncoder::putSymbol(const DctEncodeTable& table, unsigned symbol, std::int32_t value,
                           unsigned size) {
    const unsigned length = table.lengths[symbol];
    if (length == 0) {
        dct_error();
    }
    // Negative values are written less one (F.1.2.1).
    const std::uint32_t bits =
        static_cast<std::uint32_t>(value + (value >> 31)) & ((1U << size) - 1);
    output_.bits(std::uint32_t{table.codes[symbol]} << size | bits, length + size);
}

void DctEncoder::codeBlock(Plane& plane, const std::uint8_t* samples) {
    DctBlock block;
    std::uint64_t left = DCTfwd_transform(samples, plane.stride, divisors_[plane.table], block);
    const std::int32_t difference = block.values[0] - plane.prediction;
    plane.prediction = block.values[0];
    const unsigned dcSize = sizeOf(difference);
    putSymbol(dcTables_[plane.table], dcSize, difference, dcSize);

    const Order& order = columnOrder();
    std::uint64_t waiting = 0; ///< the same, in the order of coding
    for (left &= ~std::uint64_t{1}; left != 0; left &= left - 1) {
        waiting |= std::uint64_t{1}
                   << order.position[static_cast<std::size_t>(std::countr_zero(left))];
    }
    const DctEncodeTable& table = acTables_[plane.table];
    unsigned next = 1;
    for (; waiting != 0; waiting &= waiting - 1) {
        const auto position = static_cast<unsigned>(std::countr_zero(waiting));
        unsigned run = position - next;
        for (; run > 15; run -= 16) {
            putSymbol(table, 0xF0, 0, 0);
        }
        const std::int32_t value = block.values[order.place[position]];
        const unsigned size = sizeOf(value);
        putSymbol(table, run << 4 | size, value, size);
        next = position + 1;
    }
    if (next < dctBlockSize) {
        putSymbol(table, 0, 0, 0);
    }
}

void DctEncoder::putRestart() {
    output_.alignBits();
    output_.marker(dctMarker::rst0 + nextRestart_);
    nextRestart_ = (nextRestart_ + 1) % 8;
    unitsLeft_ = settings_.restartInterval;
    for (Plane& plane : planes_) {
        plane.prediction = 0;
    }
}

void DctEncoder::finish() {
    while (row_ < settings_.height || inStrip_ > 0) {
        DCTEFixBottom();
        row_ = std::min(settings_.height, row_ - inStrip_ + 8 * tallest_);
        DCTEcodeStrip();
    }
    output_.alignBits();
    output_.marker(dctMarker::eoi);
    output_.flush();
}

} // namespace corvane
