// A text object as `text` elements: one for each line.
#pragma once

#include "app/svg/art_source.h"
#include "app/svg/paint/paint_servers.h"
#include "app/svg/path_data.h"
#include "app/svg/sink.h"
#include "app/svg/text/letter_layout.h"
#include "host/appearance.h"

#include <cstdint>
#include <string>

namespace corvane {

/// What an element of text needs from around it.
struct TextPlace {
    PageCorner corner;
    SourceBase base;
    std::int32_t content = 0; ///< of the form that it is in; 0: of none
    std::uint32_t number = 1; ///< of the first run, among all shapes of that content
    std::string clip;         ///< reference to what clips the element; empty: nothing
    bool hidden = false;      ///< nothing is to be seen of it
    bool isClip = false;      ///< within a `clipPath`: it is no object, and not painted
    /// Runs that look the same may be one element; not of what is compared as a whole when it is
    /// saved.
    bool joinsRuns = false;
    Appearance appearance = {}; ///< without a mask
    LetterRule letters = {};
};

/// Writes the elements of a text object that has runs; what they are painted with must have been
/// written. Letters stand where the font sets them, and `dx` says what differs, but where each gets
/// its place and all widths are known.
void writeText(TextOutput&, const PaintServers&, Art text, const TextPlace&);

} // namespace corvane
