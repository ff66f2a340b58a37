// Colour spaces by the names that resources give them and by their objects, each read once.
#pragma once

#include "reader/paint/colour_space.h"
#include "reader/paint/default_spaces.h"
#include "reader/paint/spaces_by_inks.h"
#include "runtime/exception.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

namespace corvane {

class ColourSpaceCache {
public:
    /// The space of that name: a device space, as the default spaces in force show it, or one of
    /// the resources in use. Null where it is unknown or of a kind that is not supported. A fault
    /// of its objects is raised again whenever the name is met; they are not read again.
    ColourSpacePointer find(DocumentCache& cache, std::string_view name);

    /// The space of the object of this number, by `read` where it is not known. Faults likewise.
    ColourSpacePointer numbered(std::int32_t number,
                                const std::function<ColourSpacePointer()>& read);

    /// The device space or pattern space of that name, as the default spaces in force show it; null
    /// for any other name.
    ColourSpacePointer named(std::string_view name) const;

    DefaultSpaceSets& defaults() { return defaults_; }

    /// What the profiles of the file share.
    const IccLibraryPointer& iccLibrary();

    /// Those with inks that were read.
    const SpacesByInks& mixing() const { return mixing_; }

private:
    struct Known {
        ColourSpacePointer space;
        Exception fault = Exception::none;
    };
    /// The spaces that one "ColorSpace" dictionary names.
    struct Category {
        ObjectOwner dictionary; ///< held, so that nothing else takes its place in memory
        std::map<std::string, Known, std::less<>> spaces;
    };

    static Known readOnce(const std::function<ColourSpacePointer()>& read);

    /// Under one set of default spaces.
    struct Spaces {
        std::unordered_map<std::uint32_t, Category> categories; ///< by where the dictionary lies
        std::unordered_map<std::int32_t, Known> numbered;
    };

    DefaultSpaceSets defaults_;
    std::unordered_map<std::size_t, Spaces> spaces_; ///< by the number of the set
    IccLibraryPointer iccLibrary_;                   ///< null: no profile was met
    SpacesByInks mixing_;
};

/// That of an open file.
ColourSpaceCache& colourSpacesOf(DocumentCache& cache);

} // namespace corvane
