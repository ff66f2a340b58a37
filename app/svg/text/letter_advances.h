// How wide letters of page fonts are: what the fonts' files say.
#pragma once

#include "app/artwork/text/fonts.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

struct hb_font_t;

namespace corvane {

/// Letters that have one glyph, mostly one.
struct GlyphWidth {
    std::size_t start = 0; ///< bytes of the text in front of it
    double advance = 0;    ///< in ems
};

class LetterAdvances {
public:
    explicit LetterAdvances(const FontTable& fonts) : fonts_(fonts) {}
    LetterAdvances(const LetterAdvances&) = delete;
    LetterAdvances& operator=(const LetterAdvances&) = delete;
    ~LetterAdvances();

    /// The glyphs of a text, in its order; none where the face has no file, or lacks a letter.
    std::vector<GlyphWidth> widths(Font, std::int32_t face, std::string_view text);

private:
    struct Release {
        void operator()(hb_font_t*) const;
    };
    using Face = std::unique_ptr<hb_font_t, Release>;

    hb_font_t* faceOf(Font, std::int32_t face);

    const FontTable& fonts_;
    std::map<std::pair<Font, std::int32_t>, Face> faces_;
};

} // namespace corvane
