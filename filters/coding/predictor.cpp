#include "filters/coding/predictor.h"

#include "runtime/exception.h"

#include <algorithm>
#include <cstdlib>

namespace corvane {

namespace {

constexpr std::int32_t tiffPredictor = 2;
constexpr std::int32_t firstPngPredictor = 10;
constexpr std::int32_t lastPngPredictor = 15;

/// Real files have at most 32 (DeviceN).
constexpr std::int32_t mostColors = 1024;

/// The filter of cross-reference streams, whose rows are short and many.
constexpr std::byte upFilter{2};

/// Bytes of rows that are read together; no more of them than are asked for.
constexpr std::size_t blockBytes = 8192;

/// Bytes of a row; no image that can be drawn has more.
constexpr std::int64_t longestRow = 1 << 28;

std::uint8_t value(std::byte byte) {
    return std::to_integer<std::uint8_t>(byte);
}

std::byte sum(std::byte a, std::uint32_t b) {
    return static_cast<std::byte>(value(a) + b);
}

void addLeft(std::span<std::byte> row, std::size_t distance) {
    for (std::size_t i = distance; i < row.size(); ++i) {
        row[i] = sum(row[i], value(row[i - distance]));
    }
}

/// `to` may overlap `from` in front of it.
void addUp(std::span<const std::byte> from, std::span<std::byte> to,
           std::span<const std::byte> above) {
    for (std::size_t i = 0; i < to.size(); ++i) {
        to[i] = sum(from[i], value(above[i]));
    }
}

void addAverage(std::span<std::byte> row, std::span<const std::byte> above, std::size_t distance) {
    for (std::size_t i = 0; i < row.size(); ++i) {
        const std::uint32_t left = i < distance ? 0 : value(row[i - distance]);
        row[i] = sum(row[i], (left + value(above[i])) / 2);
    }
}

/// Whichever of left, up and corner is nearest to left + up - corner.
std::uint32_t paeth(std::int32_t left, std::int32_t up, std::int32_t corner) {
    const std::int32_t toLeft = std::abs(up - corner);
    const std::int32_t toUp = std::abs(left - corner);
    const std::int32_t toCorner = std::abs(left + up - 2 * corner);
    if (toLeft <= toUp && toLeft <= toCorner) {
        return static_cast<std::uint32_t>(left);
    }
    return static_cast<std::uint32_t>(toUp <= toCorner ? up : corner);
}

void addPaeth(std::span<std::byte> row, std::span<const std::byte> above, std::size_t distance) {
    const std::size_t first = std::min(distance, row.size());
    addUp(row.first(first), row.first(first), above);
    for (std::size_t i = first; i < row.size(); ++i) {
        row[i] = sum(row[i],
                     paeth(value(row[i - distance]), value(above[i]), value(above[i - distance])));
    }
}

void undoPng(std::byte filter, std::span<std::byte> row, std::span<const std::byte> above,
             std::size_t distance) {
    switch (value(filter)) {
    case 1:
        return addLeft(row, distance);
    case 3:
        return addAverage(row, above, distance);
    case 4:
        return addPaeth(row, above, distance);
    default:
        return;
    }
}

void addWords(std::span<std::byte> row, std::size_t colors) {
    for (std::size_t i = 2 * colors; i + 1 < row.size(); i += 2) {
        const std::size_t left = i - 2 * colors;
        const std::uint32_t word =
            (value(row[i]) + value(row[left])) * 256U + value(row[i + 1]) + value(row[left + 1]);
        row[i] = static_cast<std::byte>(word >> 8);
        row[i + 1] = static_cast<std::byte>(word);
    }
}

/// Samples of 1, 2 or 4 bits.
void addBits(std::span<std::byte> row, std::size_t colors, std::size_t bits) {
    const std::size_t perByte = 8 / bits;
    const std::uint32_t mask = (1U << bits) - 1;
    const auto shift = [&](std::size_t sample) { return (perByte - 1 - sample % perByte) * bits; };
    for (std::size_t i = colors; i < row.size() * perByte; ++i) {
        const std::uint32_t left = value(row[(i - colors) / perByte]) >> shift(i - colors);
        std::byte& byte = row[i / perByte];
        const std::uint32_t sample = ((value(byte) >> shift(i)) + left) & mask;
        byte = (byte & ~static_cast<std::byte>(mask << shift(i))) |
               static_cast<std::byte>(sample << shift(i));
    }
}

void undoTiff(std::span<std::byte> row, const PredictorParameters& parameters) {
    const auto colors = static_cast<std::size_t>(parameters.colors);
    switch (parameters.bitsPerComponent) {
    case 8:
        return addLeft(row, colors);
    case 16:
        return addWords(row, colors);
    default:
        return addBits(row, colors, static_cast<std::size_t>(parameters.bitsPerComponent));
    }
}

} // namespace

PredictorFilter::PredictorFilter(const PredictorParameters& parameters, std::size_t rowBytes)
    : Decoder(entryDecoder), parameters_(parameters),
      prefix_(parameters.predictor == tiffPredictor ? 0 : 1),
      pixelBytes_(std::max<std::size_t>(
          1, static_cast<std::size_t>(parameters.colors * parameters.bitsPerComponent + 7) / 8)),
      rows_((rowBytes + prefix_) * std::max<std::size_t>(1, blockBytes / (rowBytes + prefix_))),
      above_(rowBytes) {
    charge_.resize(static_cast<std::int64_t>(rows_.size() + above_.size()));
}

/// Reads as many rows as `wanted` bytes need and undoes their differences; nothing is available at
/// the end of the data. The samples of all rows then stand together.
void PredictorFilter::readRows(std::size_t wanted) {
    const std::size_t samples = above_.size();
    const std::size_t length = samples + prefix_;
    const std::size_t most = std::min((wanted + samples - 1) / samples, rows_.size() / length);
    const std::size_t count = readFilter(*next, std::span(rows_).first(most * length));
    position_ = 0;
    available_ = 0;
    std::span<const std::byte> above = above_;
    for (std::size_t start = 0; start + prefix_ < count; start += length) {
        const std::size_t size = std::min(length, count - start) - prefix_;
        const std::span<std::byte> row = std::span(rows_).subspan(available_, size);
        undoRow(std::span(rows_).subspan(start, size + prefix_), row, above);
        above = row;
        available_ += size;
    }
    if (available_ >= samples) {
        std::copy_n(rows_.begin() + static_cast<std::ptrdiff_t>(available_ - samples), samples,
                    above_.begin());
    }
}

/// `to` begins no later than `from`, and may be the same place.
void PredictorFilter::undoRow(std::span<const std::byte> from, std::span<std::byte> to,
                              std::span<const std::byte> above) const {
    if (prefix_ == 0) {
        return undoTiff(to, parameters_);
    }
    const std::byte filter = from.front();
    if (filter == upFilter) {
        return addUp(from.subspan(1), to, above);
    }
    std::copy(from.begin() + 1, from.end(), to.begin());
    undoPng(filter, to, above, pixelBytes_);
}

std::size_t PredictorFilter::decode(std::span<std::byte> out) {
    std::size_t done = 0;
    while (done < out.size()) {
        if (position_ == available_) {
            readRows(out.size() - done);
            if (position_ == available_) {
                break;
            }
        }
        const std::size_t count = std::min(available_ - position_, out.size() - done);
        std::copy_n(rows_.begin() + static_cast<std::ptrdiff_t>(position_), count,
                    out.begin() + static_cast<std::ptrdiff_t>(done));
        position_ += count;
        done += count;
    }
    return done;
}

void PredictorFilter::restart() {
    position_ = 0;
    available_ = 0;
    std::ranges::fill(above_, std::byte{0});
}

FilterOwner setupPredictor(const PredictorParameters& parameters) {
    const std::int32_t bits = parameters.bitsPerComponent;
    const bool known =
        parameters.predictor == tiffPredictor ||
        (parameters.predictor >= firstPngPredictor && parameters.predictor <= lastPngPredictor);
    if (!known || parameters.colors < 1 || parameters.colors > mostColors ||
        (bits != 1 && bits != 2 && bits != 4 && bits != 8 && bits != 16) ||
        parameters.columns < 1) {
        failException(Exception::range);
    }
    const std::int64_t rowBytes =
        (std::int64_t{parameters.colors} * bits * parameters.columns + 7) / 8;
    if (rowBytes > longestRow) {
        failException(Exception::range);
    }
    return std::make_unique<PredictorFilter>(parameters, static_cast<std::size_t>(rowBytes));
}

} // namespace corvane
