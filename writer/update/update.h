// Saving: one page of a file is replaced by what is appended to the file; nothing before it
// changes.
#pragma once

#include "host/extension.h"
#include "reader/document/cache.h"
#include "reader/page/page_base.h"
#include "reader/page/page_record.h"
#include "runtime/warning.h"
#include "writer/art/drawn_looks.h"
#include "writer/layer/saved_layers.h"
#include "writer/mend/mend_plan.h"
#include "writer/page/carried_entries.h"
#include "writer/page/page_geometry.h"
#include "writer/page/page_object.h"
#include "writer/page/resource_registry.h"
#include "writer/paint/new_paints.h"
#include "writer/patch/page_patch.h"
#include "writer/patch/patched_streams.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

namespace corvane {

/// Appends the page in use, made from the host's artwork, and puts it on the disk; tells the host
/// extension. Where anything raises, the file is as long as before, and the code is raised again.
/// All that can refuse the save raises before anything is written.
void writeCache(DocumentCache& cache);

/// The same, but what would be appended is only counted; the file may be write-protected.
void tryCache(DocumentCache& cache);

/// Appends what mends the file, and no page; where `tries`, that is only counted.
void mendCache(DocumentCache& cache, bool tries);

// The parts of an update, for a cache whose output is an `UpdateFilter`.

/// What the trailer of an update takes over from the newest one.
struct CarriedTrailer {
    CarriedEntries entries;
    std::int32_t size = 0;    ///< 0 where it says nothing that counts
    std::int32_t section = 0; ///< number of the update's section where that is a stream; else 0
    std::optional<std::string> identifier; ///< the first half of the file's
    bool isWhole = false; ///< the section names every object of the file, and no section before it
    std::set<std::int32_t> leftOut; ///< objects that a whole section does not name
};

/// A page that is patched.
struct PlannedPatch {
    PagePatch page;
    bool isNothing = false; ///< the content stays as it is
    std::vector<PatchedStream> streams;
    ResourceRegistry resources;
};

/// What a page that is drawn anew names, and the objects that are made for it.
struct DrawnPage {
    ResourceRegistry resources;
    DrawnTexts texts{resources};
    DrawnLooks looks{resources};
};

/// What is settled before the first byte is written.
struct UpdatePlan {
    /// Numbers of the objects that every update has.
    struct Numbers {
        std::int32_t content = 0;
        std::int32_t length = 0; ///< of the content
    };
    std::optional<MendPlan> mend; ///< where the host wants the file mended
    bool writesPage = true;
    std::optional<SavedLayers> layers; ///< in the extended profile
    PageGeometry geometry;
    PageFacts facts;                      ///< of the page as it will be
    std::int32_t firstNew = 0;            ///< number that the first new object gets
    std::optional<std::uint64_t> former;  ///< `WrittenDigest` of the page as it stands
    std::optional<std::uint64_t> written; ///< the same, once the page is written
    /// What the artwork was opened from; nothing where the page is drawn anew.
    std::optional<PageBase> base;
    std::optional<PageOrigin> origin;     ///< of the page that the artwork was opened from
    std::optional<std::uint64_t> artwork; ///< which opening of it that was
    /// What of another's is written over since the host insists.
    Warning overwritten = Warning::none;
    CarriedPage page;
    CarriedTrailer trailer;
    Numbers numbers;                     ///< where the page is drawn anew
    std::unique_ptr<DrawnContent> drawn; ///< there too, in the extended profile
    std::unordered_set<Art> annotations; ///< there too: art that shows those of the page
    std::unique_ptr<NewPaints> paints;   ///< there too, where the host says what gradients are
    std::optional<PlannedPatch> patch;   ///< otherwise
};

/// What the trailer takes over. Raises `range` where Root, or in the original profile Info, is no
/// reference; extended keeps those as they are.
CarriedTrailer carriedTrailer(DocumentCache& cache);

/// Keeps new objects off every number below the file's Size: objects that only readers of
/// cross-reference streams see have such numbers (PDF Reference 3.4.7), and so may references to
/// objects that are gone. A section that is a stream gets its number.
void reserveNumbers(const DocumentCache& cache, CarriedTrailer& trailer);

/// Writes the content, its length, the page and its resources to the cache's output; the length of
/// the content.
std::int64_t pageWrite(DocumentCache& cache, UpdatePlan& plan);

/// Writes the cross-reference section and the trailer, in the form of the section before them: a
/// table or a stream. Behind a table that names a stream for hidden objects (XRefStm) a table,
/// which names none. A whole section is a stream where objects are in object streams. The offset of
/// the section.
std::int32_t updateWrite(DocumentCache& cache, const CarriedTrailer& trailer);

/// What ends an update whose section stands at `section`, and makes it count.
std::string updateEnd(std::int32_t section);

} // namespace corvane
