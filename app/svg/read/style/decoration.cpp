#include "app/svg/read/style/decoration.h"

#include "app/svg/read/style/css_colour.h"
#include "app/svg/read/style/property_values.h"
#include "app/svg/read/values/number.h"

#include <array>
#include <string>
#include <utility>

namespace corvane {

namespace {

constexpr std::string_view kind = "text-decoration";
/// Thicker lines are no lines.
constexpr double mostEms = 10;

class DecorationReader {
public:
    DecorationReader(const ComputedStyle& style, const LengthContext& lengths, Tally& tally)
        : lengths_(lengths), tally_(tally) {
        lengths_.viewport = {style.fontSize, style.fontSize}; // percentages are of the em
        decoration_.outer = style.decoration;
        decoration_.depth += style.decoration ? style.decoration->depth : 0;
        decoration_.fontSize = style.fontSize;
        decoration_.fill = style.fill;
        decoration_.stroke = style.stroke;
    }

    /// Words of any of the properties, in any order; "rgb(0, 0, 0)" is one.
    void read(std::string_view text) {
        while (!(text = trimmed(text)).empty()) {
            std::size_t end = 0;
            for (int depth = 0; end < text.size() && (depth > 0 || !isBlank(text[end])); ++end) {
                depth += text[end] == '(' ? 1 : text[end] == ')' ? -1 : 0;
            }
            readWord(text.substr(0, end));
            text.remove_prefix(end);
        }
    }

    /// Which lines there are, whatever was read before.
    void readLines(std::string_view text) {
        decoration_.isUnder = decoration_.isOver = decoration_.isThrough = saysNone_ = false;
        read(text);
    }

    /// "none" beside a line is wrong, as if nothing was said.
    bool hasLine() const {
        return !saysNone_ && (decoration_.isUnder || decoration_.isOver || decoration_.isThrough);
    }
    Decoration take() { return std::move(decoration_); }
    /// What cannot be held counts only where there is a line.
    void countIgnored() {
        if (isIgnored_) {
            tally_.add(kind);
        }
    }

private:
    void readWord(std::string_view word) {
        // The colour that letters have is what lines have, in SVG that of their fill.
        constexpr std::array harmless{"solid", "auto",   "from-font", "blink",       "initial",
                                      "unset", "revert", "inherit",   "currentcolor"};
        if (const auto line = keywordIn(word, {"underline", "overline", "line-through"})) {
            (*line == 0   ? decoration_.isUnder
             : *line == 1 ? decoration_.isOver
                          : decoration_.isThrough) = true;
        } else if (isWord(word, "none")) {
            saysNone_ = true;
        } else if (const auto colour = parseColour(word)) {
            setColour(colour->screen, colour->alpha);
        } else if (const auto length = parseLength(word, Axis::x, lengths_);
                   length && *length > 0 && *length <= mostEms * decoration_.fontSize) {
            decoration_.thickness = *length;
        } else {
            bool isHarmless = false;
            for (const std::string_view each : harmless) {
                isHarmless = isHarmless || isWord(word, each);
            }
            isIgnored_ = isIgnored_ || !isHarmless;
        }
    }

    void setColour(ScreenColour colour, double alpha) {
        decoration_.saysColour = true;
        decoration_.colour = colour;
        isIgnored_ = isIgnored_ || alpha != 1;
    }

    LengthContext lengths_;
    Tally& tally_;
    Decoration decoration_;
    bool saysNone_ = false;
    bool isIgnored_ = false;
};

} // namespace

void readDecoration(ComputedStyle& style, const Declared& declared, const LengthContext& lengths,
                    Tally& tally) {
    DecorationReader reader(style, lengths, tally);
    reader.read(valueOf(declared, Attribute::textDecoration));
    for (const Attribute property : {Attribute::textDecorationStyle, Attribute::textDecorationColor,
                                     Attribute::textDecorationThickness}) {
        reader.read(valueOf(declared, property));
    }
    if (declared.has(Attribute::textDecorationLine)) {
        reader.readLines(valueOf(declared, Attribute::textDecorationLine));
    }
    if (reader.hasLine() && style.decoration && style.decoration->depth == deepestDecoration) {
        tally.add(kind);
    } else if (reader.hasLine()) {
        reader.countIgnored();
        style.decoration = std::make_shared<const Decoration>(reader.take());
    }
}

} // namespace corvane
