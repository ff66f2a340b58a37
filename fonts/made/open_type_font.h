// A font of the machine in OpenType form, as text is set in it and as documents get it. Read by
// HarfBuzz; as hostile as any other file.
#pragma once

#include "fonts/font_program.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct hb_blob_t;
struct hb_face_t;
struct hb_font_t;

namespace corvane {

/// Where lines along letters have their upper edges, above the baseline, and how thick they are.
/// Lengths are in ems; these are usual ones.
struct LetterLines {
    double under = -0.1;
    double underThickness = 0.05;
    double through = 0.3;
    double throughThickness = 0.05;
    double over = 0.9; ///< as thick as the first
};

/// What a font says of itself. Lengths are in ems.
struct OpenTypeFacts {
    std::string postScriptName; ///< "NimbusSans-Bold"; may be empty, or anything
    std::string fullName;       ///< "Nimbus Sans Bold"
    double left = 0;            ///< the box of all its glyphs, with the next three
    double bottom = 0;
    double right = 0;
    double top = 0;
    double ascent = 0;
    double descent = 0; ///< below 0
    double capHeight = 0;
    double italicAngle = 0; ///< degrees, counterclockwise
    LetterLines lines;
    std::int32_t weight = 400;
    bool isFixedPitch = false;
    bool isSerif = false;
};

class OpenTypeFont {
    struct Key {}; ///< what only `open` has

public:
    explicit OpenTypeFont(Key) {}

    /// Null where the bytes are no font with outlines that documents can hold, or pass a budget.
    /// Instances of variable fonts are none.
    static std::shared_ptr<const OpenTypeFont> open(std::vector<std::byte> file,
                                                    std::int32_t face = 0);
    static std::shared_ptr<const OpenTypeFont> openFile(const std::string& path, std::int32_t face);

    ProgramKind kind() const { return kind_; } ///< `trueType`, `cff` or `cidCff`
    const OpenTypeFacts& facts() const { return facts_; }
    /// A part of it, by its fsType: what may be embedded only as a whole, or as pictures, may not.
    bool mayBeEmbedded() const { return mayBeEmbedded_; }

    bool has(char32_t character) const; ///< by its cmap
    /// Whether it has a glyph for each of them that is seen, be it a composed one.
    bool shows(std::u32string_view text) const;
    double advance(GlyphNumber glyph) const; ///< ems
    double em() const { return em_; }        ///< units of the font in one

    hb_face_t* face() const { return face_.get(); }
    hb_font_t* font() const { return font_.get(); }

private:
    struct Closer {
        void operator()(hb_face_t* face) const;
        void operator()(hb_font_t* font) const;
    };

    bool read(std::int32_t number);
    void readFacts();

    std::vector<std::byte> file_;
    std::unique_ptr<hb_face_t, Closer> face_; ///< closed before the bytes go
    std::unique_ptr<hb_font_t, Closer> font_;
    ProgramKind kind_ = ProgramKind::trueType;
    OpenTypeFacts facts_;
    double em_ = 1000;
    bool mayBeEmbedded_ = false;
};

} // namespace corvane
