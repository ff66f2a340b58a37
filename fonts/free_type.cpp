#include "fonts/free_type.h"

namespace corvane {

namespace {

/// Lives as long as any face. Only its weak count is static, so nothing of FreeType runs when the
/// plug-in is unloaded.
std::shared_ptr<FT_LibraryRec_> freeType() {
    static std::weak_ptr<FT_LibraryRec_> shared;
    auto library = shared.lock();
    if (!library) {
        FT_Library made = nullptr;
        if (FT_Init_FreeType(&made) != 0) {
            return nullptr;
        }
        library.reset(made, [](FT_Library done) { FT_Done_FreeType(done); });
        shared = library;
    }
    return library;
}

} // namespace

std::optional<Face> Face::open(std::vector<std::byte> file, std::int32_t number) {
    Face face;
    face.library_ = freeType();
    face.file_ = std::move(file);
    if (!face.library_ || face.file_.empty()) {
        return std::nullopt;
    }
    FT_Open_Args source{};
    source.flags = FT_OPEN_MEMORY;
    source.memory_base = static_cast<const FT_Byte*>(static_cast<const void*>(face.file_.data()));
    source.memory_size = static_cast<FT_Long>(face.file_.size());
    FT_Face opened = nullptr;
    if (FT_Open_Face(face.library_.get(), &source, number, &opened) != 0) {
        return std::nullopt;
    }
    face.face_.reset(opened);
    return face;
}

std::optional<Face> Face::openFile(const std::string& path, std::int32_t number) {
    Face face;
    face.library_ = freeType();
    FT_Face opened = nullptr;
    if (!face.library_ || FT_New_Face(face.library_.get(), path.c_str(), number, &opened) != 0) {
        return std::nullopt;
    }
    face.face_.reset(opened);
    return face;
}

} // namespace corvane
