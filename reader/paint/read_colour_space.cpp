// What an object says of a colour space.
#include "reader/paint/colour_space.h"
#include "reader/syntax/stream_bytes.h"
#include "reader/syntax/syntax.h"
#include "runtime/fixed.h"

#include <algorithm>

namespace corvane {

namespace {

using Kind = ColourSpace::Kind;

/// Spaces within one another: an indexed space over a space with a profile, and the like.
constexpr int deepestSpace = 4;

/// Components of a colour, by the PDF Reference, appendix C.
constexpr std::size_t mostComponents = functionArity;

/// Bytes of an indexed space's table that count: 256 entries of up to 32 components.
constexpr std::size_t longestTable = 256 * mostComponents;

ColourSpacePointer parseSpace(DocumentCache& cache, const Object& object, int depth);

ColourSpacePointer deviceSpace(std::int32_t components, bool hasProfile = false) {
    const auto made = [&](Kind kind) {
        return std::make_shared<ColourSpace>(
            ColourSpace{.kind = kind, .components = components, .hasProfile = hasProfile});
    };
    switch (components) {
    case 1:
        return made(Kind::gray);
    case 3:
        return made(Kind::rgb);
    case 4:
        return made(Kind::cmyk);
    default:
        return nullptr;
    }
}

double realNumber(DocumentCache& cache, const Object& object) {
    return realFromFixed(extendObject(resolveObject(cache, object).get()));
}

std::vector<double> realNumbers(DocumentCache& cache, const Object& array) {
    std::vector<double> numbers;
    if (typeObject(array) == ObjectType::array) {
        const std::span<Object> elements = elementsObject(array);
        for (const Object& element : elements.first(std::min(elements.size(), mostComponents))) {
            numbers.push_back(realNumber(cache, element));
        }
    }
    return numbers;
}

ColourSpacePointer labSpace(DocumentCache& cache, const Object& parameters) {
    ColourSpace space{.kind = Kind::lab, .components = 3, .hasProfile = true};
    const ObjectOwner dictionary = resolveObject(cache, parameters);
    const std::vector<double> range =
        realNumbers(cache, lookupObject(cache, dictionary.get(), "Range").get());
    if (range.size() == std::size(space.range)) {
        std::ranges::copy(range, space.range);
    }
    return std::make_shared<ColourSpace>(std::move(space));
}

ColourSpacePointer profileSpace(DocumentCache& cache, const Object& profile) {
    const ObjectOwner stream = resolveObject(cache, profile);
    return deviceSpace(integerObject(lookupObject(cache, stream.get(), "N").get()), true);
}

std::vector<std::uint8_t> tableBytes(DocumentCache& cache, const Object& object) {
    const ObjectOwner lookup = resolveObject(cache, object);
    if (typeObject(lookup.get()) == ObjectType::stream) {
        return streamBytes(cache, lookup.get(), longestTable);
    }
    const std::string_view text = textObject(lookup.get());
    return {text.begin(), text.end()};
}

/// [name base hival lookup]
ColourSpacePointer indexedSpace(DocumentCache& cache, std::span<const Object> elements, int depth) {
    ColourSpace space{.kind = Kind::indexed, .components = 1};
    space.base = parseSpace(cache, elements[1], depth + 1);
    if (space.base == nullptr || space.base->components == 0) {
        return nullptr;
    }
    const std::int32_t highest = integerObject(resolveObject(cache, elements[2]).get());
    space.table = tableBytes(cache, elements[3]);
    const auto entries = static_cast<std::size_t>(std::clamp(highest, 0, 255)) + 1;
    const std::size_t length = entries * static_cast<std::size_t>(space.base->components);
    space.table.resize(std::min(space.table.size(), length));
    return std::make_shared<ColourSpace>(std::move(space));
}

/// Inks that a space names: one, or those of an array.
std::size_t inkCount(const Object& names) {
    return typeObject(names) == ObjectType::array ? static_cast<std::size_t>(sizeObject(names)) : 1;
}

/// [name inks alternate function ...], of Separation and DeviceN.
ColourSpacePointer tintSpace(DocumentCache& cache, std::span<const Object> elements, int depth) {
    ColourSpace space{.kind = Kind::tint};
    const std::size_t inks = inkCount(resolveObject(cache, elements[1]).get());
    space.base = parseSpace(cache, elements[2], depth + 1);
    space.function = readFunction(cache, elements[3]);
    if (inks == 0 || inks > mostComponents || space.base == nullptr ||
        space.base->components == 0 || space.function == nullptr ||
        space.function->inputs() != inks) {
        return nullptr;
    }
    space.components = static_cast<std::int32_t>(inks);
    return std::make_shared<ColourSpace>(std::move(space));
}

ColourSpacePointer parseSpace(DocumentCache& cache, const Object& object, int depth) {
    if (depth > deepestSpace) {
        return nullptr;
    }
    const ObjectOwner space = resolveObject(cache, object);
    if (typeObject(space.get()) == ObjectType::literal) {
        return namedColourSpace(literalObject(space.get()));
    }
    if (typeObject(space.get()) != ObjectType::array || sizeObject(space.get()) < 1) {
        return nullptr;
    }
    const std::span<const Object> elements = elementsObject(space.get());
    const ObjectOwner familyName = resolveObject(cache, elements[0]);
    const std::string_view family = literalObject(familyName.get());
    if (family == "ICCBased" && elements.size() >= 2) {
        return profileSpace(cache, elements[1]);
    }
    if (family == "Lab" && elements.size() >= 2) {
        return labSpace(cache, elements[1]);
    }
    if ((family == "Indexed" || family == "I") && elements.size() >= 4) {
        return indexedSpace(cache, elements, depth);
    }
    if ((family == "Separation" || family == "DeviceN") && elements.size() >= 4) {
        return tintSpace(cache, elements, depth);
    }
    if (family == "Pattern" && elements.size() >= 2) {
        ColourSpace pattern{.kind = Kind::pattern, .components = 0};
        pattern.base = parseSpace(cache, elements[1], depth + 1);
        return std::make_shared<ColourSpace>(std::move(pattern));
    }
    return namedColourSpace(family);
}

} // namespace

ColourSpacePointer namedColourSpace(std::string_view name) {
    const bool hasProfile = name.starts_with("Cal");
    if (name == "DeviceGray" || name == "G" || name == "CalGray") {
        return deviceSpace(1, hasProfile);
    }
    if (name == "DeviceRGB" || name == "RGB" || name == "CalRGB") {
        return deviceSpace(3, hasProfile);
    }
    if (name == "DeviceCMYK" || name == "CMYK") {
        return deviceSpace(4);
    }
    if (name == "Pattern") {
        return std::make_shared<ColourSpace>(ColourSpace{.kind = Kind::pattern, .components = 0});
    }
    return nullptr;
}

ColourSpacePointer readColourSpace(DocumentCache& cache, const Object& object) {
    return parseSpace(cache, object, 0);
}

} // namespace corvane
