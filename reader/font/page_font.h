// A font of the page: what the codes of a string show.
#pragma once

#include "fonts/font_program.h"
#include "host/text.h"
#include "objects/object.h"
#include "reader/document/cache.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// One code of a string, and the glyph that it shows.
struct ShownGlyph {
    std::uint32_t code = 0;
    std::int32_t codeLength = 1; ///< bytes
    /// Along the line, in ems of the font: the width, or of vertical text the way down (positive).
    double advance = 0;
    std::string_view text;    ///< UTF-8, never empty; lives as long as the font
    std::int32_t face = 0;    ///< of the made font
    bool isWordSpace = false; ///< word spacing counts behind it: the one-byte code 32
};

enum class FontKind : std::uint8_t { simple, composite, type3 };

class PageFont {
public:
    virtual ~PageFont() = default;

    virtual FontKind kind() const = 0;
    virtual bool isVertical() const = 0;
    /// Names for the host. The strings live as long as the font.
    virtual FontFacts facts() const = 0;

    /// Takes a string apart into codes. Glyphs that are shown get into the made faces.
    virtual void show(std::span<const std::byte> string, std::vector<ShownGlyph>& glyphs) = 0;

    /// The advance of a blank in ems: that of the font's own, else a quarter.
    virtual double spaceAdvance() const = 0;

    /// The code that shows this UTF-8 character (or several as one glyph), as the bytes of a
    /// string; nothing where no glyph of the font means it. Of several the one of that made face.
    virtual std::optional<std::string> encode(std::string_view character,
                                              std::int32_t face) const = 0;

    /// Faces made so far; each is an OpenType file with the glyphs that were shown. Face 0 has the
    /// family of `facts` inside, face 1 the same with " 2" behind it, and so on. None where there
    /// is no font program, or its maker does not permit it: `facts` says then that it is no page
    /// font.
    virtual std::int32_t faceCount() const = 0;
    virtual std::vector<std::byte> makeFace(std::int32_t face) const = 0;
};

/// Reads a font dictionary, resolved already. What is wrong or missing in it is taken as most
/// readers take it; raises `type` only where it is no dictionary. `number` is the object's, 0 for a
/// direct one: it goes into the family name.
std::unique_ptr<PageFont> readFont(DocumentCache&, const Object& dictionary, std::int32_t number);

} // namespace corvane
