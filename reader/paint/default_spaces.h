// Default colour spaces: the spaces by which a content's device colours are seen (PDF Reference,
// 4.5.4, "Default Color Spaces").
#pragma once

#include "objects/object.h"
#include "reader/paint/colour_space.h"

#include <array>
#include <cstddef>
#include <map>
#include <utility>
#include <vector>

namespace corvane {

/// In the order of `ColourSpace::Kind`: of gray, RGB and CMYK.
struct DefaultSpaces {
    std::array<ColourSpacePointer, 3> spaces; ///< null: the device's own look
    std::array<ObjectOwner, 3> objects;       ///< that describe them

    /// What stands for that space; null for the device's own look and for all other spaces.
    ColourSpacePointer of(ColourSpace::Kind device) const;
};

class Followed;

/// Feeds a digest with what they are; nothing where all look as those of the device.
void feedDefaults(Followed& followed, const DefaultSpaces& defaults);

/// All that the contents of a file name, and those of the content that is being read.
class DefaultSpaceSets {
public:
    DefaultSpaceSets() { numberOf({}); }

    const DefaultSpaces& inForce() const { return sets_[inForce_]; }
    /// Tells sets apart; 0: all device spaces look as those of the device.
    std::size_t number() const { return inForce_; }
    const std::vector<DefaultSpaces>& all() const { return sets_; }
    /// Whether anything stands for that space in any content that was read.
    bool haveAny(ColourSpace::Kind device) const;

private:
    friend class DefaultSpacesScope;

    std::size_t under(DocumentCache& cache, const Object& resources, std::size_t outer);
    std::size_t read(DocumentCache& cache, const Object& dictionary, std::size_t outer);

    std::size_t numberOf(DefaultSpaces set);

    std::vector<DefaultSpaces> sets_;
    std::map<std::array<ColourSpacePointer, 3>, std::size_t> numbers_;
    std::array<bool, 3> any_{};
    std::size_t inForce_ = 0;
    /// By the set around a content and where its "ColorSpace" dictionary lies.
    std::map<std::pair<std::size_t, std::uint32_t>, std::size_t> known_;
    std::vector<ObjectOwner> held_; ///< those dictionaries: nothing takes their place in memory
};

/// While a content is read, those of its resources are in force, each over that of the content
/// around it. Spaces that may not be defaults (Lab, Indexed, Pattern), that have another number of
/// components, or that cannot be read are ignored. In the original profile there are none.
class DefaultSpacesScope {
public:
    /// `inherits`: what the resources do not name is as in the content around it.
    DefaultSpacesScope(DocumentCache& cache, const Object& resources, bool inherits);
    DefaultSpacesScope(const DefaultSpacesScope&) = delete;
    DefaultSpacesScope& operator=(const DefaultSpacesScope&) = delete;

    /// Whether others are in force than before.
    bool isOther() const { return former_.sets.inForce_ != former_.number; }

private:
    /// Comes back into force, also where reading the spaces raises.
    struct Former {
        explicit Former(DefaultSpaceSets& all) : sets(all), number(all.inForce_) {}
        ~Former() { sets.inForce_ = number; }
        Former(const Former&) = delete;
        Former& operator=(const Former&) = delete;

        DefaultSpaceSets& sets;
        std::size_t number;
    };

    Former former_;
};

} // namespace corvane
