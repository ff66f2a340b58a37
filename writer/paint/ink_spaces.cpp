#include "writer/paint/ink_spaces.h"

#include "host/light.h"
#include "objects/referenced.h"
#include "reader/font/font_entries.h"
#include "reader/paint/colour_space_cache.h"
#include "reader/paint/seen_colour.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/fixed.h"
#include "writer/page/needed_version.h"
#include "writer/paint/object_text.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace corvane {

namespace {

using Kind = ColourSpace::Kind;

bool looksLike(const ColourSpace& space, const InkMixtureFacts& mixture) {
    std::vector<double> tints;
    std::ranges::transform(mixture.tints, std::back_inserter(tints), realFromFixed);
    return seenColour(colourIn(space, tints)) == seenColour(mixture.seen);
}

/// What is seen, in a space that may be the alternate of one of inks.
struct Alternate {
    std::string space;
    std::vector<double> components;
    double paper = 1; ///< each component where there is no ink
};

Alternate alternateOf(DocumentCache& cache, const Colour& seen, FunctionHolder& objects) {
    const auto limited = [](std::int64_t amount) {
        return realFromFixed(static_cast<Fixed>(std::clamp<std::int64_t>(amount, 0, fixedOne)));
    };
    if (seen.kind == ColourKind::gray) {
        return {objects.spaceText(Kind::gray), {1 - limited(seen.component[0])}};
    }
    const bool isMixed =
        std::ranges::any_of(colourSpacesOf(cache).defaults().all(), [](const DefaultSpaces& each) {
            return each.of(Kind::cmyk) != nullptr;
        });
    if (seen.origin == ColourOrigin::given && !isMixed) {
        Alternate alternate{objects.spaceText(Kind::cmyk), {}, 0};
        std::ranges::transform(seen.component, std::back_inserter(alternate.components), limited);
        return alternate;
    }
    const LightLevels light = lightLevels(seen);
    return {objects.spaceText(Kind::rgb),
            {limited(light.red), limited(light.green), limited(light.blue)}};
}

/// The colour of the mixture, nearer to paper the less ink there is of all together. What is not
/// printed does not count: readers differ in what they make of it.
std::string programOf(const Alternate& alternate, std::span<const std::string_view> names,
                      std::span<const Fixed> tints) {
    double sum = 0;
    std::string program = "{ 0 ";
    for (std::size_t i = names.size(); i-- != 0;) {
        const bool isPrinted = names[i] != "None";
        sum += isPrinted ? realFromFixed(tints[i]) : 0;
        program += isPrinted ? "add " : "exch pop ";
    }
    if (sum == 0) {
        program += "pop 1 ";
    } else {
        program += numberText(sum) + "div ";
    }
    const std::string paper = numberText(alternate.paper);
    for (std::size_t i = 0; i < alternate.components.size(); ++i) {
        const bool isLast = i + 1 == alternate.components.size();
        const std::string part =
            numberText(alternate.components[i] - alternate.paper) + "mul " + paper + "add ";
        program += isLast ? part : "dup " + part + "exch ";
    }
    return program + '}';
}

std::string newSpace(DocumentCache& cache, const InkMixtureFacts& mixture,
                     FunctionHolder& objects) {
    const Alternate alternate = alternateOf(cache, mixture.seen, objects);
    const auto intervals = [](std::size_t count) {
        std::string text = "[ ";
        while (count-- != 0) {
            text += "0 1 ";
        }
        return text + "]";
    };
    const std::vector<std::string_view> inks = inkNames(mixture.names);
    std::string names;
    for (const std::string_view ink : inks) {
        names += nameText(ink) + ' ';
    }
    names = mixture.tints.size() == 1 ? "/Separation " + names : "/DeviceN [ " + names + "] ";
    const std::int32_t function =
        objects.holdStream("/FunctionType 4 /Domain " + intervals(mixture.tints.size()) +
                               " /Range " + intervals(alternate.components.size()) + "\r",
                           programOf(alternate, inks, mixture.tints));
    return "[ " + names + alternate.space + ' ' + std::to_string(function) + " 0 R ]";
}

} // namespace

void InkSpaces::readUnread(DocumentCache& cache) {
    const ObjectOwner resources(unread_.release());
    if (typeObject(resources.get()) != ObjectType::dictionary) {
        return;
    }
    const ObjectOwner spaces = entryOf(cache, resources.get(), "ColorSpace");
    if (typeObject(spaces.get()) != ObjectType::dictionary) {
        return;
    }
    const std::span<Object> entries = elementsObject(spaces.get());
    for (std::size_t i = 0; i + 1 < entries.size(); i += 2) {
        const ObjectOwner space = resolved(cache, entries[i + 1]);
        if (typeObject(space.get()) == ObjectType::array && sizeObject(space.get()) >= 4 &&
            (nameOf(elementsObject(space.get())[0]) == "DeviceN" ||
             nameOf(elementsObject(space.get())[0]) == "Separation")) {
            attempted([&] { ofResources_.add(readColourSpace(cache, entries[i + 1])); });
        }
    }
}

ColourSpacePointer InkSpaces::known(DocumentCache& cache, const InkMixtureFacts& mixture) {
    readUnread(cache);
    constexpr std::size_t mostTried = 16;
    std::vector<ColourSpacePointer> mixing;
    for (const std::span<const ColourSpacePointer> found :
         {colourSpacesOf(cache).mixing().of(mixture.names), ofResources_.of(mixture.names)}) {
        std::ranges::copy(found.first(std::min(found.size(), mostTried - mixing.size())),
                          std::back_inserter(mixing));
    }
    const auto like = std::ranges::find_if(
        mixing, [&](const ColourSpacePointer& space) { return looksLike(*space, mixture); });
    return like != mixing.end() ? *like : mixing.empty() ? nullptr : mixing.front();
}

ObjectIdentifier InkSpaces::find(DocumentCache& cache, const InkMixtureFacts& mixture,
                                 FunctionHolder& objects) {
    if (const ColourSpacePointer space = known(cache, mixture)) {
        const Object& description = space->description.get();
        if (typeObject(description) == ObjectType::reference) {
            return referenced(description);
        }
        if (const auto copy = copied_.find(space); copy != copied_.end()) {
            return copy->second;
        }
        if (std::optional<std::string> text = objectText(description)) {
            return copied_[space] = {objects.hold(std::move(*text)), 0};
        }
    }
    needVersion(Feature::profile);
    return {objects.hold(newSpace(cache, mixture, objects)), 0};
}

ObjectIdentifier InkSpaces::of(DocumentCache& cache, PaintSource mixture, FunctionHolder& objects) {
    const auto found = found_.find(mixture);
    if (found != found_.end()) {
        return found->second;
    }
    InkMixtureFacts facts;
    callHost(slot::getInkMixture, mixture, &facts);
    return found_[mixture] = find(cache, facts, objects);
}

} // namespace corvane
