// Text that clips what comes behind its text object (PDF Reference, 5.2.5).
//
// What is shown from BT to ET is one clip. So its lines are gathered, and become art at the ET: a
// clipped group whose clip is a text object, or a group of text objects.
#pragma once

#include "host/artwork.h"
#include "host/text.h"
#include "reader/text/open_line.h"
#include "runtime/memory.h"

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace corvane {

struct Interpreter;

/// A run that is kept; `run` is without its text and pieces.
struct ClipRun {
    TextRun run;
    std::string text;
    std::vector<TextPiece> pieces;
};

struct ClipLine {
    TextLine line;
    std::deque<ClipRun> runs;
};

struct ClipText {
    bool clips = false; ///< something was shown that adds to the clip
    bool hides = false; ///< and some of it is what artwork cannot hold
    OpenLine open;      ///< the last line
    std::deque<ClipLine> lines;
    std::int64_t bytes = 0; ///< of the lines
    ZoneCharge charge;      ///< of them
};

/// What the text object that ended last clips.
struct EndedText {
    bool clips = false;
    Art clip = Art::null; ///< null: a clip that no art shows
};

/// Ends the text object. What its text clips is in force from here on until `Q`. Text without a
/// letter that is seen clips nothing.
EndedText endClipText(Interpreter& interpreter);

} // namespace corvane
