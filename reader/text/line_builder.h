// Glyphs that are shown become runs of lines.
//
// Each run is what one operator shows, or a part of it: a wide gap ends the line. What is shown
// where the open line ends goes on with that line, if nothing was painted in between.
#pragma once

#include "host/text.h"
#include "reader/content/state.h"
#include "reader/font/page_font.h"
#include "reader/text/line_target.h"
#include "runtime/memory.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace corvane {

/// A glyph, where the pen shows it and how far it moves the pen then, both in text space, and its
/// number among the elements of the array that is shown.
struct PenGlyph {
    ShownGlyph glyph;
    double pen = 0;
    double advance = 0;
    std::int32_t element = 0;
};

/// Whether the spacing of letters is as wide as a blank.
bool spacesWidely(const TextState& text);

/// Whether a number of an array, in thousandths of an em, leads from one letter to one that stands
/// left of it.
bool leadsBack(double number);

class LineBuilder {
public:
    /// `space` leads from text space, where the text begins, to the artboard; it has an inverse.
    /// Of vertical text the pen goes up and down.
    LineBuilder(LineTarget& target, const GraphicsState& state, const RealMatrix& space,
                const PathStyle& style);

    void add(const PenGlyph& placed);
    /// Glyphs of which each stands left of the one shown before, but for numbers among them: they
    /// become lines from the left. The pen comes to rest at `pen`, behind the element `end`.
    /// Nothing is added, and the answer is false, where they do not stand in lines.
    bool addFromRight(std::span<const PenGlyph> glyphs, double pen, std::int32_t end);
    /// Whether what is shown from there on may stand before the first letter of the open line.
    bool mayComeBefore(double pen);
    /// Glyphs that end where the open line begins, of scripts from the right, or in a line of such:
    /// programs show the words of those so, in the order of reading. Nothing is added, and the
    /// answer is false, where they stand elsewhere.
    bool addBefore(std::span<const PenGlyph> glyphs, double pen, std::int32_t end);
    /// Glyphs whose spacing of letters makes words of them, as some programs write: blanks take its
    /// place. Nothing is added, and the answer is false, where letters are spaced, or nothing is.
    bool addSpacedWords(std::span<const PenGlyph> glyphs);
    /// The pen comes to rest, behind the last element: the last run is given to the host.
    void endAt(double pen, std::int32_t element);

private:
    double along(double pen) const { return origin_ + pen * stretch_; }
    RealPoint placeOf(double pen) const;
    RealPoint onLine(double pen) const;
    bool goesOn(double pen);
    double letterSpacing() const;
    bool makesWords(std::span<const PenGlyph> glyphs);
    bool isWithinReach(double at, double size, double room) const;
    bool isOnLine(const RealPoint& at) const;
    bool isRaised(const RealPoint& at) const;
    bool isFarEnd(std::span<const PenGlyph> standing) const;
    void openLine(const TextLine& line);
    void beginLine(double pen);
    void beginRun(double pen, std::int32_t element);
    void startRun(double pen, std::int32_t element);
    ShownPart partUpTo(double pen, std::int32_t element);
    void endRun(double pen, std::int32_t element);
    TextLine lineSoFar() const;
    void endRunBefore(const OpenLine& former, double pen, std::int32_t element);
    void addGap(double at);
    double addStanding(std::span<const PenGlyph> standing);
    void addWhole(std::span<const PenGlyph> shown, std::span<const PenGlyph> standing, double pen,
                  std::int32_t end);
    void append(std::string_view text, double at, double advance, std::int32_t face);

    LineTarget& target_;
    OpenLine& open_;
    const TextState& state_;
    const RealMatrix space_;
    const bool isVertical_;
    RealMatrix direction_; // of a line, without its origin
    double stretch_ = 1;   // from the pen to the line's space
    double origin_ = 0;    // in the line's space: where the pen is 0
    double ownRise_ = 0;   // that the state gives letters
    TextRun run_;          // without its text
    std::string text_;
    std::vector<TextPiece> pieces_;
    ZoneCharge charge_; // of the last two
    bool isInRun_ = false;
    double runPen_ = 0;   // where the run begins
    double runStart_ = 0; // in the line's space
    std::int32_t runElement_ = 0;
};

} // namespace corvane
