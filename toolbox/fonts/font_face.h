// A face of an installed font, opened by FreeType and closed by itself.
#pragma once

#include <memory>
#include <optional>
#include <type_traits>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace corvane {

class FontFace {
public:
    /// The font counted `font` in `listFonts`. Nothing where it is not there, or cannot be read.
    static std::optional<FontFace> open(int font);

    FT_Face get() const { return face_.get(); }

    /// A length of the font's own units in ems.
    double ems(FT_Pos length) const {
        return static_cast<double>(length) / static_cast<double>(face_->units_per_EM);
    }
    /// Into the face's slot, in units of the font. False where the glyph cannot be read.
    bool loadGlyph(FT_UInt glyph) const {
        return glyph != 0 && FT_Load_Glyph(face_.get(), glyph, FT_LOAD_NO_SCALE) == 0;
    }

private:
    struct Closer {
        void operator()(FT_Library library) const { FT_Done_FreeType(library); }
        void operator()(FT_Face face) const { FT_Done_Face(face); }
    };
    template <class Handle>
    using Owner = std::unique_ptr<std::remove_pointer_t<Handle>, Closer>;

    FontFace(Owner<FT_Library> library, Owner<FT_Face> face)
        : library_(std::move(library)), face_(std::move(face)) {}

    Owner<FT_Library> library_; // goes after the face
    Owner<FT_Face> face_;
};

/// Whether the font has letters of its own alphabet only, by codes of its own.
bool isFontOfSigns(const FontFace& face);

} // namespace corvane
