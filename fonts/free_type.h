// FreeType's library and faces, closed by themselves.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace corvane {

/// A face with all that it reads from.
class Face {
public:
    /// Nothing where FreeType cannot read it.
    static std::optional<Face> open(std::vector<std::byte> file, std::int32_t number);
    static std::optional<Face> openFile(const std::string& path, std::int32_t number);

    FT_Face operator->() const { return face_.get(); }
    FT_Face get() const { return face_.get(); }

private:
    struct Closer {
        void operator()(FT_Face face) const { FT_Done_Face(face); }
    };

    std::shared_ptr<FT_LibraryRec_> library_; ///< one for all faces that are open
    std::vector<std::byte> file_;
    std::unique_ptr<FT_FaceRec_, Closer> face_; ///< closed before the bytes and the library go
};

} // namespace corvane
