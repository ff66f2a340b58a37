#include "reader/text/show_text.h"

#include "fonts/order/text_order.h"
#include "host/matrix.h"
#include "host/utf8.h"
#include "reader/content/interpreter.h"
#include "reader/paint/path_art.h"
#include "reader/syntax/syntax.h"
#include "reader/text/art_lines.h"
#include "reader/text/clip_lines.h"
#include "reader/text/glyph_drawing.h"
#include "reader/text/line_builder.h"
#include "reader/text/page_fonts.h"
#include "reader/text/render_mode.h"
#include "runtime/extension.h"
#include "runtime/fixed.h"
#include "runtime/memory.h"
#include "runtime/rules.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace corvane {

namespace {

/// Whether the size is more than 0 in 16.16, as artwork has it.
bool hasSize(const TextState& text, const RealMatrix& space) {
    return fixedFromReal(std::abs(text.size) * std::hypot(space.c, space.d)) > 0;
}

/// Whether it is letters that lie somewhere.
bool isPlaced(const TextState& text, const RealMatrix& space) {
    return hasSize(text, space) && text.horizontalScale != 0 && inverse(space).has_value();
}

/// Whether artwork can hold what is painted now.
bool isArt(const GraphicsState& state, const RealMatrix& space) {
    const TextState& text = state.text;
    if (text.font->font->kind() == FontKind::type3) {
        return paintingOf(text.renderMode) != invisibleMode;
    }
    return text.renderMode != firstClippingMode + invisibleMode &&
           !(fills(text.renderMode) && state.fill.hidden) &&
           !(strokes(text.renderMode) && state.stroke.hidden) && isPlaced(text, space);
}

PathStyle styleOf(const GraphicsState& state) {
    PathStyle style = scaledStyle(state);
    style.fillPaint = fills(state.text.renderMode) ? 1 : 0;
    style.strokePaint = strokes(state.text.renderMode) ? 1 : 0;
    style.clip = 0;
    style.rule = FillRule::nonzero;
    return style;
}

/// Of letters that clip, whatever they are painted with.
PathStyle clippingStyle() {
    PathStyle style;
    style.fillPaint = 0;
    style.strokePaint = 0;
    style.clip = 1;
    return style;
}

std::span<const std::byte> bytesOfString(const Object& object) {
    if (typeObject(object) == ObjectType::block) {
        return blockObject(object);
    }
    const std::string_view text = textObject(object);
    return std::as_bytes(std::span(text));
}

bool isString(const Object& object) {
    return typeObject(object) == ObjectType::text || typeObject(object) == ObjectType::block;
}

bool isNumber(const Object& object) {
    return typeObject(object) == ObjectType::integer || typeObject(object) == ObjectType::fixed;
}

/// Glyphs that procedures draw never clip (PDF Reference, 5.5.4).
bool addsToClip(const TextState& text) {
    const bool isDrawn = text.font != nullptr && text.font->font->kind() == FontKind::type3;
    return clips(text.renderMode) && !isDrawn;
}

class Show {
public:
    explicit Show(Interpreter& interpreter)
        : interpreter_(interpreter), text_(interpreter.state.text), font_(*text_.font->font) {}

    void run(std::span<const Object> elements) {
        const RealMatrix space =
            multiply(interpreter_.level.text.matrix, interpreter_.state.exactCtm);
        ShownText& shown = interpreter_.level.shown;
        shown.matrix = interpreter_.level.text.matrix;
        const bool isPainted = isArt(interpreter_.state, space);
        const bool isDrawn = font_.kind() == FontKind::type3;
        // Glyphs of procedures do not clip, so those that only clip are what readers make of them.
        const std::int32_t painting = isDrawn ? text_.renderMode : paintingOf(text_.renderMode);
        shown.hides = !isPainted && painting != invisibleMode;
        if (isPainted && isDrawn) {
            drawGlyphs(elements, space);
        } else {
            addLetters(elements, space, isPainted);
        }
        shown.advance = pen_;
        move();
    }

private:
    static constexpr std::int64_t glyphBytes = sizeof(ShownGlyph);
    static constexpr std::size_t placedBytes = 3 * sizeof(PenGlyph);

    void addLetters(std::span<const Object> elements, const RealMatrix& space, bool isPainted) {
        const GraphicsState& state = interpreter_.state;
        ArtLines artLines(interpreter_);
        ClipLines clipLines(interpreter_.level.text.clip);
        std::optional<LineBuilder> painted;
        std::optional<LineBuilder> clip;
        if (isPainted) {
            painted.emplace(artLines, state, space, styleOf(state));
        }
        if (addsToClip(text_) && isPlaced(text_, space)) {
            clip.emplace(clipLines, state, space, clippingStyle());
        }
        const auto number = static_cast<std::int32_t>(elements.size());
        const auto forEachLine = [&](const auto& use) {
            if (painted) {
                use(*painted);
            }
            if (clip) {
                use(*clip);
            }
        };
        const bool stepsApart = spacesWidely(text_) || std::ranges::any_of(elements, leadsLeft);
        if (stepsApart || (painted && painted->mayComeBefore(pen_))) {
            gather(elements);
            forEachLine([&](LineBuilder& lines) {
                const bool isAdded =
                    (stepsApart && runsFromRight_ && lines.addFromRight(placed_, pen_, number)) ||
                    lines.addBefore(placed_, pen_, number) || lines.addSpacedWords(placed_);
                if (!isAdded) {
                    std::ranges::for_each(placed_, [&](const auto& each) { lines.add(each); });
                }
            });
        } else {
            walk(elements, [&](const ShownGlyph& glyph, std::int32_t element) {
                const PenGlyph placed{glyph, pen_, advanceOf(glyph), element};
                forEachLine([&](LineBuilder& lines) { lines.add(placed); });
            });
        }
        forEachLine([&](LineBuilder& lines) { lines.endAt(pen_, number); });
    }

    static bool leadsLeft(const Object& element) {
        return isNumber(element) && leadsBack(realNumber(element));
    }

    /// All glyphs, and whether they are of a script that runs from the right.
    void gather(std::span<const Object> elements) {
        walk(elements, [&](const ShownGlyph& glyph, std::int32_t element) {
            placed_.push_back({glyph, pen_, advanceOf(glyph), element});
            placedCharge_.resize(static_cast<std::int64_t>(placed_.capacity() * placedBytes));
            runsFromRight_ = runsFromRight_ || isRightToLeft(decodeCharacter(glyph.text).code);
        });
    }

    void drawGlyphs(std::span<const Object> elements, const RealMatrix& space) {
        GlyphDrawing drawing(interpreter_, static_cast<Type3Font&>(font_), space);
        walk(elements, [&](const ShownGlyph& glyph, std::int32_t) {
            drawing.add(static_cast<std::uint8_t>(glyph.code), pen_);
        });
        ShownText& shown = interpreter_.level.shown;
        shown.hides = drawing.hides();
        if (const Art group = drawing.end(); group != Art::null) {
            shown.isDrawn = true;
            shown.parts.push_back({.art = group,
                                   .endElement = static_cast<std::int32_t>(elements.size()),
                                   .advance = pen_});
        }
    }

    /// Lets the pen walk along; `use` takes each glyph, and the number of its element.
    template <class Use>
    void walk(std::span<const Object> elements, const Use& use) {
        std::int32_t number = 0;
        for (const Object& element : elements) {
            if (isString(element)) {
                const std::span<const std::byte> string = bytesOfString(element);
                glyphs_.clear();
                charge_.resize(std::max(charge_.bytes(), std::ssize(string) * glyphBytes));
                font_.show(string, glyphs_);
                for (const ShownGlyph& glyph : glyphs_) {
                    use(glyph, number);
                    pen_ += advanceOf(glyph);
                }
            } else if (isNumber(element)) {
                pen_ -= realNumber(element) / 1000 * text_.size * scale();
            }
            ++number;
        }
    }

    double scale() const { return font_.isVertical() ? 1 : text_.horizontalScale; }

    double advanceOf(const ShownGlyph& glyph) const {
        const double spacing =
            text_.characterSpacing + (glyph.isWordSpace ? text_.wordSpacing : 0.0);
        // Vertical text goes down.
        const double width = font_.isVertical() ? -glyph.advance : glyph.advance;
        return (width * text_.size + spacing) * scale();
    }

    void move() {
        RealMatrix& matrix = interpreter_.level.text.matrix;
        const RealPoint way = font_.isVertical() ? RealPoint{0, pen_} : RealPoint{pen_, 0};
        const RealPoint to = transform(matrix, way);
        matrix.tx = to.x;
        matrix.ty = to.y;
    }

    Interpreter& interpreter_;
    const TextState& text_;
    PageFont& font_;
    double pen_ = 0; ///< in text space, from where the text begins
    std::vector<ShownGlyph> glyphs_;
    ZoneCharge charge_; ///< of the glyphs
    std::vector<PenGlyph> placed_;
    ZoneCharge placedCharge_; ///< of these, and of their other orders
    bool runsFromRight_ = false;
};

} // namespace

bool hostHoldsText() {
    const auto extension = knownExtension();
    return rules().readsText && extension && extension->version >= 5;
}

void showText(Interpreter& interpreter, std::span<const Object> elements) {
    ContentLevel& level = interpreter.level;
    const TextState& text = interpreter.state.text;
    level.shown = ShownText();
    if (addsToClip(text)) {
        level.text.clip.clips = true;
        level.text.clip.hides = level.text.clip.hides || text.font == nullptr;
    }
    if (text.font == nullptr) {
        level.shown.hides = true;
    } else {
        Show(interpreter).run(elements);
    }
    if (level.shown.hides) {
        interpreter.omissions.note(Omission::text);
    }
}

} // namespace corvane
