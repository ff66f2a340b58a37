// A line of text under construction.
#pragma once

#include "host/matrix.h"

#include <cstdint>

namespace corvane {

/// What is shown next belongs to the line if it goes on where that ends.
struct OpenLine {
    bool isOpen = false;
    RealMatrix matrix;      ///< as the host has it
    RealMatrix back;        ///< its inverse
    double end = 0;         ///< where the last glyph ends, in the line's space
    double accent = 0;      ///< how wide the last glyph is, if the letter may stand below it
    double index = 0;       ///< how wide the last run is, if that is raised or lowered
    double modelEnd = 0;    ///< where the runs of the art end, whose numbers are 16.16
    double modelReach = 0;  ///< the farthest end of a letter in them
    double size = 0;        ///< of the last run
    double spacing = 0;     ///< of the letters that were shown last, in ems
    bool isEmpty = true;    ///< it has no run yet
    bool endsBlank = false; ///< the last character is a blank
    bool isVertical = false;
    // Of what may come before its first run, at the origin of the line's space.
    bool takesBefore = false;
    bool startsBlank = false;   ///< the first character is a blank
    bool runsFromRight = false; ///< it has letters of scripts that do
    double firstSize = 0;       ///< of the first run
    double drift = 0;           ///< of runs from their places, by what came before them
};

} // namespace corvane
