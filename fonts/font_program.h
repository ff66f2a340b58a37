// A font program: a file of glyphs, embedded in a document or installed on the machine. Type 1, CFF
// (with names or CIDs), TrueType and OpenType, read by FreeType. Programs are hostile input: what
// cannot be read has no glyphs, and nothing here fails.
#pragma once

#include "fonts/outline.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// A glyph by its number in the program; 0 is the one of missing glyphs.
using GlyphNumber = std::uint32_t;

enum class ProgramKind : std::uint8_t { type1, cff, cidCff, trueType };

class FontProgram {
public:
    /// Takes the file's bytes over. Null where FreeType cannot read them, or they pass a budget.
    static std::shared_ptr<const FontProgram> open(std::vector<std::byte> file,
                                                   std::int32_t face = 0);
    /// An installed font.
    static std::shared_ptr<const FontProgram> openFile(const std::string& path, std::int32_t face);

    virtual ~FontProgram() = default;

    virtual ProgramKind kind() const = 0;
    virtual std::uint32_t glyphCount() const = 0;
    virtual bool isSymbolic() const = 0; ///< TrueType: it has a (3,0) cmap and no (3,1)

    // Which glyph. Nothing where the program does not tell, or tells glyph 0.
    virtual std::optional<GlyphNumber> byName(std::string_view name) const = 0;
    virtual std::optional<GlyphNumber> byCharacter(char32_t) const = 0; ///< by a Unicode cmap
    /// By the cmap subtable of that platform and encoding: (1,0) Macintosh Roman, (3,0) symbols.
    virtual std::optional<GlyphNumber> bySubtable(int platform, int encoding,
                                                  std::uint32_t code) const = 0;
    /// By the encoding that a Type 1 or CFF program has itself.
    virtual std::optional<GlyphNumber> byOwnCode(std::uint8_t code) const = 0;
    /// By the charset of a CID-keyed CFF; of other programs the CID is the glyph's number.
    virtual std::optional<GlyphNumber> byCid(std::uint32_t cid) const = 0;

    // About a glyph.
    virtual std::string nameOf(GlyphNumber) const = 0; ///< empty where it has none
    /// The character that a Unicode cmap of the program, or else its name, gives to it; 0: none.
    virtual char32_t characterOf(GlyphNumber) const = 0;
    virtual double advance(GlyphNumber) const = 0; ///< ems
    /// Unhinted. Empty for blank glyphs and for those that cannot be read.
    virtual GlyphOutline outline(GlyphNumber) const = 0;

    // About the program.
    virtual double ascent() const = 0;  ///< ems, above the baseline
    virtual double descent() const = 0; ///< ems, below the baseline, positive
    virtual std::string familyName() const = 0;
    virtual bool mayBeEmbedded() const = 0; ///< by its fsType
};

} // namespace corvane
