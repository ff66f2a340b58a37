#include "reader/classic/encoding_map.h"

#include "host/memory.h"
#include "host/parameters.h"
#include "host/resources.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "runtime/warning.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane::classic {

namespace {

/// Rows of 256 codes of the host, one for each encoding; and the names of the host's 256 glyphs.
constexpr std::uint32_t rowsType = fourCharacters("BYTE");
constexpr std::uint32_t namesType = fourCharacters("NAME");
constexpr std::int16_t encodingResource = 16000;
constexpr std::size_t nameSize = 16;

constexpr std::int32_t macExpert = 2;
constexpr std::int32_t winAnsi = 3;

constexpr std::uint8_t unknownLetter = '?';

/// By the number of its row; 0 stands for the font's own encoding.
std::int32_t name2encoding(std::string_view name) {
    if (name == "MacRomanEncoding") {
        return 1;
    }
    if (name == "MacExpertEncoding") {
        return macExpert;
    }
    if (name == "WinAnsiEncoding") {
        return winAnsi;
    }
    failException(Exception::structure);
}

/// Empty where there is none.
std::vector<std::byte> resourceBytes(std::uint32_t type) {
    const Handle resource = GetResource(type, encodingResource);
    if (!resource) {
        return {};
    }
    std::vector<std::byte> bytes(static_cast<std::size_t>(GetHandleSize(resource)));
    BlockMove(resource->get(), bytes.data(), static_cast<std::int32_t>(bytes.size()));
    ReleaseResource(resource);
    return bytes;
}

/// Fonts of signs have codes of their own, which the host knows.
bool hasOwnCodes(std::string_view name) {
    return name == "Symbol" || name == "ZapfDingbats";
}

void loadRow(EncodingMap& map, std::int32_t encoding) {
    const std::vector<std::byte> rows = resourceBytes(rowsType);
    const std::size_t start = static_cast<std::size_t>(encoding) * map.size();
    if (start + map.size() > rows.size()) {
        return;
    }
    std::ranges::transform(std::span(rows).subspan(start, map.size()), map.begin(),
                           [](std::byte code) { return std::to_integer<std::uint8_t>(code); });
}

class GlyphNames {
public:
    GlyphNames() : names_(resourceBytes(namesType)) {}

    std::uint8_t codeOf(std::string_view name) const {
        const std::size_t count = std::min<std::size_t>(names_.size() / nameSize, 256);
        for (std::size_t code = 0; code < count && name != ".notdef" && !name.empty(); ++code) {
            if (nameAt(code) == name) {
                return static_cast<std::uint8_t>(code);
            }
        }
        return unknownLetter;
    }

private:
    std::string_view nameAt(std::size_t code) const {
        const auto* const start =
            static_cast<const char*>(static_cast<const void*>(names_.data() + code * nameSize));
        const std::string_view padded(start, nameSize);
        return padded.substr(0, padded.find('\0'));
    }

    std::vector<std::byte> names_;
};

void applyDifferences(DocumentCache& cache, EncodingMap& map, std::span<const Object> elements) {
    const GlyphNames names;
    std::int64_t code = 0;
    for (const Object& element : elements) {
        const ObjectOwner value = resolveObject(cache, element);
        switch (typeObject(value.get())) {
        case ObjectType::integer:
            code = integerObject(value.get());
            break;
        case ObjectType::literal:
            if (code >= 0 && code < std::ssize(map)) {
                map[static_cast<std::size_t>(code)] = names.codeOf(literalObject(value.get()));
            }
            ++code;
            break;
        default:
            failException(Exception::structure);
        }
    }
}

} // namespace

EncodingMap readEncoding(DocumentCache& cache, const Object& font, const SelectedFont& selected) {
    const ObjectOwner entry = lookupObject(cache, font, "Encoding");
    ObjectOwner differences;
    std::int32_t encoding = 0;
    switch (typeObject(entry.get())) {
    case ObjectType::null:
        break;
    case ObjectType::literal:
        encoding = name2encoding(literalObject(entry.get()));
        break;
    case ObjectType::dictionary: {
        const ObjectOwner base = lookupObject(cache, entry.get(), "BaseEncoding");
        if (typeObject(base.get()) == ObjectType::literal) {
            encoding = name2encoding(literalObject(base.get()));
        } else if (typeObject(base.get()) != ObjectType::null) {
            failException(Exception::structure);
        }
        differences = lookupObject(cache, entry.get(), "Differences");
        break;
    }
    default:
        failException(Exception::structure);
    }

    EncodingMap map = SelectedFont().encoding;
    if (encoding != 0 || !hasOwnCodes(selected.name)) {
        loadRow(map, encoding);
    }
    if (encoding == macExpert || encoding == winAnsi) {
        raiseWarning(Warning::encodingApproximated);
    }
    switch (typeObject(differences.get())) {
    case ObjectType::empty:
    case ObjectType::null:
        break;
    case ObjectType::array:
        raiseWarning(Warning::encodingApproximated);
        applyDifferences(cache, map, elementsObject(differences.get()));
        break;
    default:
        failException(Exception::structure);
    }
    return map;
}

} // namespace corvane::classic
