// Which bytes of the page made which object of the artwork.
#pragma once

#include "runtime/charged_list.h"
#include "writer/patch/base/base_content.h"
#include "writer/patch/base/edited_artwork.h"
#include "writer/patch/compare/comparison.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace corvane {

/// A number in `ContentTrace::painted`.
using PaintedIndex = std::uint32_t;
inline constexpr PaintedIndex noSource = UINT32_MAX;

/// What is known of an object of the artwork.
struct MatchedObject {
    PaintedIndex source = noSource; ///< what made it, or its original
    bool isCopy = false;            ///< another object is the source's
    ArtDifference difference = {};  ///< from its source
};

struct Matching {
    std::vector<MatchedObject> objects; ///< of the artwork, in its order
    std::vector<EditedIndex> owners;    ///< by source: the object that it made; `noSource`: gone
};

/// Matches by source. Of several objects with one source, the first that is unchanged is the
/// source's, or else the first; the others are copies. Objects without a source are matched by the
/// number in their id, then by equal points and paint; where sources mean nothing, by these alone.
Matching matchArtwork(const BaseContent& base, const EditedArtwork& artwork, bool sourcesMeanIt);

/// The source whose bytes the object names: `noSource` where it names none of the page's.
PaintedIndex sourceOf(const BaseContent& base, const EditedObject& object);
/// The same; of text that was known again, what it is.
PaintedIndex knownSource(const BaseContent& base, const EditedObject& object);

/// How the object differs from what the source made, which is of its kind.
ArtDifference compareObject(const BaseContent& base, PaintedIndex source,
                            const EditedObject& object);

/// The art that the source made.
Art artOf(const BaseContent& base, PaintedIndex source);
/// The event of the source.
const TraceEvent& eventOf(const ContentTrace& trace, PaintedIndex source);

} // namespace corvane
