// The faces of the fonts that are made of a page font: which glyph goes into which.
//
// In one face a text means one glyph. The first glyph for a text goes into face 0; another one for
// the same text goes into the next face that has none. A face with a ligature "fi" would also join
// the glyphs "f" and "i" where the page shows them one by one: one of them goes into another face
// there.
//
// Marks of scripts from the right have faces of their own, from face 1 on: programs that turn a
// line round leave a mark behind its letter, and so would put it in front of it.
#pragma once

#include "fonts/font_program.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace corvane {

/// A glyph as the page shows it.
struct FaceGlyph {
    std::optional<GlyphNumber> glyph; ///< nothing: a blank one
    double width = 0;                 ///< ems
    double stretch = 1;               ///< of the outline, along the line
    double shiftX = 0;                ///< of the stretched outline, in ems, as the next
    double shiftY = 0;
    std::u32string text;
};

class MadeFaces {
public:
    /// The face in which this glyph means its text, when it is shown behind the one of the last
    /// call. Nothing where there would be too many.
    std::optional<std::int32_t> allot(const FaceGlyph& glyph);

    std::int32_t count() const { return static_cast<std::int32_t>(faces_.size()); }
    const std::vector<FaceGlyph>& glyphsOf(std::int32_t face) const {
        return faces_[static_cast<std::size_t>(face)].glyphs;
    }

private:
    struct Face {
        bool isOfMarks = false;
        std::vector<FaceGlyph> glyphs = {};
        std::unordered_map<std::u32string, std::size_t> byText = {};
        /// Characters side by side within texts, and side by side because of two glyphs.
        std::unordered_set<std::uint64_t> joined = {};
        std::unordered_set<std::uint64_t> met = {};
    };

    bool holds(Face& face, const FaceGlyph& glyph, std::optional<std::uint64_t> meeting);

    std::vector<Face> faces_;
    std::size_t lastFace_ = 0;
    char32_t lastCharacter_ = 0; ///< 0: none
};

} // namespace corvane
