#include "app/images/png_writer.h"

#include "app/artwork/images/image_table.h"
#include "app/images/image_error.h"

#include <algorithm>
#include <array>
#include <exception>
#include <new>
#include <spng.h>
#include <string>
#include <string_view>
#include <utility>
#include <zlib.h>

namespace corvane {

namespace {

/// Photographs and drawings come out a fifth larger than at zlib's default, four times as fast.
constexpr int compressionLevel = 1;
/// Trying all filters on every row costs as much as compressing it.
constexpr int filters = SPNG_FILTER_CHOICE_SUB | SPNG_FILTER_CHOICE_UP;

constexpr std::array<unsigned char, 4> markType{'c', 'o', 'R', 'V'};
constexpr std::array<unsigned char, 12> lastChunk{0,   0,   0,    0,    'I',  'E',
                                                  'N', 'D', 0xAE, 0x42, 0x60, 0x82};

using End = std::array<unsigned char, PngWriter::endBytes>;

unsigned char* putNumber(unsigned char* to, std::uint64_t number, int bytes) {
    for (int i = bytes - 1; i >= 0; --i) {
        *to++ = static_cast<unsigned char>(number >> (8 * i) & 0xFF);
    }
    return to;
}

/// The mark and the last chunk of a file; `before` is the digest of what is in front of them.
End endOf(Digest before, std::string_view key) {
    before.feed(std::as_bytes(std::span(key)));
    const std::uint64_t digest = before.value();
    End end{};
    unsigned char* at = putNumber(end.data(), 8, 4);
    at = std::ranges::copy(markType, at).out;
    at = putNumber(at, digest, 8);
    const uLong sum = crc32(0, end.data() + 4, 12);
    at = putNumber(at, sum, 4);
    std::ranges::copy(lastChunk, at);
    return end;
}

int colourType(const ImageFacts& facts) {
    switch (facts.colours) {
    case ImageColours::indexed:
        return SPNG_COLOR_TYPE_INDEXED;
    case ImageColours::gray:
        return facts.hasAlpha ? SPNG_COLOR_TYPE_GRAYSCALE_ALPHA : SPNG_COLOR_TYPE_GRAYSCALE;
    case ImageColours::rgb:
    case ImageColours::cmyk:
        break;
    }
    return facts.hasAlpha ? SPNG_COLOR_TYPE_TRUECOLOR_ALPHA : SPNG_COLOR_TYPE_TRUECOLOR;
}

} // namespace

struct PngWriter::State {
    State(ByteSink& to, std::string_view imageKey)
        : sink(to), key(imageKey), context(spng_ctx_new(SPNG_CTX_ENCODER), spng_ctx_free) {
        if (context == nullptr) {
            throw std::bad_alloc();
        }
    }

    void put(std::string_view bytes) {
        digest.feed(std::as_bytes(std::span(bytes)));
        if (!error) {
            error = sink.write(bytes);
        }
    }

    static int write(spng_ctx*, void* user, void* bytes, std::size_t count) {
        State& state = *static_cast<State*>(user);
        try {
            state.put({static_cast<const char*>(bytes), count});
        } catch (...) {
            state.thrown = std::current_exception();
        }
        return state.error || state.thrown ? SPNG_IO_ERROR : 0;
    }

    ByteSink& sink;
    std::string key; ///< of the image
    std::unique_ptr<spng_ctx, void (*)(spng_ctx*)> context;
    Digest digest;
    std::error_code error;
    std::exception_ptr thrown;

    /// `result` is what the library answered.
    std::error_code settled(int result) {
        if (thrown) {
            std::rethrow_exception(std::exchange(thrown, nullptr));
        }
        if (!error && result != 0) {
            throw ImageError(std::string("cannot be written as PNG: ") + spng_strerror(result));
        }
        return error;
    }
};

PngWriter::PngWriter(const ImageFacts& facts, ByteSink& sink)
    : state_(std::make_unique<State>(sink, facts.key)),
      rowSize_(static_cast<std::size_t>(rowBytes(facts))), rowsLeft_(facts.height) {
    spng_ctx* const context = state_->context.get();
    const auto require = [&](int result) { state_->settled(result); };
    require(spng_set_png_stream(context, State::write, state_.get()));
    spng_ihdr header{};
    header.width = static_cast<std::uint32_t>(facts.width);
    header.height = static_cast<std::uint32_t>(facts.height);
    header.bit_depth = static_cast<std::uint8_t>(facts.bits);
    header.color_type = static_cast<std::uint8_t>(colourType(facts));
    require(spng_set_ihdr(context, &header));
    if (facts.colours == ImageColours::indexed) {
        spng_plte palette{};
        spng_trns alpha{};
        palette.n_entries = static_cast<std::uint32_t>(facts.palette.size() / 4);
        for (std::size_t i = 0; i < palette.n_entries; ++i) {
            const auto entry = facts.palette.subspan(i * 4, 4);
            palette.entries[i] = {entry[0], entry[1], entry[2], 255};
            alpha.type3_alpha[i] = entry[3];
            if (entry[3] != 255) {
                alpha.n_type3_entries = static_cast<std::uint32_t>(i + 1);
            }
        }
        require(spng_set_plte(context, &palette));
        if (alpha.n_type3_entries != 0) {
            require(spng_set_trns(context, &alpha));
        }
    }
    require(spng_set_option(context, SPNG_IMG_COMPRESSION_LEVEL, compressionLevel));
    if (facts.colours != ImageColours::indexed && facts.bits >= 8) {
        require(spng_set_option(context, SPNG_FILTER_CHOICE, filters));
    }
    require(spng_encode_image(context, nullptr, 0, SPNG_FMT_RAW, SPNG_ENCODE_PROGRESSIVE));
}

PngWriter::~PngWriter() = default;

std::error_code PngWriter::addRow(std::span<const std::byte> row) {
    if (rowsLeft_ == 0) {
        throw ImageError("has more rows than it says");
    }
    --rowsLeft_;
    const int result = spng_encode_row(state_->context.get(), row.data(), row.size());
    return state_->settled(result == SPNG_EOI && rowsLeft_ == 0 ? 0 : result);
}

std::error_code PngWriter::add(std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        if (row_.empty() && bytes.size() >= rowSize_) {
            if (const std::error_code error = addRow(bytes.first(rowSize_))) {
                return error;
            }
            bytes = bytes.subspan(rowSize_);
            continue;
        }
        const std::size_t count = std::min(rowSize_ - row_.size(), bytes.size());
        const auto some = bytes.first(count);
        row_.insert(row_.end(), some.begin(), some.end());
        bytes = bytes.subspan(count);
        if (row_.size() == rowSize_) {
            const std::error_code error = addRow(row_);
            row_.clear();
            if (error) {
                return error;
            }
        }
    }
    return {};
}

std::error_code PngWriter::end() {
    if (rowsLeft_ != 0 || !row_.empty()) {
        throw ImageError("has fewer rows than it says");
    }
    const End end = endOf(state_->digest, state_->key);
    std::array<char, endBytes> bytes{};
    std::ranges::transform(end, bytes.begin(),
                           [](unsigned char c) { return static_cast<char>(c); });
    state_->put({bytes.data(), bytes.size()});
    return state_->settled(0);
}

std::uint64_t PngWriter::digest() const {
    return state_->digest.value();
}

bool PngWriter::isOurs(std::span<const std::byte> end, Digest before, std::string_view key) {
    const End ours = endOf(before, key);
    return std::ranges::equal(end, std::as_bytes(std::span(ours)));
}

} // namespace corvane
