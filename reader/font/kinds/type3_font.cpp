#include "reader/font/kinds/type3_font.h"

#include "fonts/glyph_names.h"
#include "reader/font/character_meaning.h"
#include "reader/font/characters.h"
#include "reader/font/font_entries.h"
#include "reader/font/font_file.h"
#include "reader/font/kinds/simple_encoding.h"
#include "reader/font/widths.h"

#include <bit>
#include <cmath>

namespace corvane {

namespace {

/// The number that a 16.16 number most likely stands for: 66/65536 was written as 0.001. Powers of
/// two are taken as they are, others as the shortest decimal that rounds to them.
double writtenNumber(double value) {
    constexpr double one = 65'536;
    if (!(std::abs(value) < one)) {
        return value; // written without digits behind the point
    }
    const auto units = static_cast<std::uint32_t>(std::abs(value) * one);
    if (std::has_single_bit(units)) {
        return value;
    }
    for (double scale = 1; scale < 1e5; scale *= 10) {
        const double rounded = std::round(value * scale) / scale;
        if (std::abs(rounded - value) <= 0.5 / one) {
            return rounded;
        }
    }
    return value;
}

} // namespace

Type3Font::Type3Font(DocumentCache& cache, const Object& font, FontNames names)
    : names_(std::move(names)) {
    const SimpleEncoding encoding(cache, font);
    const SimpleWidths widths(cache, font, entryOf(cache, font, "FontDescriptor").get());
    const auto toUnicode = readCMapEntry(cache, font, "ToUnicode");
    const ObjectOwner procedures = entryOf(cache, font, "CharProcs");
    const std::vector<double> matrix = numbersEntry(cache, font, "FontMatrix", 6);
    if (matrix.size() == 6) {
        matrix_ = {writtenNumber(matrix[0]), writtenNumber(matrix[1]), writtenNumber(matrix[2]),
                   writtenNumber(matrix[3]), writtenNumber(matrix[4]), writtenNumber(matrix[5])};
    }
    resources_ = entryOf(cache, font, "Resources");
    for (std::size_t i = 0; i < glyphs_.size(); ++i) {
        const auto code = static_cast<std::uint8_t>(i);
        Glyph& glyph = glyphs_[i];
        const std::string_view name = encoding.nameOf(code);
        if (!name.empty()) {
            glyph.procedure = entryOf(cache, procedures.get(), name);
        }
        glyph.advance = widths.widthOf(code).value_or(0) * matrix_.a;
        // Whether a procedure paints anything is not known here: blanks are believed.
        MeaningChoice meaning([] { return true; });
        if (toUnicode != nullptr) {
            meaning.offer(toUnicode->text(code).value_or(U""));
        }
        meaning.offer(charactersOfName(name));
        // Makers of bitmap fonts name glyphs as they please; codes are mostly ASCII.
        const bool isThere = procedureOf(code) != nullptr;
        if (isThere && code > ' ' && code < 0x7F) {
            meaning.offer({code});
        }
        glyph.text = toUtf8(meaning.textOr(code));
        if (isThere) {
            codes_.emplace(glyph.text, code);
        }
    }
}

const Object* Type3Font::procedureOf(std::uint8_t code) const {
    const Object& procedure = glyphs_[code].procedure.get();
    return procedure.type == ObjectType::stream ? &procedure : nullptr;
}

FontFacts Type3Font::facts() const {
    FontFacts facts = names_.facts();
    facts.isPageFont = false;
    return facts;
}

void Type3Font::show(std::span<const std::byte> string, std::vector<ShownGlyph>& glyphs) {
    for (const std::byte byte : string) {
        const auto code = std::to_integer<std::uint8_t>(byte);
        glyphs.push_back({.code = code,
                          .advance = glyphs_[code].advance,
                          .text = glyphs_[code].text,
                          .isWordSpace = code == ' '});
    }
}

double Type3Font::spaceAdvance() const {
    constexpr double usualSpace = 0.25;
    const auto code = codes_.find(" ");
    const double advance = code == codes_.end() ? 0 : glyphs_[code->second].advance;
    return advance > 0 ? advance : usualSpace;
}

std::optional<std::string> Type3Font::encode(std::string_view character, std::int32_t) const {
    const auto code = codes_.find(character);
    if (code == codes_.end()) {
        return std::nullopt;
    }
    return std::string(1, static_cast<char>(code->second));
}

} // namespace corvane
