// Colour spaces of page content: what the numbers of `sc` and `scn` mean.
//
// The host knows gray and process colour. Colours of a profile are red, green and blue as they are
// seen, unless the profile changes next to nothing or cannot be read: then they count as those of
// the device. A space that names inks is shown through its alternate. PDF Reference, 4.5.
#pragma once

#include "codecs/icc/icc_profile.h"
#include "host/artwork.h"
#include "objects/object.h"
#include "reader/document/cache.h"
#include "reader/paint/function.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

struct ColourSpace {
    enum class Kind { gray, rgb, cmyk, lab, indexed, tint, pattern };

    Kind kind = Kind::gray;
    std::int32_t components = 1; ///< operands of a colour; 0 for patterns
    bool hasProfile = false;     ///< that cannot be read: its colours are shown as a device's
    /// Of gray, RGB and CMYK: what its colours look like; null: what those of the device do.
    std::shared_ptr<const IccProfile> profile = nullptr;

    /// Of `indexed` and `tint`: the space that their colours are given in. Of `pattern`: that of
    /// the colours of patterns without colours of their own; null: it has none.
    std::shared_ptr<const ColourSpace> base = nullptr;
    /// Of `indexed`: the components of each colour, a byte each.
    std::vector<std::uint8_t> table = {};
    /// Of `tint`: from amounts of its inks to components of the base.
    FunctionPointer function = nullptr;
    /// Of `tint`: the custom colour of which all of its tints are tints, if there is one.
    std::optional<CustomColour> ink = {};
    /// Of `tint` with several inks: their names, as `InkMixtureFacts::names`; empty where one is no
    /// name that artwork can hold.
    std::string inkNames = {};
    /// Of `tint`: all of its inks are "None", so nothing is painted in it.
    bool isUnprinted = false;
    /// What describes a space with such names: a reference, or the array itself.
    ObjectOwner description = {};
    /// Of `lab`: the ranges of a and b.
    double range[4] = {-100, 100, -100, 100};
};

using ColourSpacePointer = std::shared_ptr<const ColourSpace>;

/// The device space of that name, seen without a default space, or the pattern space; null for any
/// other name.
ColourSpacePointer namedColourSpace(std::string_view name);

/// The device space of so many components: 1, 3 or 4; null for any other number.
ColourSpacePointer deviceColourSpace(std::int32_t components);

/// The space that an object describes, under the default spaces in force; those of objects with a
/// number are read once for a file.
/// Null where it is of a kind that is not supported. Raises what reading its objects raises.
ColourSpacePointer readColourSpace(DocumentCache& cache, const Object& object);

/// The bytes of an indexed space's table, a string or a stream.
std::vector<std::uint8_t> tableBytes(DocumentCache& cache, const Object& object);

/// Work of one colour, in steps of a few nanoseconds.
std::int64_t costOf(const ColourSpace& space);

/// The colour that a space begins with.
Colour initialColour(const ColourSpace& space);

/// The colour of these components; missing ones count as 0, further ones are ignored.
Colour colourIn(const ColourSpace& space, std::span<const double> components);

} // namespace corvane
