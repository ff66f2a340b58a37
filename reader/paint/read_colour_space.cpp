// What an object says of a colour space.
#include "host/inks.h"
#include "objects/referenced.h"
#include "reader/paint/colour_space_cache.h"
#include "reader/paint/ink.h"
#include "reader/syntax/real_numbers.h"
#include "reader/syntax/stream/stream_bytes.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"

#include <algorithm>
#include <string>

namespace corvane {

namespace {

using Kind = ColourSpace::Kind;

/// Spaces within one another: an indexed space over a space with a profile, and the like.
constexpr int deepestSpace = 4;

/// Components of a colour, by the PDF Reference, appendix C.
constexpr std::size_t mostComponents = functionArity;

/// Bytes of all names of a space: each object that is painted in it says them.
constexpr std::size_t longestNames = 512;

/// Bytes of an indexed space's table that count: 256 entries of up to 32 components.
constexpr std::size_t longestTable = 256 * mostComponents;

ColourSpacePointer parseSpace(DocumentCache& cache, const Object& object, int depth);

/// The space that a number of components tells, seen through a profile or without one.
ColourSpacePointer countedSpace(std::int32_t components, bool hasProfile,
                                std::shared_ptr<const IccProfile> profile = nullptr) {
    if (components != 1 && components != 3 && components != 4) {
        return nullptr;
    }
    const Kind kind = components == 1 ? Kind::gray : components == 3 ? Kind::rgb : Kind::cmyk;
    if (profile != nullptr && profile->isLikeDevice()) {
        profile = nullptr;
    }
    return std::make_shared<ColourSpace>(ColourSpace{.kind = kind,
                                                     .components = components,
                                                     .hasProfile = hasProfile,
                                                     .profile = std::move(profile)});
}

ColourSpacePointer labSpace(DocumentCache& cache, const Object& parameters) {
    ColourSpace space{.kind = Kind::lab, .components = 3};
    const ObjectOwner dictionary = resolveObject(cache, parameters);
    const std::vector<double> range =
        realNumbers(cache, lookupObject(cache, dictionary.get(), "Range").get(), mostComponents);
    if (range.size() == std::size(space.range)) {
        std::ranges::copy(range, space.range);
    }
    return std::make_shared<ColourSpace>(std::move(space));
}

/// [name stream]. A profile that cannot be read leaves the alternate, or the device's space.
ColourSpacePointer profileSpace(DocumentCache& cache, const Object& object, int depth) {
    const ObjectOwner stream = resolveObject(cache, object);
    const std::int32_t components = integerObject(lookupObject(cache, stream.get(), "N").get());
    std::shared_ptr<const IccProfile> profile;
    const Exception code = guarded([&] {
        const CodecClock::Scope scope(cache.work.codecs);
        cache.work.codecs.check();
        const std::vector<std::uint8_t> bytes =
            streamBytes(cache, stream.get(), budget::profileBytes);
        profile = IccProfile::read(std::as_bytes(std::span(bytes)),
                                   static_cast<std::size_t>(std::max(components, 0)),
                                   colourSpacesOf(cache).iccLibrary());
    });
    if (code != Exception::none && code != Exception::limit && !isFileFault(code)) {
        againException();
    }
    resetException();
    if (profile == nullptr) {
        const Object alternate = findEntry(cache, stream.get(), "Alternate");
        ColourSpacePointer space;
        attempted([&] { space = parseSpace(cache, alternate, depth + 1); });
        if (space != nullptr && space->components == components && space->kind == Kind::lab) {
            return space;
        }
    }
    const bool isIgnored = profile == nullptr;
    return countedSpace(components, isIgnored, std::move(profile));
}

/// [name dictionary], of CalGray and CalRGB.
ColourSpacePointer calibratedSpace(DocumentCache& cache, const Object& parameters,
                                   std::int32_t components) {
    const ObjectOwner dictionary = resolveObject(cache, parameters);
    Calibration calibration;
    calibration.matrix = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    const auto fill = [&](std::string_view key, std::span<double> numbers) {
        const ObjectOwner array = lookupObject(cache, dictionary.get(), key);
        const std::vector<double> found = realNumbers(cache, array.get(), numbers.size());
        if (found.size() == numbers.size()) {
            std::ranges::copy(found, numbers.begin());
        }
    };
    attempted([&] {
        fill("WhitePoint", calibration.white);
        fill("Matrix", calibration.matrix);
        fill("Gamma", calibration.gamma);
        const ObjectOwner gamma = lookupObject(cache, dictionary.get(), "Gamma");
        if (components == 1 && typeObject(gamma.get()) != ObjectType::null) {
            calibration.gamma[0] = realNumber(gamma.get());
        }
    });
    std::shared_ptr<const IccProfile> profile = IccProfile::calibrated(
        calibration, static_cast<std::size_t>(components), colourSpacesOf(cache).iccLibrary());
    const bool isIgnored = profile == nullptr;
    return countedSpace(components, isIgnored, std::move(profile));
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
std::span<const Object> namesIn(const Object& inks) {
    return typeObject(inks) == ObjectType::array ? std::span<const Object>(elementsObject(inks))
                                                 : std::span(&inks, 1);
}

/// As `InkMixtureFacts::names`; empty where artwork cannot hold them. "All" is no name of one among
/// others.
std::string joinedNames(DocumentCache& cache, std::span<const Object> names) {
    std::string joined;
    for (const Object& element : names) {
        const ObjectOwner name = resolveObject(cache, element);
        if (typeObject(name.get()) != ObjectType::literal) {
            return {};
        }
        const std::string_view bytes = literalObject(name.get());
        if (bytes.empty() || bytes.size() > longestInkName ||
            (bytes == "All" && names.size() > 1)) {
            return {};
        }
        appendInkName(joined, bytes);
    }
    return joined.size() <= longestNames ? joined : std::string();
}

/// [name inks alternate function ...], of Separation and DeviceN; `object` leads there.
ColourSpacePointer tintSpace(DocumentCache& cache, const Object& object,
                             std::span<const Object> elements, int depth) {
    ColourSpace space{.kind = Kind::tint};
    const ObjectOwner named = resolveObject(cache, elements[1]);
    const std::size_t inks = namesIn(named.get()).size();
    space.base = parseSpace(cache, elements[2], depth + 1);
    space.function = readFunction(cache, elements[3]);
    if (inks == 0 || inks > mostComponents || space.base == nullptr ||
        space.base->components == 0 || space.function == nullptr ||
        space.function->inputs() != inks) {
        return nullptr;
    }
    space.components = static_cast<std::int32_t>(inks);
    space.inkNames = joinedNames(cache, namesIn(named.get()));
    const std::vector<std::string_view> names = inkNames(space.inkNames);
    if (!names.empty()) {
        space.description = sharedObject(object);
        space.isUnprinted =
            std::ranges::all_of(names, [](std::string_view name) { return name == "None"; });
        if (names.size() == 1) {
            space.ink = inkOf(names.front(), space);
        }
    }
    return std::make_shared<ColourSpace>(std::move(space));
}

ColourSpacePointer parseAnew(DocumentCache& cache, const Object& object, int depth) {
    const ObjectOwner space = resolveObject(cache, object);
    if (typeObject(space.get()) == ObjectType::literal) {
        return colourSpacesOf(cache).named(literalObject(space.get()));
    }
    if (typeObject(space.get()) != ObjectType::array || sizeObject(space.get()) < 1) {
        return nullptr;
    }
    const std::span<const Object> elements = elementsObject(space.get());
    const ObjectOwner familyName = resolveObject(cache, elements[0]);
    const std::string_view family = literalObject(familyName.get());
    if (family == "ICCBased" && elements.size() >= 2) {
        const std::int32_t number = referenced(elements[1]).number;
        const auto read = [&] { return profileSpace(cache, elements[1], depth); };
        return number == 0 ? read() : colourSpacesOf(cache).numbered(number, read);
    }
    if ((family == "CalGray" || family == "CalRGB") && elements.size() >= 2) {
        return calibratedSpace(cache, elements[1], family == "CalGray" ? 1 : 3);
    }
    if (family == "Lab" && elements.size() >= 2) {
        return labSpace(cache, elements[1]);
    }
    if ((family == "Indexed" || family == "I") && elements.size() >= 4) {
        return indexedSpace(cache, elements, depth);
    }
    if ((family == "Separation" || family == "DeviceN") && elements.size() >= 4) {
        return tintSpace(cache, object, elements, depth);
    }
    if (family == "Pattern" && elements.size() >= 2) {
        ColourSpace pattern{.kind = Kind::pattern, .components = 0};
        pattern.base = parseSpace(cache, elements[1], depth + 1);
        return std::make_shared<ColourSpace>(std::move(pattern));
    }
    return colourSpacesOf(cache).named(family);
}

ColourSpacePointer parseSpace(DocumentCache& cache, const Object& object, int depth) {
    if (depth > deepestSpace) {
        return nullptr;
    }
    const std::int32_t number = referenced(object).number;
    return number == 0 ? parseAnew(cache, object, depth)
                       : colourSpacesOf(cache).numbered(
                             number, [&] { return parseAnew(cache, object, depth); });
}

} // namespace

ColourSpacePointer namedColourSpace(std::string_view name) {
    const bool hasProfile = name.starts_with("Cal");
    if (name == "DeviceGray" || name == "G" || name == "CalGray") {
        return countedSpace(1, hasProfile);
    }
    if (name == "DeviceRGB" || name == "RGB" || name == "CalRGB") {
        return countedSpace(3, hasProfile);
    }
    if (name == "DeviceCMYK" || name == "CMYK") {
        return countedSpace(4, false);
    }
    if (name == "Pattern") {
        return std::make_shared<ColourSpace>(ColourSpace{.kind = Kind::pattern, .components = 0});
    }
    return nullptr;
}

std::vector<std::uint8_t> tableBytes(DocumentCache& cache, const Object& object) {
    const ObjectOwner lookup = resolveObject(cache, object);
    if (typeObject(lookup.get()) == ObjectType::stream) {
        return streamBytes(cache, lookup.get(), longestTable);
    }
    if (typeObject(lookup.get()) == ObjectType::block) {
        const auto bytes = blockObject(lookup.get());
        std::vector<std::uint8_t> table;
        std::ranges::transform(bytes, std::back_inserter(table), std::to_integer<std::uint8_t>);
        return table;
    }
    const std::string_view text = textObject(lookup.get());
    return {text.begin(), text.end()};
}

ColourSpacePointer deviceColourSpace(std::int32_t components) {
    return countedSpace(components, false);
}

ColourSpacePointer readColourSpace(DocumentCache& cache, const Object& object) {
    return parseSpace(cache, object, 0);
}

} // namespace corvane
