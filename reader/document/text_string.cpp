#include "reader/document/text_string.h"

#include "crypt/password_text.h"
#include "reader/font/characters.h"
#include "reader/font/font_entries.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace corvane {

namespace {

/// Characters.
constexpr std::size_t longest = 512;

/// Not all of a long string: many may share it.
std::string beginningOf(const Object& string) {
    return typeObject(string) == ObjectType::text
               ? std::string(textObject(string).substr(0, 4 * longest))
               : stringOf(string).substr(0, 4 * longest);
}

std::u32string fromDocumentEncoding(std::string_view bytes) {
    std::u32string characters;
    for (const char byte : bytes) {
        characters.push_back(documentCharacter(static_cast<std::uint8_t>(byte)));
    }
    return characters;
}

/// The low byte of each pair comes first.
std::u32string fromLittleUtf16(std::string bytes) {
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        std::swap(bytes[i], bytes[i + 1]);
    }
    return fromUtf16(std::as_bytes(std::span(bytes)));
}

std::u32string decoded(std::string_view bytes) {
    const std::string_view behindPair = bytes.substr(std::min<std::size_t>(bytes.size(), 2));
    if (bytes.starts_with("\xFE\xFF")) {
        return fromUtf16(std::as_bytes(std::span(behindPair)));
    }
    if (bytes.starts_with("\xFF\xFE")) {
        return fromLittleUtf16(std::string(behindPair));
    }
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        if (auto characters = fromUtf8(bytes.substr(3))) {
            return *std::move(characters);
        }
    }
    return fromDocumentEncoding(bytes);
}

} // namespace

std::string documentText(const Object& string) {
    const std::string bytes = beginningOf(string);
    std::u32string characters = decoded(bytes);
    std::erase_if(characters, [](char32_t each) { return !isTextCharacter(each); });
    return toUtf8(characters.substr(0, longest));
}

} // namespace corvane
