#include "writer/layer/name_text.h"

#include "reader/font/characters.h"
#include "writer/crypt/sealed.h"

#include <algorithm>
#include <span>

namespace corvane {

namespace {

/// Characters that mean the same in every encoding, and need no escape.
bool isPlain(char character) {
    return character >= ' ' && character <= '~' && character != '(' && character != ')' &&
           character != '\\';
}

void addUnit(std::string& bytes, char32_t unit) {
    bytes += static_cast<char>(unit >> 8 & 0xFF);
    bytes += static_cast<char>(unit & 0xFF);
}

std::string inUtf16(std::u32string_view characters) {
    std::string bytes = "\xFE\xFF";
    for (const char32_t character : characters) {
        if (character < 0x10000) {
            addUnit(bytes, character);
        } else {
            const char32_t rest = character - 0x10000;
            addUnit(bytes, 0xD800 + (rest >> 10));
            addUnit(bytes, 0xDC00 + (rest & 0x3FF));
        }
    }
    return bytes;
}

} // namespace

std::string sealedName(const DocumentCache& cache, ObjectIdentifier in, std::string_view name) {
    if (std::ranges::all_of(name, isPlain)) {
        return sealedText(cache, in, name);
    }
    const std::string bytes = inUtf16(fromUtf8(name).value_or(U"Layer"));
    return sealedBytes(cache, in, std::as_bytes(std::span(bytes)));
}

} // namespace corvane
