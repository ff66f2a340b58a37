// The base of a page: the content that artwork was opened from, to which a save makes its patches.
//
// It is the page as it stands, or, on a page that was saved, what the page was before: the record
// of the page keeps its Contents and Resources, and the file holds all of the old bytes.
#pragma once

#include "reader/document/cache.h"
#include "reader/page/page_content.h"
#include "reader/page/page_digest.h"
#include "reader/page/page_matrix.h"
#include "reader/syntax/raw_entries.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace corvane {

struct PageBase {
    std::uint64_t digest = 0; ///< of the page, when artwork was opened from it
    DigestVersion version = DigestVersion::current;
    bool isStanding = true; ///< the page as it stands
    /// False: the page was drawn anew before we kept its base, so this is not the content that the
    /// artwork comes from.
    bool isAsOpened = true;
    std::vector<BaseStream> streams; ///< of its content, in order
    ObjectOwner resources;           ///< its own or inherited: in which content looks up names
    Box mediaBox;
    Box cropBox;       ///< cut to the media box
    PageMatrix matrix; ///< how it lay on the artboard, by those boxes
    /// Where the file states them; nothing where the page has none of its own.
    std::optional<RawEntry> contentsEntry;
    std::optional<RawEntry> resourcesEntry;
    std::optional<std::uint64_t> contentDigest; ///< `digestContent`, where it was made already
};

/// The base of artwork that was opened from a page with the digest `opened`, if the page in use is
/// that page: it stands as it was then, or was only saved by us since. Nothing otherwise.
std::optional<PageBase> baseOf(DocumentCache& cache, std::uint64_t opened);

/// The page in use as it stands, whatever artwork was opened from.
PageBase standingPage(DocumentCache& cache);

/// Which artwork the page in use was saved from last; nothing where the record does not say it, or
/// another program changed the page since.
std::optional<std::uint64_t> lastArtwork(DocumentCache& cache);
/// What this save wrote of the page, as `WrittenDigest` says it.
std::optional<std::uint64_t> lastUpdate(DocumentCache& cache);
/// The optional content groups that this save made, by their numbers.
std::vector<std::int32_t> lastLayers(DocumentCache& cache);

} // namespace corvane
