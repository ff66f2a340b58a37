#include "app/images/png_file.h"

#include "app/artwork/images/image_table.h"
#include "app/images/budget.h"
#include "app/images/image_error.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <new>
#include <spng.h>
#include <string>
#include <utility>

namespace corvane {

namespace {

[[noreturn]] void refuse(int result) {
    if (result == SPNG_EMEM) {
        throw std::bad_alloc();
    }
    if (result == SPNG_EUSER_WIDTH || result == SPNG_EUSER_HEIGHT) {
        throw ImageError("is larger than images may be");
    }
    throw ImageError(std::string("is damaged (") + spng_strerror(result) + ")");
}

/// A file in the library's hands, up to its samples.
class Decoder {
public:
    explicit Decoder(SourceStream& file) : file_(file), context_(spng_ctx_new(0), spng_ctx_free) {
        if (context_ == nullptr) {
            throw std::bad_alloc();
        }
        using namespace image_budget;
        // What stands around the pixels may be damaged.
        require(spng_set_crc_action(get(), SPNG_CRC_ERROR, SPNG_CRC_DISCARD));
        require(spng_set_image_limits(get(), longestSide, longestSide));
        require(spng_set_chunk_limits(get(), pngChunks, pngChunks));
        require(spng_set_png_stream(get(), read, this));
        require(spng_get_ihdr(get(), &header_));
        if (std::uint64_t{header_.width} * header_.height > mostPixels) {
            throw ImageError("is larger than images may be");
        }
        hasPalette_ = answered(spng_get_plte(get(), &palette_));
        hasKey_ = answered(spng_get_trns(get(), &key_));
    }

    spng_ctx* get() const { return context_.get(); }
    const spng_ihdr& header() const { return header_; }
    const spng_plte& palette() const { return palette_; }
    const spng_trns& key() const { return key_; }
    bool hasKey() const { return hasKey_; }
    bool isIndexed() const { return header_.color_type == SPNG_COLOR_TYPE_INDEXED; }

    void require(int result) {
        if (failure_) {
            std::rethrow_exception(std::exchange(failure_, nullptr));
        }
        if (result != 0) {
            refuse(result);
        }
    }

    /// Bytes of a row as the file has it.
    std::size_t fileRow() const {
        constexpr std::size_t components[] = {1, 0, 3, 1, 2, 0, 4};
        return (std::size_t{header_.width} * components[header_.color_type] * header_.bit_depth +
                7) /
               8;
    }

private:
    static int read(spng_ctx*, void* user, void* into, std::size_t count) {
        Decoder& decoder = *static_cast<Decoder*>(user);
        try {
            const std::size_t done = decoder.file_.read({static_cast<std::byte*>(into), count});
            return done == count ? 0 : SPNG_IO_EOF;
        } catch (...) {
            decoder.failure_ = std::current_exception();
            return SPNG_IO_ERROR;
        }
    }

    bool answered(int result) {
        if (result == SPNG_ECHUNKAVAIL) {
            return false;
        }
        require(result);
        return true;
    }

    SourceStream& file_;
    std::unique_ptr<spng_ctx, void (*)(spng_ctx*)> context_;
    std::exception_ptr failure_;
    spng_ihdr header_{};
    spng_plte palette_{};
    spng_trns key_{};
    bool hasPalette_ = false;
    bool hasKey_ = false;
};

ImageFacts factsOf(const Decoder& decoder) {
    const spng_ihdr& header = decoder.header();
    ImageFacts facts;
    facts.width = static_cast<std::int32_t>(header.width);
    facts.height = static_cast<std::int32_t>(header.height);
    facts.bits = header.bit_depth;
    if (decoder.isIndexed()) {
        facts.colours = ImageColours::indexed;
        return facts;
    }
    const bool isColoured = (header.color_type & SPNG_COLOR_TYPE_TRUECOLOR) != 0;
    facts.colours = isColoured ? ImageColours::rgb : ImageColours::gray;
    constexpr unsigned alphaBit = 4;
    facts.hasAlpha = (header.color_type & alphaBit) != 0 || decoder.hasKey();
    facts.bits = facts.hasAlpha ? std::max(facts.bits, 8) : facts.bits;
    return facts;
}

std::vector<std::uint8_t> paletteOf(const Decoder& decoder) {
    const spng_plte& palette = decoder.palette();
    const std::uint32_t bits = decoder.header().bit_depth;
    const std::uint32_t named = bits < 8 ? 1U << bits : palette.n_entries;
    std::vector<std::uint8_t> entries;
    for (std::uint32_t i = 0; i < named; ++i) {
        const spng_plte_entry entry =
            i < palette.n_entries ? palette.entries[i] : spng_plte_entry{0, 0, 0, 255};
        const std::uint8_t alpha = decoder.hasKey() && i < decoder.key().n_type3_entries
                                       ? decoder.key().type3_alpha[i]
                                       : 255;
        entries.insert(entries.end(), {entry.red, entry.green, entry.blue, alpha});
    }
    return entries;
}

ReadFacts readFacts(const Decoder& decoder) {
    ReadFacts read{factsOf(decoder), {}};
    if (decoder.isIndexed()) {
        read.palette = paletteOf(decoder);
    }
    return read;
}

bool sameLook(const ImageFacts& a, const ImageFacts& b) {
    return a.width == b.width && a.height == b.height && a.bits == b.bits &&
           a.colours == b.colours && a.hasAlpha == b.hasAlpha;
}

/// Brings rows of the file into the form that passes to the plug-in.
class RowForm {
public:
    explicit RowForm(const Decoder& decoder)
        : width_(decoder.header().width), bits_(decoder.header().bit_depth),
          last_(decoder.palette().n_entries) {
        if (decoder.isIndexed()) {
            kind_ = bits_ == 8 && last_ < 256 ? Kind::limited : Kind::same;
        } else if (decoder.hasKey()) {
            const spng_trns& key = decoder.key();
            const bool isColoured = decoder.header().color_type == SPNG_COLOR_TYPE_TRUECOLOR;
            // Bits that samples do not have mean nothing (PNG, 11.3.2.1).
            const std::uint32_t counted = (std::uint32_t{1} << bits_) - 1;
            kind_ = Kind::keyed;
            components_ = isColoured ? 3 : 1;
            key_[0] = (isColoured ? key.red : key.gray) & counted;
            key_[1] = key.green & counted;
            key_[2] = key.blue & counted;
        }
    }

    void apply(std::span<const std::byte> from, std::span<std::byte> to) const {
        switch (kind_) {
        case Kind::same:
            std::ranges::copy(from, to.begin());
            return;
        case Kind::limited:
            std::ranges::transform(from, to.begin(), [&](std::byte number) {
                return std::min(number, static_cast<std::byte>(last_ - 1));
            });
            return;
        case Kind::keyed:
            return addAlpha(from, to);
        }
    }

private:
    enum class Kind : std::uint8_t { same, limited, keyed };

    std::uint32_t sample(std::span<const std::byte> row, std::size_t number) const {
        if (bits_ == 16) {
            return std::to_integer<std::uint32_t>(row[2 * number]) << 8 |
                   std::to_integer<std::uint32_t>(row[2 * number + 1]);
        }
        const std::size_t bit = number * bits_;
        const auto byte = std::to_integer<std::uint32_t>(row[bit / 8]);
        return byte >> (8 - bits_ - bit % 8) & ((1U << bits_) - 1);
    }

    void addAlpha(std::span<const std::byte> from, std::span<std::byte> to) const {
        const std::uint32_t full = bits_ == 16 ? 0xFFFF : 0xFF;
        const std::uint32_t scale = bits_ >= 8 ? 1 : 0xFF / ((1U << bits_) - 1);
        std::size_t at = 0;
        const auto put = [&](std::uint32_t value) {
            if (bits_ == 16) {
                to[at++] = static_cast<std::byte>(value >> 8);
            }
            to[at++] = static_cast<std::byte>(value & 0xFF);
        };
        for (std::size_t pixel = 0; pixel < width_; ++pixel) {
            bool isKey = true;
            for (std::size_t i = 0; i < components_; ++i) {
                const std::uint32_t value = sample(from, pixel * components_ + i);
                isKey = isKey && value == key_[i];
                put(value * scale);
            }
            put(isKey ? 0 : full);
        }
    }

    Kind kind_ = Kind::same;
    std::size_t width_;
    std::uint32_t bits_;
    std::uint32_t last_;
    std::size_t components_ = 1;
    std::uint32_t key_[3] = {};
};

class PngSource final : public ImageSource {
public:
    PngSource(std::unique_ptr<ByteSource> file, const ReadFacts& known, std::uint64_t digest)
        : file_(std::move(file)), stream_(*file_, digest), decoder_(stream_), form_(decoder_),
          rowsLeft_(decoder_.header().height),
          row_(static_cast<std::size_t>(rowBytes(factsOf(decoder_)))), at_(row_.size()) {
        const ReadFacts now = readFacts(decoder_);
        if (!sameLook(now.facts, known.facts) || now.palette != known.palette) {
            throw ImageError("has changed while it was read");
        }
        if (decoder_.header().interlace_method != SPNG_INTERLACE_NONE) {
            decodeWhole();
        } else {
            fileRow_.resize(decoder_.fileRow());
            decoder_.require(spng_decode_image(decoder_.get(), nullptr, 0, SPNG_FMT_RAW,
                                               SPNG_DECODE_PROGRESSIVE));
        }
    }

    std::size_t read(std::span<std::byte> into) override {
        std::size_t done = 0;
        while (done < into.size() && (at_ < row_.size() || rowsLeft_ != 0)) {
            if (at_ == row_.size()) {
                readRow();
            }
            const std::size_t count = std::min(row_.size() - at_, into.size() - done);
            std::memcpy(into.data() + done, row_.data() + at_, count);
            at_ += count;
            done += count;
        }
        return done;
    }

private:
    void decodeWhole() {
        const std::uint64_t bytes = std::uint64_t{decoder_.fileRow()} * decoder_.header().height;
        if (bytes > image_budget::interlacedBytes) {
            throw ImageError("is interlaced and too large for that");
        }
        whole_.resize(static_cast<std::size_t>(bytes));
        decoder_.require(
            spng_decode_image(decoder_.get(), whole_.data(), whole_.size(), SPNG_FMT_RAW, 0));
    }

    void readRow() {
        std::span<const std::byte> from = fileRow_;
        if (!whole_.empty()) {
            const std::size_t size = decoder_.fileRow();
            from = std::span(whole_).subspan((decoder_.header().height - rowsLeft_) * size, size);
        } else {
            const int result = spng_decode_row(decoder_.get(), fileRow_.data(), fileRow_.size());
            decoder_.require(result == SPNG_EOI && rowsLeft_ == 1 ? 0 : result);
        }
        form_.apply(from, row_);
        --rowsLeft_;
        at_ = 0;
        if (rowsLeft_ == 0) {
            stream_.finish();
        }
    }

    std::unique_ptr<ByteSource> file_;
    SourceStream stream_;
    Decoder decoder_;
    RowForm form_;
    std::uint32_t rowsLeft_;
    std::vector<std::byte> row_;
    std::size_t at_; ///< of `row_`: what was given
    std::vector<std::byte> fileRow_;
    std::vector<std::byte> whole_; ///< of an interlaced file
};

} // namespace

ReadFacts readPngFacts(const ByteSource& file) {
    SourceStream stream(file);
    return readFacts(Decoder(stream));
}

std::unique_ptr<ImageSource> openPng(std::unique_ptr<ByteSource> file, const ReadFacts& known,
                                     std::uint64_t digest) {
    return std::make_unique<PngSource>(std::move(file), known, digest);
}

} // namespace corvane
