// The record that this program keeps in a page that it saved.
//
//   /PieceInfo << /Corvane << /LastModified (...) /Private <<
//     /Origin <16 digits> /Version 3    digest of the base, and the version of that digest
//     /Page 123 /Content [123 456]      places
//     /Base << /Contents ... /Resources ... /MediaBox [...] /CropBox [...] /Digest <16 digits> >>
//     /Artwork <16 digits>              which opening of the page the artwork comes from
//     /Made [12 19 24 24]               numbers of the update's new objects: from 12 to 19, and 24
//     /Layers [31 32]                   optional content groups that were made for the artwork
//     /Update <16 digits>               what was written, whatever numbers its objects got
//   >> >> >>
//
// The places are where the page and the content streams of the update stand, by the
// cross-reference; its new objects stand in front of the page. While all of them still stand there
// nobody else has replaced them, and the record speaks of this page. Contents and Resources of the
// base (reader/page/page_base.h) are as its page had them, and absent where it had none; Digest is
// that of `digestContent`. Where /Anew true stands beside them, the page had been drawn anew since
// the artwork was opened, and Origin is not the digest of that base.
//
// Former records have no Made, no Update, no Base and a single place for Content; the first ones no
// Version, which is 1 then. A page drawn from artwork that was opened from nowhere has no Origin.
#pragma once

#include "reader/document/cache.h"
#include "reader/page/page_content.h"
#include "reader/page/page_digest.h"
#include "reader/syntax/raw_entries.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace corvane {

inline constexpr std::string_view pieceInfoName = "Corvane"; ///< key of our record in PieceInfo

/// The digest of a page. Versions that later programs know are kept as they are.
struct PageOrigin {
    std::uint64_t digest = 0;
    DigestVersion version = DigestVersion::current;
};

struct PageRecord {
    std::optional<PageOrigin> origin;
    std::optional<std::uint64_t> artwork;
    std::optional<std::uint64_t> update;
    std::vector<std::int32_t> layers; ///< numbers of groups that the save made
    ObjectOwner base;                 ///< null where there is none
};

/// The record of the page in use, whose content streams are `streams`, if it speaks of this page. A
/// damaged one states nothing.
std::optional<PageRecord> recordOfPage(DocumentCache& cache, std::span<const BaseStream> streams);

/// The entries of its Base.
std::vector<RawEntry> rawBase(DocumentCache& cache);

/// Eight bytes as a number, the highest first; nothing where the object holds no eight bytes.
std::optional<std::uint64_t> eightBytes(const ObjectOwner& object);

} // namespace corvane
