#include "app/svg/art_source.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace corvane {

namespace {

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

} // namespace

void writeArtSource(TextOutput& out, std::string_view name, const ArtSource& source,
                    SourceBase base) {
    constexpr std::size_t room = 64; // four numbers and what is around them
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
    *at++ = '"';
    out.advance(at);
}

std::optional<ArtSource> parseArtSource(std::string_view text, SourceBase base) {
    ArtSource source;
    std::uint16_t ofSource = 0;
    const bool whole = takeNumber(text, source.start) && takeNumber(text, source.end) &&
                       takeNumber(text, source.ordinal) &&
                       (!base || (takeNumber(text, ofSource, 16) && ofSource == *base)) &&
                       text.find_first_not_of(' ') == std::string_view::npos;
    return whole && source.start <= source.end ? std::optional(source) : std::nullopt;
}

std::optional<ArtSource> sourceOfId(std::string_view id) {
    if (!id.starts_with(shapeIdPrefix)) {
        return std::nullopt;
    }
    id.remove_prefix(shapeIdPrefix.size());
    std::int32_t number = 0;
    const char* const end = id.data() + id.size();
    const auto read = std::from_chars(id.data(), end, number);
    const bool isOurs = read.ec == std::errc() && read.ptr == end && number > 0 && id[0] != '0';
    return isOurs ? std::optional(ArtSource{0, 0, number - 1}) : std::nullopt;
}

SourceBase sourceBase(const Provenance& provenance) {
    return provenance.identity ? SourceBase(static_cast<std::uint16_t>(provenance.identity->digest))
                               : std::nullopt;
}

} // namespace corvane
