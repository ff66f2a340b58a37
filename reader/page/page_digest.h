// A digest of what a page consists of, by which a later change is noticed.
#pragma once

#include "reader/document/cache.h"
#include "reader/page/page_content.h"

#include <cstdint>
#include <span>

namespace corvane {

/// Artwork and saved pages remember digests, so the rule by which one is made stays as it is: a
/// better rule is a new version.
///
/// 1: of the page's dictionary but for PieceInfo and LastModified, of what it inherits, and of its
/// content streams as they stand in the file, in order; one that comes again counts by its place.
/// References count by their numbers.
///
/// 2: the same, and of all that Resources, Group and Contents lead to by reference, the data of
/// streams as they stand in the file. Each object is read once; references to it count by the order
/// in which they were met. Pages, annotations and notes are left out. Past `budget::digestObjects`
/// and `budget::digestBytes` references count by themselves.
///
/// 3: the same, but for what layers of the file say: they are named and shown otherwise without any
/// change of the page.
enum class DigestVersion : std::int32_t { page = 1, drawn = 2, layered = 3, current = layered };

std::uint64_t digestPage(DocumentCache& cache, std::span<const ObjectOwner> streams,
                         DigestVersion version = DigestVersion::current);

/// A digest of content of the page in use, of its Rotate, and of all that the content's resources
/// lead to, as that version has it; version 1 as 2.
std::uint64_t digestContent(DocumentCache& cache, std::span<const BaseStream> streams,
                            const Object& resources,
                            DigestVersion version = DigestVersion::current);

} // namespace corvane
