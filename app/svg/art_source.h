// Which bytes of the page made an object, as an attribute: "start end ordinal", decimal; and the
// ids that say the ordinal alone.
#pragma once

#include "app/artwork/provenance.h"
#include "app/svg/sink.h"
#include "host/artwork.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

/// Ids of shapes: this and their number, from 1. On a page that was opened that is the ordinal and
/// 1, because shapes are written in the order of painting and clips have ids of their own.
inline constexpr std::string_view shapeIdPrefix = "p";
/// Those of shapes in patterns, which are painted in no order.
inline constexpr std::string_view tileIdPrefix = "t";

/// What tells sources of one page from those of another: the last 16 bits of the digest of the page
/// that the artwork was opened from; nothing where it was opened from none.
using SourceBase = std::optional<std::uint16_t>;
SourceBase sourceBase(const Provenance&);

/// Writes ` name="start end ordinal base"`, the base in four hexadecimal digits.
void writeArtSource(TextOutput&, std::string_view name, const ArtSource&, SourceBase);

/// Nothing where the text has another form or another base, or the bytes end before they start.
std::optional<ArtSource> parseArtSource(std::string_view text, SourceBase);

/// The source that the id of a shape tells: its ordinal. Nothing where the writer gives no such id.
std::optional<ArtSource> sourceOfId(std::string_view id);

} // namespace corvane
