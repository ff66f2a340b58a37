// FreeType's library and faces, closed by themselves.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace corvane {

/// The library, and the processor time that the glyphs of its faces took.
struct FreeType {
    explicit FreeType(FT_Library opened) : library(opened) {}
    ~FreeType() { FT_Done_FreeType(library); }
    FreeType(const FreeType&) = delete;
    FreeType& operator=(const FreeType&) = delete;

    FT_Library library;
    std::clock_t spent = 0;
};

/// A face with all that it reads from.
class Face {
public:
    /// Nothing where FreeType cannot read it.
    static std::optional<Face> open(std::vector<std::byte> file, std::int32_t number);
    static std::optional<Face> openFile(const std::string& path, std::int32_t number);

    /// Fills the face's slot, in units of the font. False where the glyph cannot be read, or the
    /// glyphs of all open faces took their time (`budget::glyphSeconds`).
    bool load(std::uint32_t glyph) const;
    /// In units of the font, without the outline where the font tells; 0 where it cannot be read,
    /// or time is up.
    double advance(std::uint32_t glyph) const;

    FT_Face operator->() const { return face_.get(); }
    FT_Face get() const { return face_.get(); }

private:
    bool isInTime(const std::function<FT_Error()>& work) const;

    struct Closer {
        void operator()(FT_Face face) const { FT_Done_Face(face); }
    };

    std::shared_ptr<FreeType> library_; ///< one for all faces that are open
    std::vector<std::byte> file_;
    std::unique_ptr<FT_FaceRec_, Closer> face_; ///< closed before the bytes and the library go
};

} // namespace corvane
