#include "fonts/free_type.h"

#include "runtime/budget.h"

#include FT_ADVANCES_H

namespace corvane {

namespace {

constexpr FT_Int32 inUnits = FT_LOAD_NO_SCALE | FT_LOAD_IGNORE_TRANSFORM;

/// Lives as long as any face. Only its weak count is static, so nothing of FreeType runs when the
/// plug-in is unloaded.
std::shared_ptr<FreeType> freeType() {
    static std::weak_ptr<FreeType> shared;
    auto library = shared.lock();
    if (!library) {
        FT_Library made = nullptr;
        if (FT_Init_FreeType(&made) != 0) {
            return nullptr;
        }
        library = std::make_shared<FreeType>(made);
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
    if (FT_Open_Face(face.library_->library, &source, number, &opened) != 0) {
        return std::nullopt;
    }
    face.face_.reset(opened);
    return face;
}

bool Face::isInTime(const std::function<FT_Error()>& work) const {
    constexpr std::clock_t most = std::clock_t{budget::glyphSeconds} * CLOCKS_PER_SEC;
    if (library_->spent >= most) {
        return false;
    }
    const std::clock_t start = std::clock();
    const bool isDone = work() == 0;
    library_->spent += std::clock() - start;
    return isDone;
}

bool Face::load(std::uint32_t glyph) const {
    return isInTime([&] { return FT_Load_Glyph(face_.get(), glyph, inUnits); });
}

double Face::advance(std::uint32_t glyph) const {
    FT_Fixed advance = 0;
    const bool isKnown =
        isInTime([&] { return FT_Get_Advance(face_.get(), glyph, inUnits, &advance); });
    return isKnown ? static_cast<double>(advance) : 0;
}

std::optional<Face> Face::openFile(const std::string& path, std::int32_t number) {
    Face face;
    face.library_ = freeType();
    FT_Face opened = nullptr;
    if (!face.library_ || FT_New_Face(face.library_->library, path.c_str(), number, &opened) != 0) {
        return std::nullopt;
    }
    face.face_.reset(opened);
    return face;
}

} // namespace corvane
