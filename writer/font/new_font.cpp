#include "writer/font/new_font.h"

#include "runtime/exception.h"

#include <cmath>

namespace corvane {

void NewFont::note(GlyphNumber glyph, std::u32string_view text) {
    NewGlyph& noted = glyphs_[glyph];
    if (noted.text.empty()) {
        noted.text = text;
    }
}

void NewFont::finish() {
    std::vector<GlyphNumber> wanted;
    for (const auto& [number, glyph] : glyphs_) {
        wanted.push_back(number);
    }
    std::optional<FontSubset> subset = makeSubset(*font_, wanted);
    if (!subset) {
        failException(Exception::fontFamily);
    }
    for (auto& [number, glyph] : glyphs_) {
        glyph.cid = subset->cids.at(number);
    }
    program_ = std::move(subset->program);
}

double NewFont::width(GlyphNumber glyph) const {
    constexpr double thousand = 1000;
    constexpr double digits = 100;
    return std::round(font_->advance(glyph) * thousand * digits) / digits;
}

std::string NewFont::code(GlyphNumber glyph) const {
    const std::uint32_t cid = glyphs_.at(glyph).cid;
    return {static_cast<char>(cid >> 8U & 0xFFU), static_cast<char>(cid & 0xFFU)};
}

} // namespace corvane
