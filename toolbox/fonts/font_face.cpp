#include "toolbox/fonts/font_face.h"

#include "host/fonts.h"

#include <span>
#include <utility>

namespace corvane {

std::optional<FontFace> FontFace::open(int font) {
    const std::span<const ListedFont> fonts = listFonts();
    if (font < 0 || font >= std::ssize(fonts)) {
        return std::nullopt;
    }
    const ListedFont& listed = fonts[static_cast<std::size_t>(font)];
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0) {
        return std::nullopt;
    }
    Owner<FT_Library> ownedLibrary(library);
    FT_Face face = nullptr;
    if (FT_New_Face(library, listed.path.c_str(), listed.face, &face) != 0) {
        return std::nullopt;
    }
    Owner<FT_Face> ownedFace(face);
    if (face->units_per_EM == 0) {
        return std::nullopt;
    }
    return FontFace(std::move(ownedLibrary), std::move(ownedFace));
}

bool isFontOfSigns(const FontFace& face) {
    return FT_Select_Charmap(face.get(), FT_ENCODING_UNICODE) != 0 ||
           FT_Get_Char_Index(face.get(), 'a') == 0;
}

} // namespace corvane
