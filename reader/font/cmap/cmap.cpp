#include "reader/font/cmap/cmap.h"

#include <algorithm>

namespace corvane {

namespace {

/// Code spaces of one CMap: real ones have at most a dozen, and each code is held against them.
constexpr std::size_t mostSpaces = 64;

std::size_t placeOf(std::int32_t length) {
    return static_cast<std::size_t>(length) - 1;
}

std::uint32_t byteOf(std::uint32_t code, std::int32_t length, std::int32_t index) {
    return code >> (8 * (length - 1 - index)) & 0xFF;
}

bool holds(const CodeSpace& space, std::uint32_t code) {
    for (std::int32_t i = 0; i < space.length; ++i) {
        const std::uint32_t byte = byteOf(code, space.length, i);
        if (byte < byteOf(space.first, space.length, i) ||
            byte > byteOf(space.last, space.length, i)) {
            return false;
        }
    }
    return true;
}

} // namespace

std::shared_ptr<const CMap> CMap::identity(bool isVertical) {
    auto map = std::make_shared<CMap>();
    map->setVertical(isVertical);
    map->addSpace({.length = 2, .first = 0, .last = 0xFFFF});
    map->addCids(2, {.first = 0, .last = 0xFFFF});
    map->finish();
    return map;
}

bool CMap::hasSpace(std::int32_t length, std::uint32_t code) const {
    return std::ranges::any_of(spaces_,
                               [&](const CodeSpace& space) {
                                   return space.length == length && holds(space, code);
                               }) ||
           (base_ != nullptr && base_->hasSpace(length, code));
}

/// The least length of the codes that begin with this byte, else of all; 0 where there are none.
std::int32_t CMap::strayLength(std::uint32_t firstByte) const {
    std::int32_t alike = 0;
    std::int32_t any = base_ != nullptr ? base_->strayLength(firstByte) : 0;
    for (const CodeSpace& space : spaces_) {
        const auto lesser = [&](std::int32_t length) {
            return length == 0 ? space.length : std::min(length, space.length);
        };
        any = lesser(any);
        if (firstByte >= byteOf(space.first, space.length, 0) &&
            firstByte <= byteOf(space.last, space.length, 0)) {
            alike = lesser(alike);
        }
    }
    return alike != 0 ? alike : any;
}

StringCode CMap::firstCode(std::span<const std::byte> string) const {
    const std::size_t longest = std::min(string.size(), longestCode);
    std::uint32_t code = 0;
    for (std::size_t i = 0; i < longest; ++i) {
        code = code << 8 | std::to_integer<std::uint32_t>(string[i]);
        const auto length = static_cast<std::int32_t>(i + 1);
        if (hasSpace(length, code)) {
            return {.code = code, .length = length};
        }
    }
    const std::int32_t stray = strayLength(std::to_integer<std::uint32_t>(string[0]));
    const auto length = std::clamp(stray, 1, static_cast<std::int32_t>(longest));
    return {.code = code >> (8 * (static_cast<std::int32_t>(longest) - length)), .length = length};
}

std::optional<std::uint32_t> CMap::cid(StringCode code) const {
    if (code.length < 1 || code.length > static_cast<std::int32_t>(longestCode)) {
        return std::nullopt;
    }
    for (const CMap* map = this; map != nullptr; map = map->base()) {
        if (const auto cid = map->cids_[placeOf(code.length)].find(code.code)) {
            return cid;
        }
    }
    for (const CMap* map = this; map != nullptr; map = map->base()) {
        if (const auto cid = map->notdefs_[placeOf(code.length)].find(code.code)) {
            return cid;
        }
    }
    return std::nullopt;
}

std::optional<std::u32string> CMap::text(std::uint32_t code) const {
    for (const CMap* map = this; map != nullptr; map = map->base()) {
        if (const auto index = map->texts_.find(code)) {
            const Text& text = map->textList_[*index];
            std::u32string characters = map->characters_.substr(text.start, text.length);
            if (!characters.empty()) {
                characters.back() += code - text.first;
            }
            return characters;
        }
    }
    return std::nullopt;
}

std::vector<CMap::CidRange> CMap::cidRanges() const {
    std::vector<CidRange> all;
    for (const CMap* map = this; map != nullptr; map = map->base()) {
        for (std::size_t place = 0; place < longestCode; ++place) {
            for (const NumberRange& range : map->cids_[place].ranges()) {
                all.push_back({.length = static_cast<std::int32_t>(place + 1), .range = range});
            }
        }
    }
    return all;
}

std::size_t CMap::bytes() const {
    std::size_t sum = textList_.capacity() * sizeof(Text) + texts_.bytes() +
                      characters_.capacity() * sizeof(char32_t);
    for (std::size_t place = 0; place < longestCode; ++place) {
        sum += cids_[place].bytes() + notdefs_[place].bytes();
    }
    return sum;
}

void CMap::addSpace(const CodeSpace& space) {
    if (spaces_.size() < mostSpaces) {
        spaces_.push_back(space);
    }
}

void CMap::addCids(std::int32_t length, const NumberRange& range) {
    cids_[placeOf(length)].add(range);
}

void CMap::addNotdefs(std::int32_t length, const NumberRange& range) {
    notdefs_[placeOf(length)].add(range);
}

void CMap::addText(std::uint32_t first, std::uint32_t last, std::u32string_view text) {
    texts_.add({.first = first,
                .last = last,
                .value = static_cast<std::uint32_t>(textList_.size()),
                .isConstant = true});
    textList_.push_back({.first = first,
                         .start = static_cast<std::uint32_t>(characters_.size()),
                         .length = static_cast<std::uint32_t>(text.size())});
    characters_.append(text);
}

void CMap::finish() {
    for (std::size_t place = 0; place < longestCode; ++place) {
        cids_[place].finish();
        notdefs_[place].finish();
    }
    texts_.finish();
    charge_.resize(static_cast<std::int64_t>(bytes()));
}

} // namespace corvane
