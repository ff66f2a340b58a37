#include "writer/font/new_font.h"

#include "runtime/exception.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace corvane {

std::uint32_t NewFont::note(GlyphNumber glyph, std::u32string_view text) {
    const auto next = static_cast<std::uint32_t>(codes_.size());
    const auto [at, isNew] = noted_.try_emplace({glyph, std::u32string(text)}, next);
    if (isNew) {
        codes_.push_back({.glyph = glyph, .text = std::u32string(text)});
    }
    return at->second;
}

void NewFont::finish() {
    std::vector<GlyphNumber> wanted;
    for (const auto& [meaning, number] : noted_) {
        wanted.push_back(meaning.first);
    }
    wanted.erase(std::unique(wanted.begin(), wanted.end()), wanted.end());
    std::optional<FontSubset> subset = makeSubset(*font_, wanted);
    if (!subset) {
        failException(Exception::fontFamily);
    }
    program_ = std::move(subset->program);
    std::set<std::uint32_t> cids;
    for (const auto& [glyph, cid] : subset->cids) {
        cids.insert(cid);
    }
    std::uint32_t free = 0x1'0000; // two bytes; other meanings get codes from the end
    std::set<std::uint32_t> used;
    for (NewCode& code : codes_) {
        code.cid = code.code = subset->cids.at(code.glyph);
        if (used.insert(code.cid).second) {
            continue;
        }
        codesAreCids_ = false;
        do {
            if (free == 0) {
                failException(Exception::limit);
            }
            code.code = --free;
        } while (cids.contains(code.code));
    }
}

double NewFont::width(GlyphNumber glyph) const {
    constexpr double thousand = 1000;
    constexpr double digits = 100;
    return std::round(font_->advance(glyph) * thousand * digits) / digits;
}

std::string NewFont::code(std::uint32_t noted) const {
    const std::uint32_t code = codes_.at(noted).code;
    return {static_cast<char>(code >> 8U & 0xFFU), static_cast<char>(code & 0xFFU)};
}

} // namespace corvane
