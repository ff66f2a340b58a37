// Kinds of damage in a file that reading mends, and how often each was met.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace corvane {

/// What was found wrong and mended. Numbers stay; new kinds come behind the last. From `pageNode`
/// on, each concerns one object, and objects are counted.
enum class Mend : std::int32_t {
    header = 0,         ///< missing, or behind the first bytes of the file
    crossReference = 1, ///< objects were found by searching the file
    trailer = 2,        ///< none leads to a catalog: the catalog was found by searching
    pages = 3,          ///< the catalog leads to no page: pages were found by searching
    pageNode = 4,       ///< a node of the page tree is no node and no page, or leads back
    streamLength = 5,   ///< Length is missing or wrong
    objectEnd = 6,      ///< "endobj" is missing
    syntax = 7,         ///< words that mean nothing, keys that are no names, brackets without end
    lostObject = 8,     ///< cannot be read and is taken as null
    pageValue = 9,      ///< a box, a rotation or a unit of the page that is none
};
inline constexpr std::size_t mendKinds = 10;
static_assert(static_cast<std::size_t>(Mend::pageValue) + 1 == mendKinds);

using MendCounts = std::array<std::int32_t, mendKinds>;

} // namespace corvane
