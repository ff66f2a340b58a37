#include "writer/image/pixel_rows.h"

#include "runtime/callbacks.h"
#include "runtime/exception.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace corvane {

namespace {

/// Bytes of rows that are asked for at once.
constexpr std::size_t blockBytes = std::size_t{1} << 16;

std::uint8_t byteOf(std::span<const std::byte> row, std::size_t at) {
    return std::to_integer<std::uint8_t>(row[at]);
}

/// Of PNG's filters: what a byte is taken to be, from the one on the left, above, and above that.
std::uint8_t paeth(int left, int above, int corner) {
    const int guess = left + above - corner;
    const int toLeft = std::abs(guess - left);
    const int toAbove = std::abs(guess - above);
    const int toCorner = std::abs(guess - corner);
    return static_cast<std::uint8_t>(toLeft <= toAbove && toLeft <= toCorner ? left
                                     : toAbove <= toCorner                   ? above
                                                                             : corner);
}

enum class RowFilter : std::uint8_t { none, sub, up, average, paeth };

/// The filtered row behind the number of its filter; how much there is to say of it, as a rule:
/// bytes near 0 are said shortest.
template <class Guess>
std::uint64_t filterRow(std::vector<std::byte>& out, RowFilter filter,
                        std::span<const std::byte> row, std::span<const std::byte> above,
                        std::size_t pixelBytes, const Guess& guess) {
    out[0] = std::byte(filter);
    std::uint64_t weight = 0;
    const auto put = [&](std::size_t i, int left, int corner) {
        const auto value =
            static_cast<std::uint8_t>(byteOf(row, i) - guess(left, byteOf(above, i), corner));
        out[i + 1] = std::byte{value};
        weight += std::min<unsigned>(value, 256U - value);
    };
    const std::size_t first = std::min(pixelBytes, row.size());
    for (std::size_t i = 0; i < first; ++i) {
        put(i, 0, 0);
    }
    for (std::size_t i = first; i < row.size(); ++i) {
        put(i, byteOf(row, i - pixelBytes), byteOf(above, i - pixelBytes));
    }
    return weight;
}

} // namespace

PixelForm pixelForm(const ImageFacts& facts) {
    const std::int32_t colours = facts.colours == ImageColours::rgb    ? 3
                                 : facts.colours == ImageColours::cmyk ? 4
                                                                       : 1;
    const PixelForm form{facts.width, facts.height, colours + (facts.hasAlpha ? 1 : 0), facts.bits};
    const bool isKnownDepth =
        form.bits == 1 || form.bits == 2 || form.bits == 4 || form.bits == 8 || form.bits == 16;
    const bool isPacked = form.bits < 8 && form.components > 1;
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max() / 16;
    if (!isKnownDepth || isPacked || form.width <= 0 || form.height <= 0 ||
        std::int64_t{form.width} * form.components > most) {
        failException(Exception::range);
    }
    return form;
}

PixelRows::PixelRows(Image image, const PixelForm& form)
    : image_(image), rowBytes_(form.rowBytes()) {
    const std::size_t count =
        std::clamp<std::size_t>(blockBytes / rowBytes_, 1, static_cast<std::size_t>(form.height));
    rows_.resize(count * rowBytes_);
    callHost(slot::openImageBytes, image);
}

std::span<const std::byte> PixelRows::next() {
    if (at_ == held_) {
        if (callHost(slot::checkUserAbort)) {
            failException(Exception::cancelled);
        }
        std::int64_t count = 0;
        callHost(slot::readImageBytes, image_, rows_.data(), std::ssize(rows_), &count);
        at_ = 0;
        held_ = static_cast<std::size_t>(std::clamp<std::int64_t>(count, 0, std::ssize(rows_)));
        held_ -= held_ % rowBytes_;
        if (held_ == 0) {
            failException(Exception::host);
        }
    }
    at_ += rowBytes_;
    return std::span(rows_).subspan(at_ - rowBytes_, rowBytes_);
}

PixelContents examinePixels(Image image, const ImageFacts& facts) {
    PixelContents contents{.isGray = facts.colours == ImageColours::rgb,
                           .isOpaque = !facts.hasAlpha};
    if (facts.colours == ImageColours::indexed) {
        for (std::size_t i = 3; i < facts.palette.size(); i += 4) {
            contents.isOpaque = contents.isOpaque && facts.palette[i] == 0xFF;
        }
    }
    if (!contents.isGray && !facts.hasAlpha) {
        return contents;
    }
    contents.isOpaque = true; // as far as is known
    const PixelForm form = pixelForm(facts);
    const std::size_t sample = form.sampleBytes();
    const std::size_t pixel = sample * static_cast<std::size_t>(form.components);
    PixelRows rows(image, form);
    for (std::int32_t y = 0; y < form.height && (contents.isGray || contents.isOpaque); ++y) {
        const std::span<const std::byte> row = rows.next();
        for (std::size_t at = 0; at < row.size(); at += pixel) {
            const auto samples = row.subspan(at, pixel);
            contents.isGray =
                contents.isGray &&
                std::ranges::equal(samples.first(sample), samples.subspan(sample, sample)) &&
                std::ranges::equal(samples.first(sample), samples.subspan(2 * sample, sample));
            contents.isOpaque =
                contents.isOpaque &&
                (!facts.hasAlpha || std::ranges::all_of(samples.last(sample), [](std::byte each) {
                    return each == std::byte{0xFF};
                }));
        }
    }
    return contents;
}

RowPredictor::RowPredictor(const PixelForm& form)
    : pixelBytes_(
          std::max<std::size_t>(1, static_cast<std::size_t>(form.components) * form.sampleBytes())),
      isPacked_(form.bits < 8), above_(form.rowBytes()), best_(form.rowBytes() + 1),
      tried_(form.rowBytes() + 1) {}

std::span<const std::byte> RowPredictor::predict(std::span<const std::byte> row) {
    const auto nothing = [](int, int, int) { return 0; };
    std::uint64_t least = filterRow(best_, RowFilter::none, row, above_, pixelBytes_, nothing);
    if (!isPacked_) {
        const auto consider = [&](RowFilter filter, const auto& guess) {
            const std::uint64_t weight = filterRow(tried_, filter, row, above_, pixelBytes_, guess);
            if (weight < least) {
                least = weight;
                best_.swap(tried_);
            }
        };
        consider(RowFilter::sub, [](int left, int, int) { return left; });
        consider(RowFilter::up, [](int, int up, int) { return up; });
        consider(RowFilter::average, [](int left, int up, int) { return (left + up) / 2; });
        consider(RowFilter::paeth, paeth);
    }
    std::ranges::copy(row, above_.begin());
    return best_;
}

} // namespace corvane
