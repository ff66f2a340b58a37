#include "reader/font/made_faces.h"

#include "fonts/made/made_font.h"
#include "fonts/order/text_order.h"

namespace corvane {

namespace {

/// Fonts with two or three glyphs for a text are usual; those with more are of no use as text.
constexpr std::size_t mostFaces = 16;

/// Pairs of characters remembered; past it a new ligature goes into another face, met or not.
constexpr std::size_t mostPairs = 1 << 14;

std::uint64_t pairOf(char32_t first, char32_t second) {
    return std::uint64_t{first} << 32 | second;
}

bool isSame(const FaceGlyph& a, const FaceGlyph& b) {
    return a.glyph == b.glyph && a.width == b.width && a.stretch == b.stretch &&
           a.shiftX == b.shiftX && a.shiftY == b.shiftY;
}

} // namespace

/// Whether the face holds the glyph, or takes it now, and shows it as such behind the last one.
bool MadeFaces::holds(Face& face, const FaceGlyph& glyph, std::optional<std::uint64_t> meeting) {
    if (meeting && face.joined.contains(*meeting)) {
        return false;
    }
    const std::u32string& text = glyph.text;
    if (const auto known = face.byText.find(text); known != face.byText.end()) {
        return isSame(face.glyphs[known->second], glyph);
    }
    if (face.glyphs.size() >= mostMadeGlyphs) {
        return false;
    }
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        const std::uint64_t pair = pairOf(text[i], text[i + 1]);
        if (face.met.size() >= mostPairs || face.met.contains(pair)) {
            return false;
        }
    }
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        face.joined.insert(pairOf(text[i], text[i + 1]));
    }
    face.byText.emplace(text, face.glyphs.size());
    face.glyphs.push_back(glyph);
    return true;
}

std::optional<std::int32_t> MadeFaces::allot(const FaceGlyph& glyph) {
    const char32_t first = glyph.text.front();
    const bool isOfMarks = isMark(first) && isRightToLeft(first);
    for (std::size_t place = 0; place < mostFaces; ++place) {
        if (place == faces_.size()) {
            faces_.push_back({.isOfMarks = place > 0 && isOfMarks});
        }
        Face& face = faces_[place];
        if (face.isOfMarks != isOfMarks) {
            continue;
        }
        std::optional<std::uint64_t> meeting;
        if (lastCharacter_ != 0 && lastFace_ == place) {
            meeting = pairOf(lastCharacter_, glyph.text.front());
        }
        if (holds(face, glyph, meeting)) {
            if (meeting && face.met.size() < mostPairs) {
                face.met.insert(*meeting);
            }
            lastFace_ = place;
            lastCharacter_ = glyph.text.back();
            return static_cast<std::int32_t>(place);
        }
    }
    return std::nullopt;
}

} // namespace corvane
