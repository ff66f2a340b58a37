#include "writer/patch/text_layout.h"

#include "fonts/made_font.h"
#include "runtime/fixed.h"
#include "writer/patch/matching.h"
#include "writer/patch/text_run.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

namespace corvane {

namespace {

/// Characters that one glyph may mean: "ffi" and its like.
constexpr std::size_t longestLigature = 4;

std::size_t characterLength(unsigned char lead) {
    return lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

/// The length in bytes of the first `count` characters; the whole where there are fewer.
std::size_t lengthOf(std::string_view text, std::size_t count) {
    std::size_t length = 0;
    for (; count > 0 && length < text.size(); --count) {
        length += characterLength(static_cast<unsigned char>(text[length]));
    }
    return std::min(length, text.size());
}

/// The letters at the front of the text that one glyph of the font means, the longest that fit.
std::optional<EncodedLetters> firstLetters(PageFont& font, std::string_view& text) {
    for (std::size_t count = longestLigature; count > 0; --count) {
        const std::size_t length = lengthOf(text, count);
        if (const std::optional<std::string> codes = font.encode(text.substr(0, length))) {
            EncodedLetters letters{.codes = *codes};
            std::vector<ShownGlyph> glyphs;
            font.show(std::as_bytes(std::span(*codes)), glyphs);
            for (const ShownGlyph& glyph : glyphs) {
                letters.advance += std::round(glyph.advance * madeUnits) / madeUnits;
            }
            letters.count = static_cast<std::int32_t>(glyphs.size());
            text.remove_prefix(length);
            return letters;
        }
    }
    return std::nullopt;
}

class Layout {
public:
    Layout(const BaseReading& base, EditedArtwork& artwork) : base_(base), artwork_(artwork) {}

    void run() {
        double pen = 0;
        for (EditedIndex i = 0; i < artwork_.objects.size(); ++i) {
            EditedObject& object = artwork_.objects[i];
            if (object.kind != ArtKind::text) {
                continue;
            }
            pen = object.run == 0 ? 0 : pen;
            object.start = pen;
            const bool isLast =
                i + 1 == artwork_.objects.size() || artwork_.objects[i + 1].art != object.art;
            pen += isLast ? 0 : lengthOf(object);
        }
    }

private:
    double lengthOf(const EditedObject& object) const {
        const TextRun run = runOf(object.art, object.run);
        const PaintedIndex source = sourceOf(base_, object);
        if (source != noSource) {
            const PaintedArt& was = base_.trace.painted()[source];
            const ShownPart& part = base_.trace.textPart(was.part);
            if (!compareText(base_, was, object).letters) {
                const Fixed former = runOf(was.art, part.run).size;
                return former == 0 ? part.length
                                   : part.length * realFromFixed(run.size) / realFromFixed(former);
            }
        }
        return measured(run);
    }

    double measured(const TextRun& run) const {
        constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
        PageFont* const font = base_.fonts.find(run.font);
        std::string missing;
        const auto letters = font == nullptr ? std::nullopt : encodeText(*font, run.text, missing);
        if (!letters) {
            return unknown;
        }
        double ems = 0;
        double spaces = 0;
        for (const EncodedLetters& each : *letters) {
            ems += font->isVertical() ? columnAdvance : each.advance;
            spaces += each.count;
        }
        for (const TextPiece& piece : run.pieces) {
            ems += realFromFixed(piece.shift);
        }
        return ems * realFromFixed(run.size) + spaces * realFromFixed(run.spacing);
    }

    const BaseReading& base_;
    EditedArtwork& artwork_;
};

} // namespace

std::optional<std::vector<EncodedLetters>> encodeText(PageFont& font, std::string_view text,
                                                      std::string& missing) {
    std::vector<EncodedLetters> all;
    const std::size_t whole = text.size();
    while (!text.empty()) {
        const auto start = static_cast<std::int32_t>(whole - text.size());
        std::optional<EncodedLetters> letters = firstLetters(font, text);
        if (!letters && text.front() == ' ') {
            text.remove_prefix(1);
            letters =
                EncodedLetters{.advance = std::round(font.spaceAdvance() * madeUnits) / madeUnits,
                               .count = 1,
                               .isBlank = true};
        }
        if (!letters) {
            missing = text.substr(0, lengthOf(text, 1));
            return std::nullopt;
        }
        letters->start = start;
        all.push_back(std::move(*letters));
    }
    return all;
}

void layOutText(const BaseReading& base, EditedArtwork& artwork) {
    Layout(base, artwork).run();
}

} // namespace corvane
