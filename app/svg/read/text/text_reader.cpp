#include "app/svg/read/text/text_reader.h"

#include "app/artwork/geometry/geometry.h"
#include "app/artwork/text/characters.h"
#include "app/svg/read/paint/paint_style.h"
#include "app/svg/read/style/cascade.h"
#include "app/svg/read/style/decoration.h"
#include "app/svg/read/style/font_style.h"
#include "app/svg/text/font_names.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace corvane {

namespace {

/// Elements of text within one another. Each may have a list of places for every letter.
constexpr std::size_t deepestText = 64;

/// Letters that count as much as an element where a text is read again.
constexpr std::int64_t lettersOfAnElement = 64;

/// Scripts that stand upright in vertical text begin here, all but a few.
constexpr char32_t firstUpright = 0x1100;

/// Attributes of which the innermost element that has any counts, for they are not inherited as
/// properties are.
bool hasExactValues(const Attributes& attributes) {
    return attributes.has(Attribute::dataStrokeWidth) ||
           attributes.has(Attribute::dataStrokeDasharray) ||
           attributes.has(Attribute::dataStrokeMiterlimit) ||
           attributes.has(Attribute::dataResolution);
}

/// About where the letters of a text are, for paint that is fitted to them.
UserBox roughBox(pugi::xml_node text, const LetterPlace& start, double size) {
    constexpr double width = 0.5; // of a letter, in ems, as the next two
    constexpr double height = 0.8;
    constexpr double depth = 0.2;
    double letters = 1;
    for (const pugi::xml_node child : text.children()) {
        letters += static_cast<double>(std::string_view(child.value()).size() +
                                       std::string_view(child.child_value()).size());
    }
    UserBox box;
    const RealPoint origin{start.x.value_or(0), start.y.value_or(0)};
    box.add(origin.x, origin.y - height * size);
    box.add(origin.x + letters * width * size, origin.y + depth * size);
    return box;
}

/// What this program writes of a page stands as it is said, from the left.
TextOrder orderOf(const ComputedStyle& style, Tally& tally) {
    if (style.bidi != Bidi::overridden) {
        return style.rightToLeft ? TextOrder::rightToLeft : TextOrder::leftToRight;
    }
    if (style.rightToLeft) {
        tally.add("unicode-bidi");
        return TextOrder::rightToLeft;
    }
    return TextOrder::visual;
}

/// The side of the line's place that its letters are on.
TextAnchor anchorOf(const ComputedStyle& style) {
    if (!style.rightToLeft || style.anchor == TextAnchor::middle) {
        return style.anchor;
    }
    return style.anchor == TextAnchor::start ? TextAnchor::end : TextAnchor::start;
}

/// Adds up how far letters stand from `origin`, as their elements say.
void addPlaces(pugi::xml_node element, std::size_t depth, double origin,
               const LengthContext& lengths, double& sum, std::size_t& count) {
    for (const pugi::xml_node child : element.children()) {
        for (const double x : parseLengths(child.attribute("x").value(), Axis::x, lengths)) {
            sum += x - origin;
            ++count;
        }
        if (depth < deepestText) {
            addPlaces(child, depth + 1, origin, lengths, sum, count);
        }
    }
}

/// Whether all letters have the places that this program gave them, perhaps moved together. They
/// then follow one another, and need no places.
bool isExact(pugi::xml_node text, const Attributes& attributes, const LengthContext& lengths) {
    constexpr double rounding = 0.0005; // of one number that an editor wrote again
    constexpr double least = 0.01;
    const auto told = parseLength(attributes[Attribute::dataExact], Axis::x, lengths);
    if (!told) {
        return false;
    }
    const auto origin = parseLength(attributes[Attribute::x], Axis::x, lengths);
    double sum = 0;
    std::size_t count = 0;
    addPlaces(text, 1, origin.value_or(0), lengths, sum, count);
    return std::abs(sum - *told) <= least + rounding * static_cast<double>(count);
}

std::optional<ArtSource> sourceOf(const Attributes& attributes, const ReadingContext& context,
                                  bool idsTell) {
    if (!context.ours) {
        return std::nullopt;
    }
    const auto source = parseArtSource(attributes[Attribute::dataSource], context.sourceBase);
    const bool asksId = idsTell && !attributes.has(Attribute::dataSource);
    return source || !asksId ? source : sourceOfId(attributes[Attribute::id]);
}

} // namespace

void TextReader::open(pugi::xml_node element, const Attributes& attributes,
                      const ComputedStyle& style) {
    Level level;
    level.next = element.first_child();
    level.styled = element;
    level.style = style;
    level.shift = style.baselineShift;
    level.look.order = orderOf(style, context_.tally);
    if (!levels_.empty()) {
        const Level& outer = levels_.back();
        level.styled = hasExactValues(attributes) ? element : outer.styled;
        level.look.source = outer.look.source;
        level.look.element = outer.look.element;
        level.shift += outer.shift;
        level.look.fitted = outer.look.fitted;
        isBroken_ = isBroken_ || attributes.has(Attribute::x) || attributes.has(Attribute::y);
        if (style.bidi == Bidi::none) {
            level.look.order = outer.look.order;
        }
    }
    if (const auto source = sourceOf(attributes, context_, idsTell_)) {
        level.look.source = source;
        level.look.element = ++elements_;
    }
    fit(level, attributes);
    places_.open(attributes, {viewport_, style.fontSize}, letters_);
    levels_.push_back(std::move(level));
}

void TextReader::close() {
    if (levels_.back().isOnPath) {
        places_.leavePath();
        lines_.leavePath();
        isOnPath_ = false;
        afterBlank_ = true;
    }
    places_.close();
    levels_.pop_back();
}

void TextReader::fit(Level& level, const Attributes& attributes) {
    if (!attributes.has(Attribute::textLength)) {
        return;
    }
    const LengthContext lengths{viewport_, level.style.fontSize};
    const Axis axis = frame_.isVertical ? Axis::y : Axis::x;
    const auto length = parseLength(attributes[Attribute::textLength], axis, lengths);
    if (!length || !(*length > 0) || level.look.fitted.element != 0) {
        context_.tally.add("textLength"); // wrong, or of a part of what has a length
        return;
    }
    level.look.fitted = {++fitted_, *length,
                         attributes[Attribute::lengthAdjust] == "spacingAndGlyphs"};
}

void TextReader::visit(pugi::xml_node node) {
    bool foreign = false;
    const Element element = context_.index.elementOf(node, foreign);
    if (foreign) {
        return;
    }
    switch (element) {
    case Element::altGlyph: // its letters stand for the glyphs
        context_.tally.add("altGlyph");
        enter(node, element);
        return;
    case Element::tspan:
    case Element::a:
    case Element::textPath:
        enter(node, element);
        return;
    case Element::switchElement:
        context_.tally.add("switch");
        return;
    default:
        if (const std::string_view kind = ignoredKind(element); !kind.empty()) {
            context_.tally.add(kind);
        }
    }
}

/// An element of text within another.
void TextReader::enter(pugi::xml_node node, Element element) {
    if (levels_.size() == deepestText) {
        context_.tally.add("text nested too deeply");
        return;
    }
    const Attributes attributes(node);
    if (isCounted_) {
        context_.expand(1 + attributes.cost());
    }
    const ComputedStyle style =
        styleOf(node, attributes, levels_.back().style, viewport_, context_);
    if (!style.displayed) {
        context_.tally.add("hidden element");
        return;
    }
    if (element != Element::textPath) {
        open(node, attributes, style);
        return;
    }
    const LengthContext lengths{viewport_, style.fontSize};
    std::optional<TextPath> path;
    if (isOnPath_) {
        context_.tally.add(ignoredKind(element)); // a path has no other within it
    } else {
        path = readTextPath(attributes, frame_.toArt, lengths, context_);
    }
    if (path) {
        open(node, attributes, style);
        enterPath(std::move(*path));
    }
}

void TextReader::enterPath(TextPath path) {
    lines_.enterPath(std::move(path));
    places_.enterPath();
    levels_.back().isOnPath = isOnPath_ = true;
    afterBlank_ = true;
}

/// The first family that is named; others of the machine may stand in for it.
void TextReader::setFont(LetterLook& look, const ComputedStyle& style) {
    const std::vector<FamilyName> families = parseFamilies(style.families);
    FontFacts facts;
    facts.family = genericName(GenericFamily::sansSerif);
    if (!families.empty() && isPlainText(families[0].name) && !families[0].name.empty() &&
        families[0].name.size() <= FontTable::longestFamily) {
        const FamilyFace first = faceOfFamily(families[0].name);
        facts.family = first.family;
        look.face = first.face;
        facts.isPageFont =
            facts.family.starts_with(pageFamilyPrefix) && !FontTable::endsInNumber(facts.family);
        look.face = facts.isPageFont ? look.face : 0;
    }
    if (families.size() > 1 && !families[1].isKeyword && isPlainText(families[1].name) &&
        families[1].name.size() <= FontTable::longestFamily) {
        facts.realFamily = families[1].name;
    }
    for (const GenericFamily generic :
         {GenericFamily::sansSerif, GenericFamily::serif, GenericFamily::monospace}) {
        if (!families.empty() && families.back().isKeyword &&
            families.back().name == genericName(generic)) {
            facts.generic = generic;
        }
    }
    facts.weight = style.fontWeight;
    facts.italic = style.italic;
    look.font = context_.document.addFont(facts);
}

/// Lines of the colour of the letters are painted as these are.
void TextReader::decorate(LetterLook& look, const ComputedStyle& style) {
    if (style.decoration && (frame_.isClip || !context_.holdsAppearance)) {
        context_.tally.add("text-decoration");
        return;
    }
    for (const Decoration* each = style.decoration.get(); each != nullptr;
         each = each->outer.get()) {
        LetterDecoration lines{.lines = {.isUnder = each->isUnder,
                                         .isOver = each->isOver,
                                         .isThrough = each->isThrough},
                               .size = each->fontSize,
                               .thickness = each->thickness};
        const bool asLetters = each->fill == style.fill && each->stroke == style.stroke;
        const bool isPainted = each->fill.kind != PaintValue::Kind::none ||
                               each->stroke.kind != PaintValue::Kind::none;
        if (!isPainted && !each->saysColour) {
            continue;
        }
        if (each->saysColour || (!asLetters && each->fill.kind == PaintValue::Kind::colour)) {
            lines.lines.hasColour = true;
            lines.lines.colour = plainColour(each->saysColour ? each->colour : each->fill.colour);
        } else if (!asLetters) {
            context_.tally.add("text-decoration"); // in another paint than a colour
        }
        look.decorations.insert(look.decorations.begin(), lines);
    }
}

const LetterLook& TextReader::lookOf(Level& level) {
    LetterLook& look = level.look;
    if (level.looked) {
        return look;
    }
    level.looked = true;
    const ComputedStyle& style = level.style;
    setFont(look, style);
    look.size = style.fontSize;
    look.spacing = style.letterSpacing;
    look.wordSpacing = style.wordSpacing;
    look.rise = level.shift - (frame_.isVertical ? 0 : style.baseline * style.fontSize);
    look.keepsBlanks = style.keepsBlanks;
    look.anchor = anchorOf(style);
    if (!style.visible) {
        context_.tally.add("hidden element"); // its letters keep their place
        return look;
    }
    decorate(look, style);
    if (frame_.isClip) {
        look.style.fillPaint = 0;
        look.style.strokePaint = 0;
        look.style.clip = 1;
        return look;
    }
    // The line's matrix holds what makes strokes uneven. Ours was of 16.16 numbers.
    const RealMatrix& toArt = frame_.toArt;
    const double stretch = meanStretch(context_.ours ? realMatrix(fixedMatrix(toArt)) : toArt);
    look.style =
        paintedStyle(style, Attributes(level.styled), {stretch, 0, 0, stretch, 0, 0}, context_);
    if (context_.holdsAppearance) {
        look.fillOpacity = look.style.fillPaint != 0 ? fillOpacityOf(style) : 1;
        look.strokeOpacity = look.style.strokePaint != 0 ? strokeOpacityOf(style) : 1;
    }
    const PaintUse use{frame_.toArt, box_, {viewport_, style.fontSize}};
    paints_.paint(look.style, style, use, use);
    return look;
}

/// Line ends and tabs are blanks; of several, where they are not kept, the first counts.
void TextReader::readLetters(std::string_view text) {
    if (isCounted_) {
        context_.expand(static_cast<std::int64_t>(text.size()) / lettersOfAnElement);
    }
    while (!text.empty()) {
        const Character character = decodeCharacter(text);
        std::string_view letter = text.substr(0, std::max<std::size_t>(character.length, 1));
        text.remove_prefix(letter.size());
        const bool blank = character.length == 1 && isBlank(letter.front());
        Level& level = levels_.back();
        if (blank && afterBlank_ && !level.style.keepsBlanks) {
            continue;
        }
        const bool isLineEnd = letter == "\n";
        if (blank) {
            letter = " ";
        } else if (character.length == 0) {
            letter = "\xEF\xBF\xBD";
        } else if (!isMarkupCharacter(character.code)) {
            continue;
        } else if (frame_.isVertical && !frame_.isColumn && !level.style.upright &&
                   character.code < firstUpright && !isSideways_) {
            isSideways_ = true;
            context_.tally.add("text-orientation");
        }
        std::string changed;
        if (blank) {
            cases_.blank();
        } else if (level.style.letterCase != LetterCase::asTyped && character.length != 0) {
            changed = cases_.changed(character.code, level.style.letterCase);
            letter = changed;
        }
        afterBlank_ = blank && !level.style.keepsBlanks;
        const bool endsLine = blank && isLineEnd && level.style.keepsLines;
        lines_.add({letter, blank, endsLine}, places_.of(letters_++), lookOf(level));
    }
}

bool TextReader::read(pugi::xml_node text, const Attributes& attributes,
                      const ComputedStyle& style) {
    if (context_.ours && isExact(text, attributes, {viewport_, style.fontSize})) {
        places_.follow();
    }
    open(text, attributes, style);
    box_ = roughBox(text, places_.of(0), style.fontSize);
    while (!levels_.empty()) {
        const pugi::xml_node node = levels_.back().next;
        if (!node) {
            close();
            continue;
        }
        levels_.back().next = node.next_sibling();
        if (node.type() == pugi::node_element) {
            visit(node);
        } else if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata) {
            readLetters(node.value());
        }
    }
    const bool made = lines_.finish();
    if (made && !isBroken_ && !style.flow.empty()) {
        context_.tally.add(style.flow); // nothing says where its lines stand
    }
    return made;
}

} // namespace corvane
