#include "fonts/glyph_list.h"

#include <array>
#include <functional>

namespace corvane {

namespace {

constexpr std::string_view letters =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz-+";
constexpr std::string_view firstDigits = "!#$%&()*+,-./:;<";
constexpr std::string_view pieceMarks = "=>@[]^_`{|}~";
constexpr std::array<std::string_view, pieceMarks.size()> pieces = {
    "cyrillic", "arabic",   "hebrew",  "onospace", "korean",   "katakana",
    "square",   "armenian", "bengali", "ircle",    "hiragana", "halfwidth"};

/// Twice as many as there are names, and more.
constexpr std::size_t placeCount = 1 << 14;

constexpr std::uint8_t none = 0xFF;
using Places = std::array<std::uint8_t, 256>;

/// Where each character stands among `characters`.
constexpr Places placesIn(std::string_view characters) {
    Places places{};
    places.fill(none);
    for (std::size_t i = 0; i < characters.size(); ++i) {
        places[static_cast<unsigned char>(characters[i])] = static_cast<std::uint8_t>(i);
    }
    return places;
}

constexpr Places letterPlaces = placesIn(letters);
constexpr Places digitPlaces = placesIn(firstDigits);
constexpr Places piecePlaces = placesIn(pieceMarks);

std::uint8_t placeIn(const Places& places, char character) {
    return places[static_cast<unsigned char>(character)];
}

} // namespace

GlyphList::GlyphList(std::string_view packed) : places_(placeCount) {
    std::string name;
    std::size_t at = 0;
    while (at < packed.size()) {
        name.resize(placeIn(letterPlaces, packed[at++]));
        for (; placeIn(digitPlaces, packed[at]) == none; ++at) {
            const std::uint8_t piece = placeIn(piecePlaces, packed[at]);
            if (piece == none) {
                name += packed[at];
            } else {
                name += pieces[piece];
            }
        }
        Entry entry{.name = static_cast<std::uint32_t>(names_.size()),
                    .meaning = static_cast<std::uint32_t>(meanings_.size()),
                    .nameLength = static_cast<std::uint32_t>(name.size()),
                    .meaningLength = 0};
        for (; at < packed.size() && placeIn(digitPlaces, packed[at]) != none; at += 3) {
            meanings_ += static_cast<char32_t>(placeIn(digitPlaces, packed[at]) << 12 |
                                               placeIn(letterPlaces, packed[at + 1]) << 6 |
                                               placeIn(letterPlaces, packed[at + 2]));
            ++entry.meaningLength;
        }
        std::uint16_t& place = places_[placeOf(name)];
        if (place == 0) {
            names_ += name;
            entries_.push_back(entry);
            place = static_cast<std::uint16_t>(entries_.size());
        }
    }
}

std::string_view GlyphList::nameOf(const Entry& entry) const {
    return std::string_view(names_).substr(entry.name, entry.nameLength);
}

/// Of the name, or the free one that it would get.
std::size_t GlyphList::placeOf(std::string_view name) const {
    std::size_t place = std::hash<std::string_view>()(name) % placeCount;
    while (places_[place] != 0 && nameOf(entries_[places_[place] - 1U]) != name) {
        place = (place + 1) % placeCount;
    }
    return place;
}

std::u32string_view GlyphList::find(std::string_view name) const {
    const std::uint16_t place = places_[placeOf(name)];
    if (place == 0) {
        return {};
    }
    const Entry& entry = entries_[place - 1U];
    return std::u32string_view(meanings_).substr(entry.meaning, entry.meaningLength);
}

} // namespace corvane
