#include "app/svg/art_source.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace corvane {

namespace {

constexpr char shapePrefix = 'p';
constexpr char contentPrefix = 'f';
constexpr char maskPrefix = 'm';
constexpr char tilePrefix = 't';

/// Takes a number of digits alone, and the blanks before it.
template <class Number>
bool takeNumber(std::string_view& text, Number& number, int radix = 10) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    if (text.empty() || text.front() == '-') {
        return false;
    }
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), number, radix);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc() && (text.empty() || text.front() == ' ');
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(' ') == std::string_view::npos;
}

/// Takes a character and the number from 1 behind it.
bool takeNumbered(std::string_view& text, char prefix, std::int32_t& number) {
    if (!text.starts_with(prefix) || text.size() < 2 || text[1] == '0') {
        return false;
    }
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data() + 1, end, number);
    text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
    return read.ec == std::errc() && number > 0;
}

} // namespace

void writeShapeId(TextOutput& out, std::int32_t content, std::uint32_t number) {
    constexpr std::size_t numberRoom = 40;
    out.text(" id=\"");
    char* at = out.room(numberRoom);
    char* const last = at + numberRoom;
    if (content == maskContent) {
        *at++ = maskPrefix;
    } else if (content == tileContent) {
        *at++ = tilePrefix;
    } else if (content != 0) {
        *at++ = contentPrefix;
        at = std::to_chars(at, last, content).ptr;
    }
    *at++ = shapePrefix;
    at = std::to_chars(at, last, number).ptr;
    *at++ = '"';
    out.advance(at);
}

void writeArtSource(TextOutput& out, std::string_view name, const ArtSource& source,
                    SourceBase base) {
    constexpr std::size_t room = 80; // five numbers and what is around them
    out.text(" ");
    out.text(name);
    char* at = out.room(room);
    char* const last = at + room;
    *at++ = '=';
    *at++ = '"';
    at = std::to_chars(at, last, source.start).ptr;
    *at++ = ' ';
    at = std::to_chars(at, last, source.end).ptr;
    *at++ = ' ';
    at = std::to_chars(at, last, source.ordinal).ptr;
    if (base) {
        constexpr std::string_view digits = "0123456789abcdef";
        *at++ = ' ';
        for (int shift = 12; shift >= 0; shift -= 4) {
            *at++ = digits[static_cast<std::size_t>(*base >> shift & 0xF)];
        }
    }
    if (source.content != 0) {
        *at++ = ' ';
        at = std::to_chars(at, last, source.content).ptr;
    }
    *at++ = '"';
    out.advance(at);
}

std::optional<ArtSource> parseArtSource(std::string_view text, SourceBase base) {
    ArtSource source;
    std::uint16_t ofSource = 0;
    const bool whole = takeNumber(text, source.start) && takeNumber(text, source.end) &&
                       takeNumber(text, source.ordinal) &&
                       (!base || (takeNumber(text, ofSource, 16) && ofSource == *base)) &&
                       (isBlank(text) || (takeNumber(text, source.content) && isBlank(text)));
    return whole && source.start <= source.end ? std::optional(source) : std::nullopt;
}

std::optional<ArtSource> sourceOfId(std::string_view id) {
    std::int32_t content = 0;
    std::int32_t number = 0;
    const bool isOurs =
        (!id.starts_with(contentPrefix) || takeNumbered(id, contentPrefix, content)) &&
        takeNumbered(id, shapePrefix, number) && id.empty();
    return isOurs ? std::optional(ArtSource{0, 0, number - 1, content}) : std::nullopt;
}

SourceBase sourceBase(const Provenance& provenance) {
    return provenance.identity ? SourceBase(static_cast<std::uint16_t>(provenance.identity->digest))
                               : std::nullopt;
}

} // namespace corvane
