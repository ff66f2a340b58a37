#include "writer/text/page_letters.h"

#include "fonts/made/made_font.h"
#include "reader/font/characters.h"
#include "writer/text/blanks.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace corvane {

namespace {

/// Characters that one glyph may mean: "ffi" and its like.
constexpr std::size_t longestLigature = 4;

double asMade(double advance) {
    return std::round(advance * madeUnits) / madeUnits;
}

/// The letters as one glyph of the font.
std::optional<EncodedLetters> asGlyph(PageFont& font, std::u32string_view text, std::int32_t face) {
    const std::optional<std::string> codes = font.encode(toUtf8(text), face);
    if (!codes) {
        return std::nullopt;
    }
    EncodedLetters letters{.codes = *codes};
    std::vector<ShownGlyph> glyphs;
    font.show(std::as_bytes(std::span(*codes)), glyphs);
    for (const ShownGlyph& glyph : glyphs) {
        letters.advance += asMade(glyph.advance);
    }
    letters.count = static_cast<std::int32_t>(glyphs.size());
    return letters;
}

class Encoder {
public:
    Encoder(PageFont& font, std::u32string_view text, std::span<const LetterFacts> places)
        : font_(font), text_(text), places_(places) {}

    /// False where the font lacks a letter.
    bool takeLetters() {
        const std::size_t longest = std::min(longestLigature, text_.size() - at_);
        std::size_t joined = 1;
        while (joined < longest && (places_.empty() || places_[at_ + joined].mayJoin)) {
            ++joined;
        }
        for (std::size_t count = joined; count > 0; --count) {
            if (take(count)) {
                return true;
            }
        }
        for (std::size_t count = joined + 1; count <= longest; ++count) {
            if (take(count)) {
                return true;
            }
        }
        return takeBlank();
    }
    bool isDone() const { return at_ == text_.size(); }

    std::vector<EncodedLetters> all;

private:
    bool take(std::size_t count) {
        std::optional<EncodedLetters> letters =
            asGlyph(font_, text_.substr(at_, count), places_.empty() ? 0 : places_[at_].face);
        if (letters) {
            add(std::move(*letters), count);
        }
        return letters.has_value();
    }
    bool takeBlank() {
        const char32_t character = text_[at_];
        if (!isUnseen(character)) {
            return false;
        }
        const double advance = asMade(blankAdvance(character, font_.spaceAdvance()));
        add({.advance = advance, .count = advance == 0 ? 0 : 1}, 1);
        return true;
    }
    void add(EncodedLetters letters, std::size_t count) {
        letters.start = at_;
        all.push_back(std::move(letters));
        at_ += count;
    }

    PageFont& font_;
    std::u32string_view text_;
    std::span<const LetterFacts> places_;
    std::size_t at_ = 0;
};

} // namespace

std::optional<std::vector<EncodedLetters>> encodeText(PageFont& font, std::u32string_view text,
                                                      std::span<const LetterFacts> places) {
    Encoder encoder(font, text, places);
    while (!encoder.isDone()) {
        if (!encoder.takeLetters()) {
            return std::nullopt;
        }
    }
    return std::move(encoder.all);
}

} // namespace corvane
