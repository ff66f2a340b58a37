// Type 3 fonts: glyphs are content streams. They have no font program, and no faces are made.
#pragma once

#include "reader/font/cmap.h"
#include "reader/font/font_names.h"
#include "reader/font/page_font.h"

#include <array>
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
    std::optional<std::string> encode(std::string_view character) const override;
    std::int32_t faceCount() const override { return 0; }
    std::vector<std::byte> makeFace(std::int32_t) const override { return {}; }

private:
    struct Glyph {
        std::string text;
        double advance = 0;
        bool isThere = false; ///< it has a procedure
    };

    FontNames names_;
    std::array<Glyph, 256> glyphs_;
    std::map<std::string, std::uint8_t, std::less<>> codes_; ///< by text, of glyphs that are there
};

} // namespace corvane
