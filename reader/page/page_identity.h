// The identity of a page, by which a change by another program is noticed.
//
// A page that this program saved holds in its dictionary
//   /PieceInfo << /Corvane << /LastModified (...) /Private << /Origin <16 digits> /Page P /Content
//   C
//   >> >> >>
// Origin is the identity of the page that the saved artwork was opened from; P and C are where the
// page and its content stream stand, by the cross-reference. While both still stand there nobody
// else has replaced them, and the page keeps that identity. The identity of any other page is its
// digest.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>

namespace corvane {

inline constexpr std::string_view pieceInfoName = "Corvane"; ///< key of our record in PieceInfo

/// The identity of the page in use.
std::uint64_t identityOfPage(DocumentCache& cache);

} // namespace corvane
