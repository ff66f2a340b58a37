// The identity of a page, by which a change by another program is noticed.
//
// A page that this program saved holds in its dictionary
//   /PieceInfo << /Corvane << /LastModified (...) /Private << /Origin <16 digits> /Version V
//   /Page P /Content C >> >> >>
// Origin is the identity of the page that the saved artwork was opened from. V is the version of
// that digest, as far as it is known; a record without it is of version 1. P and C are where the
// page and its content stream stand, by the cross-reference. While both still stand there nobody
// else has replaced them, and the page keeps that identity. The identity of any other page is its
// digest.
#pragma once

#include "reader/document/cache.h"
#include "reader/page/page_digest.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

inline constexpr std::string_view pieceInfoName = "Corvane"; ///< key of our record in PieceInfo

/// The identity of a page. Versions that later programs know are kept as they are.
struct PageOrigin {
    std::uint64_t digest = 0;
    DigestVersion version = DigestVersion::current;
};

/// The identity of the page in use.
PageOrigin identityOfPage(DocumentCache& cache);

/// The identity of the page in use, if artwork that was opened from a page with the digest `opened`
/// is of this page. Digests of all versions count, so older artwork keeps its page.
std::optional<PageOrigin> identityAs(DocumentCache& cache, std::uint64_t opened);

} // namespace corvane
