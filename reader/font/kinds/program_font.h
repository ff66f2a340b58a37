// What simple and composite fonts have in common: glyphs of a font program that codes show.
#pragma once

#include "reader/font/cmap/cmap.h"
#include "reader/font/font_file.h"
#include "reader/font/font_names.h"
#include "reader/font/made_faces.h"
#include "reader/font/page_font.h"
#include "runtime/memory.h"

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace corvane {

/// What a code shows, faces aside.
struct CodeGlyph {
    FaceGlyph shape;
    double advance = 0;   ///< as of `ShownGlyph`
    bool isMeant = false; ///< the text was stated somewhere, not made up
    bool isFound = false; ///< the font has a glyph for it
    bool isTyped = false; ///< the same, and a person may want it where the page does not show it
};

/// The font program that is shown, and where it is from.
struct ShownProgram {
    EmbeddedProgram font;
    bool isEmbedded = false; ///< else a font of the machine
};

class ProgramFont : public PageFont {
public:
    ProgramFont(FontNames names, ShownProgram program)
        : names_(std::move(names)), program_(std::move(program)) {}

    FontFacts facts() const override;
    void show(std::span<const std::byte> string, std::vector<ShownGlyph>& glyphs) override;
    double spaceAdvance() const override;
    std::optional<std::string> encode(std::string_view character, std::int32_t face) const override;
    std::int32_t faceCount() const override;
    std::vector<std::byte> makeFace(std::int32_t face) const override;

protected:
    const FontProgram* program() const { return program_.font.program.get(); }
    bool isEmbedded() const { return program_.isEmbedded; }
    /// Whether something shows the code, be it a blank. Where there is no program at all, the
    /// person's machine is trusted to have one for what is meant.
    bool hasGlyph(const CodeGlyph& glyph) const;
    bool isBlank(const std::optional<GlyphNumber>& glyph) const;
    /// How much wider the glyph of a font in place of the document's own is to be drawn.
    double stretchOf(const std::optional<GlyphNumber>& glyph, double width) const;

    virtual StringCode firstCode(std::span<const std::byte> string) const = 0;
    virtual CodeGlyph describe(StringCode code) const = 0;
    /// Every code that a person may type.
    virtual std::vector<StringCode> typedCodes() const = 0;

private:
    double blankAdvance() const;

    /// The second private-use plane, without the noncharacters at its end.
    static constexpr char32_t firstSpare = 0x100000;
    static constexpr char32_t lastSpare = 0x10FFFD;

    struct Shown {
        CodeGlyph glyph;
        std::string text;
        std::int32_t face = 0;
    };
    struct CodeHash {
        std::size_t operator()(const StringCode& code) const {
            return std::hash<std::uint64_t>{}(std::uint64_t{code.code} << 3 |
                                              static_cast<std::uint64_t>(code.length));
        }
    };

    /// Whether faces can be made: there is a program, and its maker permits it.
    bool hasFaces() const;
    Shown& shownOf(StringCode code);
    void noteShown(const Shown& shown, StringCode code);
    std::optional<StringCode> codeOf(const std::u32string& text, std::int32_t face) const;
    bool isSeen(const CodeGlyph& glyph) const;

    FontNames names_;
    ShownProgram program_;
    std::unordered_map<StringCode, Shown, CodeHash> shown_;
    /// By text, the codes that show it, one a face: what the page shows can be typed, too.
    std::unordered_map<std::u32string, std::vector<std::pair<std::int32_t, StringCode>>>
        shownTexts_;
    MadeFaces faces_;
    char32_t spare_ = firstSpare; ///< next private-use character for what finds no face
    ZoneCharge charge_;

    /// By text, all codes that can be typed; made when it is first asked for.
    mutable std::unordered_multimap<std::u32string, StringCode> typed_;
    mutable bool hasTyped_ = false;
    mutable std::optional<double> space_; ///< its advance; asked for at each gap of a line
    mutable ZoneCharge typedCharge_;
};

} // namespace corvane
