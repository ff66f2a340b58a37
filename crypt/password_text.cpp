#include "crypt/password_text.h"

#include "crypt/utf8.h"

#include <array>

namespace corvane {

namespace {

/// Characters of PDFDocEncoding that are not those of Latin-1, from 0x18 and from 0x80 on.
constexpr std::array<char32_t, 8> accents = {0x02D8, 0x02C7, 0x02C6, 0x02D9,
                                             0x02DD, 0x02DB, 0x02DA, 0x02DC};
constexpr std::array<char32_t, 33> others = {
    0x2022, 0x2020, 0x2021, 0x2026, 0x2014, 0x2013, 0x0192, 0x2044, 0x2039, 0x203A, 0x2212,
    0x2030, 0x201E, 0x201C, 0x201D, 0x2018, 0x2019, 0x201A, 0x2122, 0xFB01, 0xFB02, 0x0141,
    0x0152, 0x0160, 0x0178, 0x017D, 0x0131, 0x0142, 0x0153, 0x0161, 0x017E, 0xFFFF, 0x20AC};

std::optional<std::uint8_t> encoded(char32_t character) {
    for (std::size_t i = 0; i < accents.size(); ++i) {
        if (accents[i] == character) {
            return static_cast<std::uint8_t>(0x18 + i);
        }
    }
    for (std::size_t i = 0; i < others.size(); ++i) {
        if (others[i] == character) {
            return static_cast<std::uint8_t>(0x80 + i);
        }
    }
    const bool isSame = character < 0x18 || (character > 0x1F && character < 0x7F) ||
                        (character > 0xA0 && character <= 0xFF && character != 0xAD);
    return isSame ? std::optional(static_cast<std::uint8_t>(character)) : std::nullopt;
}

} // namespace

char32_t documentCharacter(std::uint8_t byte) {
    const std::size_t accent = std::size_t{byte} - 0x18;
    const std::size_t other = std::size_t{byte} - 0x80;
    return accent < accents.size() ? accents[accent] : other < others.size() ? others[other] : byte;
}

std::optional<Secret> documentEncoded(Octets text) {
    Secret bytes(text.size());
    std::size_t count = 0;
    while (!text.empty()) {
        const std::optional<char32_t> character = nextCharacter(text);
        const std::optional<std::uint8_t> byte = character ? encoded(*character) : std::nullopt;
        if (!byte) {
            return std::nullopt;
        }
        bytes.bytes()[count++] = *byte;
    }
    return Secret(std::as_const(bytes).bytes().first(count));
}

} // namespace corvane
