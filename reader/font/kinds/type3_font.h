// Type 3 fonts: glyphs are content streams, the glyph procedures. They have no font program, and no
// faces are made.
#pragma once

#include "host/matrix.h"
#include "reader/font/cmap/cmap.h"
#include "reader/font/font_names.h"
#include "reader/font/page_font.h"

#include <array>
#include <bitset>
#include <map>
#include <memory>
#include <string>

namespace corvane {

class Type3Font : public PageFont {
public:
    Type3Font(DocumentCache& cache, const Object& font, FontNames names);

    FontKind kind() const override { return FontKind::type3; }
    bool isVertical() const override { return false; }
    FontFacts facts() const override;
    void show(std::span<const std::byte> string, std::vector<ShownGlyph>& glyphs) override;
    double spaceAdvance() const override;
    std::optional<std::string> encode(std::string_view character, std::int32_t face) const override;
    std::int32_t faceCount() const override { return 0; }
    std::vector<std::byte> makeFace(std::int32_t) const override { return {}; }

    /// The stream that draws the glyph; null where there is none.
    const Object* procedureOf(std::uint8_t code) const;
    /// From the space of glyphs to text space.
    const RealMatrix& matrix() const { return matrix_; }
    /// Of the procedures; null: those of the page.
    const Object& resources() const { return resources_.get(); }

    /// What was found out: the glyph paints what artwork does not hold.
    bool paintsHidden(std::uint8_t code) const { return hidden_[code]; }
    void notePaintsHidden(std::uint8_t code) { hidden_[code] = true; }

private:
    struct Glyph {
        std::string text;
        double advance = 0;
        ObjectOwner procedure;
    };

    FontNames names_;
    RealMatrix matrix_{.001, 0, 0, .001, 0, 0};
    ObjectOwner resources_;
    std::array<Glyph, 256> glyphs_;
    std::bitset<256> hidden_;
    std::map<std::string, std::uint8_t, std::less<>> codes_; ///< by text, of glyphs that are there
};

} // namespace corvane
