// Which bytes of the page made an object, as an attribute: "start end ordinal", decimal.
#pragma once

#include "app/svg/sink.h"
#include "host/artwork.h"

#include <optional>
#include <string_view>

namespace corvane {

/// Writes ` name="start end ordinal"`.
void writeArtSource(TextOutput&, std::string_view name, const ArtSource&);

/// Nothing where the text has another form, or the bytes end before they start.
std::optional<ArtSource> parseArtSource(std::string_view text);

} // namespace corvane
