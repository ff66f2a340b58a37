// PNG files of any kind, as bytes.
#pragma once

#include "app/images/byte_source.h"

#include <cstdint>
#include <cstdlib>
#include <spng.h>
#include <string>
#include <vector>

namespace corvane::test {

using Octets = std::vector<int>;

inline std::vector<std::byte> octets(const Octets& numbers) {
    std::vector<std::byte> bytes;
    for (const int number : numbers) {
        bytes.push_back(static_cast<std::byte>(number));
    }
    return bytes;
}

inline std::string text(const std::vector<std::byte>& bytes) {
    std::string text;
    for (const std::byte byte : bytes) {
        text += std::to_integer<char>(byte);
    }
    return text;
}

struct PngKind {
    std::uint32_t width = 1;
    std::uint32_t height = 1;
    std::uint8_t type = 0; ///< as in IHDR
    std::uint8_t bits = 8;
    Octets rows;
    Octets palette = {}; ///< red, green, blue
    Octets alpha = {};   ///< of the palette
    Octets key = {};     ///< gray, or red, green, blue
};

/// Empty where the library does not make that.
inline std::vector<std::byte> pngOf(const PngKind& kind) {
    const std::vector<std::byte> rows = octets(kind.rows);
    spng_ctx* const context = spng_ctx_new(SPNG_CTX_ENCODER);
    spng_set_option(context, SPNG_ENCODE_TO_BUFFER, 1);
    spng_ihdr header{kind.width, kind.height, kind.bits, kind.type, 0, 0, 0};
    spng_set_ihdr(context, &header);
    spng_plte palette{};
    for (std::size_t i = 0; i < kind.palette.size() / 3; ++i) {
        const auto part = [&](std::size_t k) {
            return static_cast<std::uint8_t>(kind.palette[3 * i + k]);
        };
        palette.entries[palette.n_entries++] = {part(0), part(1), part(2), 255};
    }
    spng_trns key{};
    for (const int alpha : kind.alpha) {
        key.type3_alpha[key.n_type3_entries++] = static_cast<std::uint8_t>(alpha);
    }
    if (kind.key.size() == 1) {
        key.gray = static_cast<std::uint16_t>(kind.key[0]);
    } else if (kind.key.size() == 3) {
        key.red = static_cast<std::uint16_t>(kind.key[0]);
        key.green = static_cast<std::uint16_t>(kind.key[1]);
        key.blue = static_cast<std::uint16_t>(kind.key[2]);
    }
    if (palette.n_entries != 0) {
        spng_set_plte(context, &palette);
    }
    if (!kind.key.empty() || !kind.alpha.empty()) {
        spng_set_trns(context, &key);
    }
    std::vector<std::byte> file;
    if (spng_encode_image(context, rows.data(), rows.size(), SPNG_FMT_RAW, SPNG_ENCODE_FINALIZE) ==
        0) {
        std::size_t size = 0;
        int error = 0;
        void* const bytes = spng_get_png_buffer(context, &size, &error);
        const auto* const start = static_cast<const std::byte*>(bytes);
        file.assign(start, start + size);
        std::free(bytes);
    }
    spng_ctx_free(context);
    return file;
}

} // namespace corvane::test
