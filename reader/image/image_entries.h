// The entries of an image's dictionary.
#pragma once

#include "objects/object.h"
#include "reader/document/cache.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace corvane {

/// An entry by its name, and by the short one that inline images have for it (null: none).
struct ImageKey {
    std::string_view full;
    std::string_view abbreviated = {};
};

namespace imageKey {
inline constexpr ImageKey width{"Width", "W"};
inline constexpr ImageKey height{"Height", "H"};
inline constexpr ImageKey bits{"BitsPerComponent", "BPC"};
inline constexpr ImageKey space{"ColorSpace", "CS"};
inline constexpr ImageKey decode{"Decode", "D"};
inline constexpr ImageKey isMask{"ImageMask", "IM"};
inline constexpr ImageKey filter{"Filter", "F"};
inline constexpr ImageKey parameters{"DecodeParms", "DP"};
inline constexpr ImageKey mask{"Mask"};
inline constexpr ImageKey softMask{"SMask"};
inline constexpr ImageKey softMaskInData{"SMaskInData"};
inline constexpr ImageKey matte{"Matte"};
} // namespace imageKey

class ImageEntries {
public:
    /// `object`: a stream, or the dictionary of an inline image; it must outlive the entries.
    ImageEntries(DocumentCache& cache, const Object& object)
        : cache_(cache), object_(object), isInline_(typeObject(object) != ObjectType::stream) {}

    DocumentCache& cache() const { return cache_; }
    const Object& object() const { return object_; }
    bool isInline() const { return isInline_; }

    /// Resolved; null where it is missing.
    ObjectOwner find(ImageKey key) const;
    /// As it stands; not retained.
    Object raw(ImageKey key) const;
    /// None where it is no number.
    std::optional<std::int32_t> integer(ImageKey key) const;
    bool boolean(ImageKey key) const;
    std::vector<double> numbers(ImageKey key) const;

private:
    DocumentCache& cache_;
    const Object& object_;
    bool isInline_;
};

} // namespace corvane
