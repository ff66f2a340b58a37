// What art of each kind can have. Code that treats kinds differently asks here, or has a switch
// that names every kind.
#pragma once

#include "host/artwork.h"

namespace corvane {

struct ArtTraits {
    bool known = false;     ///< there can be art of this kind
    bool holdsArt = false;  ///< it has children, if only of some kinds
    bool isOutline = false; ///< it has segments, the flags of a path, and a style
};

constexpr ArtTraits artTraits(ArtKind kind) {
    switch (kind) {
    case ArtKind::unknown:
        return {};
    case ArtKind::group:
    case ArtKind::compound:
        return {.known = true, .holdsArt = true};
    case ArtKind::path:
        return {.known = true, .isOutline = true};
    case ArtKind::text:
    case ArtKind::placed:
        return {.known = true};
    }
    return {}; // a number from outside
}

/// Whether art of kind `held` goes into art of kind `holder`.
constexpr bool canHold(ArtKind holder, ArtKind held) {
    return holder == ArtKind::compound ? held == ArtKind::path : artTraits(holder).holdsArt;
}

} // namespace corvane
