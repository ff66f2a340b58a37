#include "app/images/png_writer.h"

#include "app/artwork/images/image_table.h"
#include "app/images/image_error.h"
#include "app/images/png_filter.h"

#include <algorithm>
#include <array>
#include <isa-l/crc.h>
#include <isa-l/igzip_lib.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

namespace {

/// The lowest of ISA-L's levels that makes codes for what it packs. The files of higher ones are
/// hardly smaller.
constexpr std::uint32_t compressionLevel = 1;
constexpr std::uint32_t compressorSize = ISAL_DEF_LVL1_DEFAULT;
constexpr std::size_t chunkSize = std::size_t{64} << 10;
/// Bytes of rows that are packed together: a row at a time is slower, and longer.
constexpr std::size_t rowsSize = std::size_t{256} << 10;

constexpr std::array<unsigned char, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

constexpr std::array<unsigned char, 4> markType{'c', 'o', 'R', 'V'};
constexpr std::array<unsigned char, 12> lastChunk{0,   0,   0,    0,    'I',  'E',
                                                  'N', 'D', 0xAE, 0x42, 0x60, 0x82};

/// Not set to zeros: small images leave most of it alone.
using Room = std::unique_ptr<unsigned char[]>;

Room roomOf(std::size_t bytes) {
    return std::make_unique_for_overwrite<unsigned char[]>(bytes);
}

using End = std::array<unsigned char, PngWriter::endBytes>;

unsigned char* putNumber(unsigned char* to, std::uint64_t number, int bytes) {
    for (int i = bytes - 1; i >= 0; --i) {
        *to++ = static_cast<unsigned char>(number >> (8 * i) & 0xFF);
    }
    return to;
}

std::uint64_t checksum(std::span<const unsigned char> bytes) {
    return crc32_gzip_refl(0, bytes.data(), bytes.size());
}

/// The mark and the last chunk of a file; `before` is the digest of what is in front of them.
End endOf(Digest before, std::string_view key) {
    before.feed(std::as_bytes(std::span(key)));
    const std::uint64_t digest = before.value();
    End end{};
    unsigned char* at = putNumber(end.data(), 8, 4);
    at = std::ranges::copy(markType, at).out;
    at = putNumber(at, digest, 8);
    at = putNumber(at, checksum(std::span(end).subspan(4, 12)), 4);
    std::ranges::copy(lastChunk, at);
    return end;
}

/// The numbers of PNG.
unsigned char colourType(const ImageFacts& facts) {
    constexpr unsigned char colour = 2;
    constexpr unsigned char alpha = 4;
    const unsigned char more = facts.hasAlpha ? alpha : 0;
    switch (facts.colours) {
    case ImageColours::indexed:
        return 3;
    case ImageColours::gray:
        return more;
    case ImageColours::rgb:
    case ImageColours::cmyk:
        break;
    }
    return colour | more;
}

std::vector<unsigned char> headerOf(const ImageFacts& facts) {
    std::vector<unsigned char> header(13);
    unsigned char* at = putNumber(header.data(), static_cast<std::uint64_t>(facts.width), 4);
    at = putNumber(at, static_cast<std::uint64_t>(facts.height), 4);
    *at++ = static_cast<unsigned char>(facts.bits);
    *at = colourType(facts);
    return header;
}

/// Bytes between a byte and its like in the pixel before.
std::size_t pixelBytes(const ImageFacts& facts) {
    const std::size_t channels =
        (facts.colours == ImageColours::gray ? 1U : 3U) + (facts.hasAlpha ? 1U : 0U);
    return channels * static_cast<std::size_t>(facts.bits) / 8;
}

} // namespace

/// The file as far as it was written.
struct PngWriter::State {
    State(ByteSink& to, std::string_view imageKey) : sink(to), key(imageKey) {
        isal_deflate_init(&stream);
        stream.level = compressionLevel;
        stream.level_buf = compressor.get();
        stream.level_buf_size = compressorSize;
        stream.gzip_flag = IGZIP_ZLIB;
    }

    void put(std::span<const unsigned char> bytes) {
        const std::string_view text(
            static_cast<const char*>(static_cast<const void*>(bytes.data())), bytes.size());
        digest.feed(std::as_bytes(bytes));
        if (!error) {
            error = sink.write(text);
        }
    }

    void putChunk(std::string_view type, std::span<const unsigned char> data) {
        std::vector<unsigned char> chunk(4);
        chunk.reserve(data.size() + 12);
        putNumber(chunk.data(), data.size(), 4);
        chunk.insert(chunk.end(), type.begin(), type.end());
        chunk.insert(chunk.end(), data.begin(), data.end());
        const std::uint64_t sum = checksum(std::span(chunk).subspan(4));
        chunk.resize(chunk.size() + 4);
        putNumber(chunk.data() + chunk.size() - 4, sum, 4);
        put(chunk);
    }

    void gather(std::span<const unsigned char> bytes) {
        rows.insert(rows.end(), bytes.begin(), bytes.end());
        if (rows.size() >= rowsSize) {
            compress(false);
        }
    }

    /// The rows gathered through the compressor; a chunk whenever there is enough for one.
    void compress(bool isLast) {
        stream.next_in = rows.data();
        stream.avail_in = static_cast<std::uint32_t>(rows.size());
        stream.end_of_stream = isLast ? 1 : 0;
        bool isFull = true;
        while (isFull) {
            stream.next_out = packed.get() + packedSize;
            stream.avail_out = static_cast<std::uint32_t>(chunkSize - packedSize);
            isal_deflate(&stream);
            packedSize = chunkSize - stream.avail_out;
            isFull = stream.avail_out == 0;
            if (isFull || isLast) {
                putChunk("IDAT", std::span(packed.get(), packedSize));
                packedSize = 0;
            }
        }
        rows.clear();
    }

    ByteSink& sink;
    std::string key; ///< of the image
    std::optional<PngFilter> filter;
    isal_zstream stream{};
    Room compressor = roomOf(compressorSize);
    std::vector<unsigned char> rows; ///< with their filters
    Room packed = roomOf(chunkSize);
    std::size_t packedSize = 0;
    Digest digest;
    std::error_code error;
};

PngWriter::PngWriter(const ImageFacts& facts, ByteSink& sink)
    : rowSize_(static_cast<std::size_t>(rowBytes(facts))), rowsLeft_(facts.height) {
    const bool isFiltered = facts.colours != ImageColours::indexed && facts.bits >= 8;
    state_ = std::make_unique<State>(sink, facts.key);
    if (isFiltered) {
        state_->filter.emplace(rowSize_, pixelBytes(facts));
    }
    state_->put(signature);
    state_->putChunk("IHDR", headerOf(facts));
    if (facts.colours == ImageColours::indexed) {
        std::vector<unsigned char> colours;
        std::vector<unsigned char> alphas;
        std::size_t seenThrough = 0;
        for (std::size_t i = 0; i + 4 <= facts.palette.size(); i += 4) {
            const auto entry = facts.palette.subspan(i, 4);
            colours.insert(colours.end(), entry.begin(), entry.begin() + 3);
            alphas.push_back(entry[3]);
            seenThrough = entry[3] == 255 ? seenThrough : alphas.size();
        }
        state_->putChunk("PLTE", colours);
        if (seenThrough != 0) {
            state_->putChunk("tRNS", std::span(alphas).first(seenThrough));
        }
    }
}

PngWriter::~PngWriter() = default;

std::error_code PngWriter::addRow(std::span<const std::byte> row) {
    if (rowsLeft_ == 0) {
        throw ImageError("has more rows than it says");
    }
    --rowsLeft_;
    const std::span<const unsigned char> samples(
        static_cast<const unsigned char*>(static_cast<const void*>(row.data())), row.size());
    if (state_->filter) {
        state_->gather(state_->filter->filtered(samples));
    } else {
        constexpr std::array<unsigned char, 1> noFilter{};
        state_->gather(noFilter);
        state_->gather(samples);
    }
    return state_->error;
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
    state_->compress(true);
    state_->put(endOf(state_->digest, state_->key));
    return state_->error;
}

std::uint64_t PngWriter::digest() const {
    return state_->digest.value();
}

bool PngWriter::isOurs(std::span<const std::byte> end, Digest before, std::string_view key) {
    const End ours = endOf(before, key);
    return std::ranges::equal(end, std::as_bytes(std::span(ours)));
}

} // namespace corvane
