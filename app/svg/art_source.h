// Which bytes of the page or of a form made an object, as an attribute: "start end ordinal base
// content"; and the ids that say the ordinal alone.
#pragma once

#include "app/artwork/provenance.h"
#include "app/svg/sink.h"
#include "host/artwork.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

/// These stand for what masks and tiles of patterns hold, which has no place among the objects of a
/// page.
inline constexpr std::int32_t maskContent = -1;
inline constexpr std::int32_t tileContent = -2;

/// Writes ` id="p1"`, or, of what a form paints, ` id="f3p1"`: the form's content and the number of
/// the shape in it, from 1. Of what was opened that is the ordinal and 1, because shapes are
/// written in the order of painting and clips have ids of their own.
void writeShapeId(TextOutput&, std::int32_t content, std::uint32_t number);

/// What tells sources of one page from those of another: the last 16 bits of the digest of the page
/// that the artwork was opened from; nothing where it was opened from none.
using SourceBase = std::optional<std::uint16_t>;
SourceBase sourceBase(const Provenance&);

/// Writes ` name="start end ordinal base"`, the base in four hexadecimal digits; of what a form
/// paints the content behind it.
void writeArtSource(TextOutput&, std::string_view name, const ArtSource&, SourceBase);

/// Nothing where the text has another form or another base, or the bytes end before they start.
std::optional<ArtSource> parseArtSource(std::string_view text, SourceBase);

/// The source that the id of a shape tells: its ordinal. Nothing where the writer gives no such id.
std::optional<ArtSource> sourceOfId(std::string_view id);

} // namespace corvane
