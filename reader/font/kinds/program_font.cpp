#include "reader/font/kinds/program_font.h"

#include "fonts/made/made_font.h"
#include "fonts/order/text_order.h"
#include "reader/font/characters.h"
#include "runtime/budget.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace corvane {

namespace {

/// Memory of a code that is shown, and of one that can be typed, with what its containers need.
constexpr std::int64_t shownBytes = 400;
constexpr std::int64_t typedBytes = 120;

/// Glyphs of another font are drawn at their own width where the document's differs by less: half
/// a unit of rounding for each of two fonts.
constexpr double sameWidth = 0.002;

/// Past it a glyph is another one, not a narrower or a wider one.
constexpr double mostStretch = 4;

std::size_t pointsOf(const GlyphOutline& outline) {
    std::size_t points = 0;
    for (const Contour& contour : outline) {
        points += 1 + contour.steps.size();
    }
    return points;
}

void placeOutline(GlyphOutline& outline, const FaceGlyph& glyph) {
    const auto place = [&](auto& point) {
        point.x = point.x * glyph.stretch + glyph.shiftX;
        point.y += glyph.shiftY;
    };
    for (Contour& contour : outline) {
        place(contour.start);
        for (OutlineStep& step : contour.steps) {
            place(step.first);
            place(step.second);
            place(step.to);
        }
    }
}

/// Whether a font may have something to show for it: it is neither blank nor private.
bool isSeenText(std::u32string_view text) {
    return !isBlankText(text) && !std::ranges::any_of(text, isPrivateCharacter);
}

std::string bytesOf(StringCode code) {
    std::string bytes;
    for (std::int32_t i = code.length; i-- > 0;) {
        bytes.push_back(static_cast<char>(code.code >> (8 * i) & 0xFF));
    }
    return bytes;
}

} // namespace

FontFacts ProgramFont::facts() const {
    FontFacts facts = names_.facts();
    if (!hasFaces()) {
        facts.isPageFont = false;
        facts.family = facts.realFamily;
        facts.realFamily = {};
    }
    return facts;
}

bool ProgramFont::hasFaces() const {
    return program() != nullptr && (isEmbedded() || program()->mayBeEmbedded());
}

bool ProgramFont::isBlank(const std::optional<GlyphNumber>& glyph) const {
    return !glyph || program() == nullptr || program()->outline(*glyph).empty();
}

bool ProgramFont::hasGlyph(const CodeGlyph& glyph) const {
    return glyph.shape.glyph || isBlankText(glyph.shape.text) ||
           (program() == nullptr && glyph.isMeant);
}

double ProgramFont::stretchOf(const std::optional<GlyphNumber>& glyph, double width) const {
    if (isEmbedded() || !glyph || program() == nullptr) {
        return 1;
    }
    const double own = program()->advance(*glyph);
    if (own <= 0 || width <= 0 || std::abs(own - width) <= sameWidth) {
        return 1;
    }
    return std::clamp(width / own, 1 / mostStretch, mostStretch);
}

ProgramFont::Shown& ProgramFont::shownOf(StringCode code) {
    const auto known = shown_.find(code);
    if (known != shown_.end()) {
        Shown& shown = known->second;
        const std::int32_t face = faces_.allot(shown.glyph.shape).value_or(shown.face);
        if (face != std::exchange(shown.face, face)) {
            noteShown(shown, code);
        }
        return shown;
    }
    charge_.resize(charge_.bytes() + shownBytes);
    Shown shown{.glyph = describe(code), .text = {}, .face = 0};
    std::u32string& text = shown.glyph.shape.text;
    text = inOtherOrder(text); // lines of a page stand as they are seen
    std::optional<std::int32_t> face = faces_.allot(shown.glyph.shape);
    while (!face && spare_ <= lastSpare) {
        text.assign(1, spare_++);
        face = faces_.allot(shown.glyph.shape);
    }
    shown.face = face.value_or(0); // no font of the page needs more
    shown.text = toUtf8(text);
    noteShown(shown, code);
    return shown_.emplace(code, std::move(shown)).first->second;
}

/// In place of a font that is not embedded a reader's machine may have a better one than this. What
/// means nothing stays with the letters around it, though nothing is seen of it.
void ProgramFont::noteShown(const Shown& shown, StringCode code) {
    const std::u32string text = inOtherOrder(shown.glyph.shape.text);
    const bool isNameless = text.size() == 1 && isPrivateCharacter(text.front());
    if (!shown.glyph.isFound && !isNameless && (isEmbedded() || !shown.glyph.isMeant)) {
        return;
    }
    auto& codes = shownTexts_[text];
    if (std::ranges::find(codes, shown.face, &std::pair<std::int32_t, StringCode>::first) ==
        codes.end()) {
        codes.emplace_back(shown.face, code);
    }
}

void ProgramFont::show(std::span<const std::byte> string, std::vector<ShownGlyph>& glyphs) {
    while (!string.empty()) {
        const StringCode code = firstCode(string);
        string = string.subspan(static_cast<std::size_t>(code.length));
        const Shown& shown = shownOf(code);
        glyphs.push_back({.code = code.code,
                          .codeLength = code.length,
                          .advance = shown.glyph.advance,
                          .text = shown.text,
                          .face = hasFaces() ? shown.face : 0,
                          .isWordSpace = code.length == 1 && code.code == ' '});
    }
}

double ProgramFont::spaceAdvance() const {
    constexpr double usualSpace = 0.25;
    if (!space_) {
        const double advance = blankAdvance();
        space_ = advance > 0 ? advance : usualSpace;
    }
    return *space_;
}

/// Of the blank that can be typed; 0 where there is none. Most fonts have it among their first
/// codes: then the others need no look.
double ProgramFont::blankAdvance() const {
    if (hasTyped_ || shownTexts_.contains(U" ")) {
        const std::optional<StringCode> code = codeOf(U" ", 0);
        return code ? describe(*code).advance : 0;
    }
    for (const StringCode& code : typedCodes()) {
        const CodeGlyph glyph = describe(code);
        if (glyph.isTyped && glyph.isMeant && glyph.shape.text == U" ") {
            return glyph.advance;
        }
    }
    return 0;
}

bool ProgramFont::isSeen(const CodeGlyph& glyph) const {
    return program() == nullptr || isBlankText(glyph.shape.text) || !isBlank(glyph.shape.glyph);
}

std::optional<StringCode> ProgramFont::codeOf(const std::u32string& text, std::int32_t face) const {
    if (const auto shown = shownTexts_.find(text); shown != shownTexts_.end()) {
        const auto& codes = shown->second;
        const auto own =
            std::ranges::find(codes, face, &std::pair<std::int32_t, StringCode>::first);
        return own != codes.end() ? own->second : codes.front().second;
    }
    if (!hasTyped_) {
        hasTyped_ = true;
        for (const StringCode& code : typedCodes()) {
            CodeGlyph glyph = describe(code);
            if (glyph.isTyped && glyph.isMeant) {
                typedCharge_.resize(typedCharge_.bytes() + typedBytes);
                typed_.emplace(std::move(glyph.shape.text), code);
            }
        }
    }
    std::optional<StringCode> best;
    constexpr int mostTried = 64;
    int tried = 0;
    const auto [begin, end] = typed_.equal_range(text);
    for (auto code = begin; code != end && tried < mostTried; ++code, ++tried) {
        if (isSeen(describe(code->second)) && (!best || code->second.code < best->code)) {
            best = code->second;
        }
    }
    if (tried > 1) {
        typed_.erase(begin, end); // the next time the best is all there is
        if (best) {
            typed_.emplace(text, *best);
        }
    }
    return best;
}

std::optional<std::string> ProgramFont::encode(std::string_view character,
                                               std::int32_t face) const {
    const std::optional<std::u32string> text = fromUtf8(character);
    if (!text || text->empty()) {
        return std::nullopt;
    }
    const std::optional<StringCode> code = codeOf(*text, face);
    return code ? std::optional(bytesOf(*code)) : std::nullopt;
}

std::int32_t ProgramFont::faceCount() const {
    return hasFaces() ? faces_.count() : 0;
}

std::vector<std::byte> ProgramFont::makeFace(std::int32_t face) const {
    if (face < 0 || face >= faceCount()) {
        return {};
    }
    MadeFont made;
    made.family = names_.family + (face > 0 ? " " + std::to_string(face + 1) : "");
    made.weight = names_.weight;
    made.italic = names_.italic;
    if (isVertical()) {
        made.ascent = columnOrigin;
        made.descent = columnAdvance - columnOrigin;
    } else if (program()->ascent() > 0) {
        made.ascent = program()->ascent();
        made.descent = std::max(0.0, program()->descent());
    }
    std::size_t points = 0;
    for (const FaceGlyph& glyph : faces_.glyphsOf(face)) {
        if (!glyph.glyph && !isEmbedded() && isSeenText(glyph.text)) {
            continue; // programs that draw the text may find it in another font
        }
        MadeGlyph& added = made.glyphs.emplace_back();
        added.advance = glyph.width;
        added.text = glyph.text;
        if (glyph.glyph && points < budget::facePoints) {
            added.outline = program()->outline(*glyph.glyph);
            points += pointsOf(added.outline);
            placeOutline(added.outline, glyph);
        }
    }
    const bool hasBlank =
        std::ranges::any_of(made.glyphs, [](const MadeGlyph& glyph) { return glyph.text == U" "; });
    if (face == 0 && !hasBlank) {
        // For gaps that read as blanks: another font would have a blank of another width.
        made.glyphs.push_back({.outline = {}, .advance = spaceAdvance(), .text = U" "});
    }
    return writeMadeFont(made);
}

} // namespace corvane
