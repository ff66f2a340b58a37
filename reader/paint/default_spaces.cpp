#include "reader/paint/default_spaces.h"

#include "reader/page/followed_digest.h"
#include "reader/paint/colour_space_cache.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

#include <algorithm>
#include <string_view>

namespace corvane {

namespace {

using Kind = ColourSpace::Kind;

struct Default {
    std::string_view key;
    Kind device;
    std::int32_t components;
};
constexpr std::array defaults = {Default{"DefaultGray", Kind::gray, 1},
                                 Default{"DefaultRGB", Kind::rgb, 3},
                                 Default{"DefaultCMYK", Kind::cmyk, 4}};

bool mayStand(const ColourSpace& space, const Default& device) {
    const bool isOfKind =
        space.kind != Kind::lab && space.kind != Kind::indexed && space.kind != Kind::pattern;
    return isOfKind && space.components == device.components;
}

/// Whether its colours look as those of the device do, and nothing of it is lost.
bool isDevice(const ColourSpace& space, const Default& device) {
    return space.kind == device.device && space.profile == nullptr && !space.hasProfile;
}

} // namespace

ColourSpacePointer DefaultSpaces::of(ColourSpace::Kind device) const {
    const auto index = static_cast<std::size_t>(device);
    return index < spaces.size() ? spaces[index] : nullptr;
}

void feedDefaults(Followed& followed, const DefaultSpaces& set) {
    for (std::size_t i = 0; i < defaults.size(); ++i) {
        if (set.spaces[i] != nullptr) {
            followed.root(set.objects[i].get());
        }
    }
}

bool DefaultSpaceSets::haveAny(ColourSpace::Kind device) const {
    const auto index = static_cast<std::size_t>(device);
    return index < any_.size() && any_[index];
}

std::size_t DefaultSpaceSets::numberOf(DefaultSpaces set) {
    const auto [known, isNew] = numbers_.try_emplace(set.spaces, sets_.size());
    if (isNew) {
        for (std::size_t i = 0; i < any_.size(); ++i) {
            any_[i] = any_[i] || set.spaces[i] != nullptr;
        }
        sets_.push_back(std::move(set));
    }
    return known->second;
}

/// Device spaces within a default space are those of the device: so none is within itself.
std::size_t DefaultSpaceSets::read(DocumentCache& cache, const Object& dictionary,
                                   std::size_t outer) {
    DefaultSpaces set;
    for (std::size_t i = 0; i < defaults.size(); ++i) {
        const Object entry = findEntry(cache, dictionary, defaults[i].key);
        ColourSpacePointer space;
        if (typeObject(entry) != ObjectType::null) {
            attempted([&] { space = readColourSpace(cache, entry); });
        }
        if (space == nullptr || !mayStand(*space, defaults[i])) {
            set.spaces[i] = sets_[outer].spaces[i];
            set.objects[i] = sharedObject(sets_[outer].objects[i].get());
        } else if (!isDevice(*space, defaults[i])) {
            set.spaces[i] = std::move(space);
            set.objects[i] = sharedObject(entry);
        }
    }
    return numberOf(std::move(set));
}

std::size_t DefaultSpaceSets::under(DocumentCache& cache, const Object& resources,
                                    std::size_t outer) {
    ObjectOwner dictionary;
    attempted([&] { dictionary = lookupObject(cache, resources, "ColorSpace"); });
    if (typeObject(dictionary.get()) != ObjectType::dictionary ||
        std::ranges::all_of(defaults, [&](const Default& each) {
            return typeObject(findEntry(cache, dictionary.get(), each.key)) == ObjectType::null;
        })) {
        return outer;
    }
    const std::pair key(outer, dictionary->data);
    if (const auto known = known_.find(key); known != known_.end()) {
        return known->second;
    }
    const std::size_t number = read(cache, dictionary.get(), outer);
    known_.emplace(key, number);
    held_.push_back(std::move(dictionary));
    return number;
}

DefaultSpacesScope::DefaultSpacesScope(DocumentCache& cache, const Object& resources, bool inherits)
    : former_(colourSpacesOf(cache).defaults()) {
    if (rules().profile != Profile::extended) {
        return;
    }
    DefaultSpaceSets& sets = former_.sets;
    sets.inForce_ = 0;
    const std::size_t outer = inherits ? former_.number : 0;
    sets.inForce_ = typeObject(resources) == ObjectType::dictionary
                        ? sets.under(cache, resources, outer)
                        : outer;
}

} // namespace corvane
