// Mixtures of inks as the text of an attribute: "Cyan .5; PANTONE 123 C .25" (docs/svg.md, "Colours
// of inks").
//
// A name is UTF-8 as it is read. What could be taken for something else, or is no text, is a byte
// as "%3B": percent signs, semicolons, control characters, bytes that are not UTF-8, and blanks
// that begin or end a name or follow one another.
#pragma once

#include "app/artwork/paint/paint.h"
#include "app/svg/sink.h"

#include <optional>
#include <string_view>

namespace corvane {

/// Writes ` name="inks"`.
void writeInkList(TextOutput&, std::string_view name, const InkMixture&);

/// The inks in such a text, seen as `seen`; nothing where it is wrong. Tints are limited to 0 to 1.
std::optional<InkMixture> parseInkList(std::string_view text, const Colour& seen);

} // namespace corvane
