// JPEG data and pictures in memory, and libjpeg-turbo as the second opinion on them, for tests,
// fuzz targets and benchmarks.
#pragma once

#include "codecs/dct/dct.h"

#include <cstdio> // jpeglib.h needs it and does not say so

#include <jpeglib.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <vector>

namespace corvane::test {

struct Picture {
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t components = 0;
    std::vector<std::uint8_t> samples{};

    std::span<const std::uint8_t> row(std::size_t y) const {
        return std::span(samples).subspan(y * width * components, width * components);
    }
};

/// Gives `longest` bytes at a time.
class MemorySource : public DctSource {
public:
    explicit MemorySource(std::span<const std::byte> bytes, std::size_t longest = SIZE_MAX)
        : bytes_(bytes), longest_(longest) {}
    std::span<const std::byte> held() override {
        return bytes_.subspan(taken_).first(std::min(longest_, bytes_.size() - taken_));
    }
    void take(std::size_t count) override { taken_ += count; }
    std::size_t taken() const { return taken_; }

private:
    std::span<const std::byte> bytes_;
    std::size_t longest_;
    std::size_t taken_ = 0;
};

class MemorySink : public DctSink {
public:
    void write(std::span<const std::byte> bytes) override {
        data.insert(data.end(), bytes.begin(), bytes.end());
    }
    std::vector<std::byte> data{};
};

/// Raises what the codec raises.
inline Picture decodePicture(DctSource& source) {
    const std::unique_ptr<DctState> state = DCTInitialize();
    DCTDecodeOpen(*state, source);
    Picture picture;
    for (auto row = DCTDFilBuf(*state); !row.empty(); row = DCTDFilBuf(*state)) {
        picture.samples.insert(picture.samples.end(), row.begin(), row.end());
        ++picture.height;
    }
    if (const DctFrame* frame = dctFrame(*state)) {
        picture.width = frame->width;
        picture.components = frame->components.size();
    }
    DCTfree(*state);
    return picture;
}

/// `settings` but for the size, which is the picture's.
inline std::vector<std::byte> encodePicture(const Picture& picture, DctSettings settings) {
    settings.width = picture.width;
    settings.height = picture.height;
    settings.components = picture.components;
    MemorySink sink;
    const std::unique_ptr<DctState> state = DCTInitialize();
    state->settings = std::move(settings);
    DCTEncodeOpen(*state, sink);
    for (std::size_t y = 0; y < picture.height; ++y) {
        std::ranges::copy(picture.row(y), state->row.begin());
        DCTEFlush(*state);
    }
    DCTfree(*state);
    return std::move(sink.data);
}

/// libjpeg-turbo's error handling, without its messages and exits.
struct PeerErrors : jpeg_error_mgr {
    std::jmp_buf escape;

    explicit PeerErrors() {
        jpeg_std_error(this);
        error_exit = [](j_common_ptr common) {
            std::longjmp(static_cast<PeerErrors*>(common->err)->escape, 1);
        };
        emit_message = [](j_common_ptr common, int level) {
            common->err->num_warnings += level < 0 ? 1 : 0;
        };
    }
};

enum class PeerColour : std::uint8_t { asStored, converted };

/// What libjpeg-turbo makes of the data with its accurate integer transform; `clean` is false where
/// it warned or failed. Three components are taken as YCbCr where they are to be converted.
struct PeerReading {
    bool clean = false;
    bool complete = false;
    Picture picture{};
};

inline PeerReading readWithPeer(std::span<const std::byte> data, PeerColour colour,
                                std::size_t mostPixels = SIZE_MAX) {
    PeerReading reading;
    jpeg_decompress_struct peer{};
    PeerErrors errors;
    peer.err = &errors;
    std::vector<std::uint8_t> bytes(data.size());
    std::ranges::transform(data, bytes.begin(),
                           [](std::byte b) { return std::to_integer<std::uint8_t>(b); });
    jpeg_create_decompress(&peer);
    if (setjmp(errors.escape) == 0) {
        jpeg_mem_src(&peer, bytes.data(), bytes.size());
        jpeg_read_header(&peer, TRUE);
        if (std::size_t{peer.image_width} * peer.image_height <= mostPixels) {
            if (colour == PeerColour::asStored) {
                peer.jpeg_color_space = JCS_UNKNOWN;
                peer.out_color_space = JCS_UNKNOWN;
            } else if (peer.num_components == 3) {
                peer.jpeg_color_space = JCS_YCbCr;
                peer.out_color_space = JCS_RGB;
            }
            peer.dct_method = JDCT_ISLOW;
            peer.do_block_smoothing = FALSE;
            jpeg_start_decompress(&peer);
            Picture& picture = reading.picture;
            picture.width = peer.output_width;
            picture.height = peer.output_height;
            picture.components = static_cast<std::size_t>(peer.output_components);
            const std::size_t stride = picture.width * picture.components;
            picture.samples.resize(stride * picture.height);
            while (peer.output_scanline < peer.output_height) {
                JSAMPROW row = picture.samples.data() + peer.output_scanline * stride;
                jpeg_read_scanlines(&peer, &row, 1);
            }
            jpeg_finish_decompress(&peer);
            reading.complete = true;
            reading.clean = errors.num_warnings == 0;
        }
    }
    jpeg_destroy_decompress(&peer);
    return reading;
}

/// Whether a block's coefficients add up to more than 16 bits hold between the passes of a
/// transform (each pass gains the square root of 2, and 2 bits of precision are kept): far beyond
/// what samples of 8 bits can lead to, and such damage overflows every transform in its own way.
inline bool hasWildValues(std::span<const std::byte> data) {
    jpeg_decompress_struct peer{};
    PeerErrors errors;
    peer.err = &errors;
    std::vector<std::uint8_t> bytes(data.size());
    std::ranges::transform(data, bytes.begin(),
                           [](std::byte b) { return std::to_integer<std::uint8_t>(b); });
    volatile bool wild = false;
    jpeg_create_decompress(&peer);
    if (setjmp(errors.escape) == 0) {
        jpeg_mem_src(&peer, bytes.data(), bytes.size());
        jpeg_read_header(&peer, TRUE);
        jvirt_barray_ptr* const arrays = jpeg_read_coefficients(&peer);
        for (int i = 0; i < peer.num_components; ++i) {
            const jpeg_component_info& component = peer.comp_info[i];
            for (JDIMENSION y = 0; y < component.height_in_blocks; ++y) {
                const JBLOCKROW row = peer.mem->access_virt_barray(
                    std::bit_cast<j_common_ptr>(&peer), arrays[i], y, 1, FALSE)[0];
                for (JDIMENSION x = 0; x < component.width_in_blocks; ++x) {
                    std::int64_t sum = 0;
                    for (std::size_t k = 0; k < dctBlockSize; ++k) {
                        sum +=
                            std::abs(std::int64_t{row[x][k]} * component.quant_table->quantval[k]);
                    }
                    wild = wild || sum > 5792;
                }
            }
        }
    }
    jpeg_destroy_decompress(&peer);
    return wild;
}

/// libjpeg-turbo's coding with the tables that our settings lead to. Three components are RGB where
/// `transform` is set.
inline std::vector<std::uint8_t> encodeWithPeer(const Picture& picture,
                                                const DctSettings& settings) {
    jpeg_compress_struct peer{};
    PeerErrors errors;
    peer.err = &errors;
    jpeg_create_compress(&peer);
    unsigned char* data = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&peer, &data, &size);
    peer.image_width = static_cast<JDIMENSION>(picture.width);
    peer.image_height = static_cast<JDIMENSION>(picture.height);
    peer.input_components = static_cast<int>(picture.components);
    peer.in_color_space = settings.transform ? JCS_RGB : JCS_UNKNOWN;
    jpeg_set_defaults(&peer);
    jpeg_set_colorspace(&peer, settings.transform ? JCS_YCbCr : JCS_UNKNOWN);
    bool subsampled = false;
    for (std::size_t i = 0; i < picture.components; ++i) {
        jpeg_component_info& component = peer.comp_info[i];
        component.h_samp_factor = settings.sampling[i].horizontal;
        component.v_samp_factor = settings.sampling[i].vertical;
        subsampled |= component.h_samp_factor > 1 || component.v_samp_factor > 1;
    }
    for (int table = 0; table < 2; ++table) {
        const DctQuantiser& from = table == 0 ? qluma : subsampled ? qkroma_ds : qkroma;
        std::array<unsigned, dctBlockSize> entries{};
        for (std::size_t i = 0; i < dctBlockSize; ++i) {
            entries[dctNaturalOrder[i]] =
                (from[i] * static_cast<unsigned>(settings.quality) + 32768U) >> 16;
        }
        jpeg_add_quant_table(&peer, table, entries.data(), 100, TRUE);
        const auto index = static_cast<std::size_t>(table);
        const auto give = [](JHUFF_TBL* to, const DctHuffmanSpec& spec) {
            std::ranges::copy(spec.counts, to->bits + 1);
            std::ranges::copy(spec.symbols, to->huffval);
        };
        give(peer.dc_huff_tbl_ptrs[table], dctBuiltInDc[index]);
        give(peer.ac_huff_tbl_ptrs[table], dctBuiltInAc[index]);
    }
    peer.dct_method = JDCT_ISLOW;
    jpeg_start_compress(&peer, TRUE);
    std::vector<std::uint8_t> row(picture.width * picture.components);
    for (std::size_t y = 0; y < picture.height; ++y) {
        std::ranges::copy(picture.row(y), row.begin());
        JSAMPROW from = row.data();
        jpeg_write_scanlines(&peer, &from, 1);
    }
    jpeg_finish_compress(&peer);
    const std::unique_ptr<unsigned char, decltype(&std::free)> owner(data, &std::free);
    const std::span<const unsigned char> coded(data, size);
    std::vector<std::uint8_t> result(coded.begin(), coded.end());
    jpeg_destroy_compress(&peer);
    return result;
}

inline int largestDifference(const Picture& a, const Picture& b) {
    if (a.samples.size() != b.samples.size() || a.width != b.width) {
        return 256;
    }
    int largest = 0;
    for (std::size_t i = 0; i < a.samples.size(); ++i) {
        largest = std::max(largest, std::abs(a.samples[i] - b.samples[i]));
    }
    return largest;
}

/// Decibels.
inline double signalToNoise(const Picture& a, const Picture& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.samples.size(); ++i) {
        const double difference = a.samples[i] - b.samples[i];
        sum += difference * difference;
    }
    return 10 * std::log10(255.0 * 255.0 * static_cast<double>(a.samples.size()) / sum);
}

/// Soft shapes of many sizes, edges and grain: as hard to code as a photograph.
inline Picture photograph(std::size_t width, std::size_t height, std::size_t components) {
    Picture picture{width, height, components, {}};
    picture.samples.reserve(width * height * components);
    std::uint32_t grain = 12345;
    std::array<double, 3> across{};
    for (std::size_t y = 0; y < height; ++y) {
        const double v = static_cast<double>(y);
        for (std::size_t x = 0; x < width; ++x) {
            const double u = static_cast<double>(x);
            const double slow = std::sin(u * 0.0031 + v * 0.0017) + std::cos(v * 0.0043);
            const double fast = std::sin(u * 0.11 + 3 * std::sin(v * 0.013));
            across = {slow, fast, std::fmod(u * 0.7 + v * 0.3, 190.0) < 70.0 ? 1.0 : 0.0};
            for (std::size_t c = 0; c < components; ++c) {
                grain = grain * 1664525U + 1013904223U;
                const double k = static_cast<double>(c);
                const double value = 120 + (45 - 20 * k) * across[0] + (18 - 5 * k) * across[1] +
                                     (30 - 12 * k) * across[2] + static_cast<double>(grain >> 28) -
                                     8;
                picture.samples.push_back(static_cast<std::uint8_t>(std::clamp(value, 0.0, 255.0)));
            }
        }
    }
    return picture;
}

} // namespace corvane::test
