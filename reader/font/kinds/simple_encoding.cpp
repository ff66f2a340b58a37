#include "reader/font/kinds/simple_encoding.h"

#include "reader/font/font_entries.h"

#include <algorithm>
#include <span>
#include <utility>

namespace corvane {

namespace {

/// Glyph names that are longer mean nothing; those of Type 1 have at most 127 bytes.
constexpr std::size_t longestGlyphName = 255;

/// Elements of Differences: 256 codes, each with its number, said a few times.
constexpr std::size_t mostDifferences = 4096;

std::optional<StandardEncodingKind> encodingOfName(std::string_view name) {
    constexpr std::pair<std::string_view, StandardEncodingKind> known[] = {
        {"StandardEncoding", StandardEncodingKind::standard},
        {"WinAnsiEncoding", StandardEncodingKind::winAnsi},
        {"MacRomanEncoding", StandardEncodingKind::macRoman},
        {"MacExpertEncoding", StandardEncodingKind::macExpert},
    };
    const auto* const found =
        std::ranges::find(known, name, &std::pair<std::string_view, StandardEncodingKind>::first);
    return found == std::end(known) ? std::nullopt : std::optional(found->second);
}

} // namespace

SimpleEncoding::SimpleEncoding(DocumentCache& cache, const Object& font) {
    const ObjectOwner encoding = entryOf(cache, font, "Encoding");
    if (encoding->type == ObjectType::literal) {
        base_ = encodingOfName(corvane::nameOf(encoding.get()));
    } else if (isDictionary(encoding.get())) {
        base_ = encodingOfName(nameEntry(cache, encoding.get(), "BaseEncoding"));
        readDifferences(cache, entryOf(cache, encoding.get(), "Differences").get());
    }
}

void SimpleEncoding::readDifferences(DocumentCache& cache, const Object& array) {
    if (array.type != ObjectType::array) {
        return;
    }
    const std::span<const Object> elements = elementsObject(array);
    double code = 0;
    for (const Object& element : elements.first(std::min(elements.size(), mostDifferences))) {
        const ObjectOwner value = resolved(cache, element);
        if (const auto number = numberOf(value.get())) {
            code = *number;
        } else if (value->type == ObjectType::literal) {
            std::string name = corvane::nameOf(value.get());
            if (code >= 0 && code < 256 && name.size() <= longestGlyphName) {
                differences_[static_cast<std::size_t>(code)] = std::move(name);
                hasDifferences_ = true;
            }
            code += 1;
        }
    }
}

std::string_view SimpleEncoding::nameOf(std::uint8_t code) const {
    if (!differences_[code].empty()) {
        return differences_[code];
    }
    return base_ ? glyphNameOf(*base_, code) : std::string_view();
}

} // namespace corvane
