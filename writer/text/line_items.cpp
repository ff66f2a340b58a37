#include "writer/text/line_items.h"

#include "fonts/order/text_order.h"
#include "fonts/shaped_text.h"
#include "host/utf8.h"
#include "reader/font/characters.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/fixed.h"
#include "writer/text/blanks.h"
#include "writer/text/page_letters.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace corvane {

namespace {

struct ChosenFont {
    PageFont* ofPage = nullptr;
    NewFont* added = nullptr;
    friend bool operator==(const ChosenFont&, const ChosenFont&) = default;
};

struct Letter {
    char32_t character = 0;
    std::size_t run = 0;
    double shift = 0;      ///< of it and what follows it, in ems
    std::int32_t face = 0; ///< of the run's font
    double turn = 0;       ///< degrees
    ChosenFont font = {};
};

/// Takes the place of a run that stays.
constexpr char32_t objectCharacter = 0xFFFC;

/// Of a font that has no blank.
constexpr double usualSpace = 0.25;

bool isBlank(char32_t character) {
    return isBlankText({&character, 1});
}

class Itemizer {
public:
    Itemizer(const TextLine& line, std::span<const LineRun> runs, const PageFonts* ofPage,
             FontChoice& choice)
        : line_(line), runs_(runs), ofPage_(ofPage), choice_(choice) {}

    LineItems run() {
        if (line_.order != TextOrder::visual) {
            addParagraph(0, runs_.size());
        } else {
            for (std::size_t i = 0; i < runs_.size(); ++i) {
                addParagraph(i, i + 1);
            }
        }
        std::erase_if(result_.items, [this](const LineItem& item) { return isFaulty(item.run); });
        return std::move(result_);
    }

private:
    void addParagraph(std::size_t first, std::size_t end);
    void readLetters(std::size_t run);
    bool turnIntoReadingOrder();
    void chooseFonts(std::size_t from, std::size_t to);
    void chooseByWord(std::size_t from, std::size_t to);
    void chooseForWord(std::size_t from, std::size_t to);
    bool takeFont(std::size_t from, std::size_t to);
    void addItem(std::size_t from, std::size_t to, bool isRightToLeft);
    void addPageGlyphs(LineItem& item, std::size_t from, std::size_t to);
    void addShapedGlyphs(LineItem& item, std::size_t from, std::size_t to, bool isRightToLeft);

    std::u32string_view part(std::size_t from, std::size_t to) const {
        return std::u32string_view(text_).substr(from, to - from);
    }
    std::u32string_view shownPart(std::size_t from, std::size_t to) const {
        return std::u32string_view(shown_).substr(from, to - from);
    }
    PageFont* pageFontOf(std::size_t run) const {
        PageFont* const font = ofPage_ == nullptr ? nullptr : ofPage_->find(runs_[run].run.font);
        return font != nullptr && font->isVertical() == line_.isVertical ? font : nullptr;
    }
    static bool canType(PageFont& font, std::u32string_view text) {
        return std::ranges::none_of(text, needsShaping) && encodeText(font, text);
    }
    /// Letters that are set apart, moved, or of different faces are not of one glyph.
    std::vector<LetterFacts> placesOf(std::size_t from, std::size_t to) const {
        std::vector<LetterFacts> places;
        for (std::size_t i = from; i < to; ++i) {
            const bool isApart = letters_[i].shift != 0 || letters_[i].turn != 0 ||
                                 runs_[letters_[i].run].run.spacing != 0 ||
                                 (i > from && letters_[i].face != letters_[i - 1].face);
            places.push_back({.face = letters_[i].face, .mayJoin = !isApart});
        }
        return places;
    }
    bool isFaulty(std::size_t run) const {
        return std::ranges::find(result_.faults, run, &LineFault::run) != result_.faults.end();
    }
    void fail(std::size_t run, Reason reason, const std::string& name) {
        if (!isFaulty(run)) {
            result_.faults.push_back({run, {reason, name}});
        }
    }

    const TextLine& line_;
    std::span<const LineRun> runs_;
    const PageFonts* ofPage_;
    FontChoice& choice_;
    LineItems result_;

    // Of the paragraph, in the order of reading.
    std::vector<Letter> letters_;
    std::u32string text_;
    std::u32string shown_; ///< the same, with brackets as they are seen: shaping turns them itself
    std::vector<std::uint32_t> scripts_;
};

void Itemizer::readLetters(std::size_t number) {
    if (!runs_[number].isTyped()) {
        letters_.push_back({.character = objectCharacter, .run = number});
        return;
    }
    const TextRun& run = runs_[number].run;
    auto piece = run.pieces.begin();
    std::int32_t face = 0;
    double turn = 0;
    for (std::size_t at = 0; at < run.text.size();) {
        const auto [code, length] = decodeCharacter(std::string_view(run.text).substr(at));
        Letter letter{.character = length == 0 ? U'\xFFFD' : code, .run = number};
        for (; piece != run.pieces.end() && std::cmp_less_equal(piece->start, at); ++piece) {
            letter.shift += realFromFixed(piece->shift);
            face = piece->face;
            turn = realFromFixed(piece->turn);
        }
        letter.face = face;
        letter.turn = turn;
        letters_.push_back(letter);
        at += std::max<std::size_t>(length, 1);
        if (letters_.size() > budget::lineCharacters) {
            failException(Exception::limit);
        }
    }
}

/// Letters of a page are in the order in which they stand, each with the marks behind it that are
/// of its glyph, or were typed to it. Whether they run from the right.
bool Itemizer::turnIntoReadingOrder() {
    std::vector<bool> isBehind;
    for (std::size_t i = 0; i < letters_.size(); ++i) {
        const Letter& letter = letters_[i];
        isBehind.push_back(i > 0 && isMark(letter.character) && letter.shift == 0 &&
                           letter.face == letters_[i - 1].face);
    }
    const ReadLine line = readingWithMarks(text_, isBehind);
    std::vector<Letter> read;
    for (std::size_t i = 0; i < letters_.size(); ++i) {
        read.push_back(letters_[line.order[i]]);
        if (line.levels[i] % 2 != 0) {
            read.back().character = mirrored(read.back().character);
        }
    }
    letters_ = std::move(read);
    std::ranges::transform(letters_, text_.begin(), &Letter::character);
    return line.isRightToLeft;
}

void Itemizer::addParagraph(std::size_t first, std::size_t end) {
    letters_.clear();
    for (std::size_t i = first; i < end; ++i) {
        readLetters(i);
    }
    text_.clear();
    std::ranges::transform(letters_, std::back_inserter(text_), &Letter::character);
    bool isRightToLeft = line_.order == TextOrder::rightToLeft;
    if (line_.order == TextOrder::visual) {
        isRightToLeft = turnIntoReadingOrder();
    }
    const std::vector<TextLevel> levels = levelsOf(text_, isRightToLeft);
    scripts_ = scriptsOf(text_);
    shown_ = text_;
    for (std::size_t i = 0; i < shown_.size(); ++i) {
        shown_[i] = levels[i] % 2 != 0 ? mirrored(text_[i]) : text_[i];
    }
    for (std::size_t from = 0; from < letters_.size();) {
        const std::size_t run = letters_[from].run;
        std::size_t to = from;
        while (to < letters_.size() && letters_[to].run == run) {
            ++to;
        }
        if (runs_[run].isTyped()) {
            chooseFonts(from, to);
        }
        from = to;
    }
    std::vector<std::size_t> starts;
    std::vector<TextLevel> itemLevels;
    for (std::size_t i = 0; i < letters_.size(); ++i) {
        const Letter& letter = letters_[i];
        const bool goesOn =
            i > 0 && letters_[i - 1].run == letter.run && letters_[i - 1].font == letter.font &&
            levels[i - 1] == levels[i] &&
            (letter.font.added == nullptr || (scripts_[i - 1] == scripts_[i] && letter.shift == 0));
        if (!goesOn) {
            starts.push_back(i);
            itemLevels.push_back(levels[i]);
        }
    }
    for (const std::size_t item : visualOrder(itemLevels)) {
        const std::size_t to = item + 1 < starts.size() ? starts[item + 1] : letters_.size();
        addItem(starts[item], to, itemLevels[item] % 2 != 0);
    }
}

void Itemizer::chooseFonts(std::size_t from, std::size_t to) {
    PageFont* const font = pageFontOf(letters_[from].run);
    if (font != nullptr && canType(*font, shownPart(from, to))) {
        for (std::size_t i = from; i < to; ++i) {
            letters_[i].font.ofPage = font;
        }
        return;
    }
    chooseByWord(from, to);
}

/// A word is of one font, if any has all of it. Blanks are of that of the word before them.
void Itemizer::chooseByWord(std::size_t from, std::size_t to) {
    std::size_t word = from;
    while (word < to && isBlank(text_[word])) {
        ++word;
    }
    if (word == to) {
        chooseForWord(from, to);
        return;
    }
    const std::size_t first = word;
    while (word < to) {
        std::size_t end = word;
        while (end < to && !isBlank(text_[end])) {
            ++end;
        }
        chooseForWord(word, end);
        for (; end < to && isBlank(text_[end]); ++end) {
            letters_[end].font = letters_[end - 1].font;
        }
        word = end;
    }
    for (std::size_t i = from; i < first; ++i) {
        letters_[i].font = letters_[first].font;
    }
}

/// Gives the letters one font of the page or of the machine; false where none shows all of them.
bool Itemizer::takeFont(std::size_t from, std::size_t to) {
    const std::size_t run = letters_[from].run;
    const Font wanted = runs_[run].run.font;
    ChosenFont chosen{.ofPage = pageFontOf(run)};
    if (chosen.ofPage == nullptr || !canType(*chosen.ofPage, shownPart(from, to))) {
        std::u32string seen;
        std::ranges::remove_copy_if(part(from, to), std::back_inserter(seen), isUnseen);
        chosen = {.added = choice_.find(wanted, line_.isVertical, seen)};
    }
    if (chosen == ChosenFont()) {
        return false;
    }
    if (chosen.added != nullptr) {
        choice_.note(wanted, *chosen.added, part(from, to));
    }
    for (std::size_t i = from; i < to; ++i) {
        letters_[i].font = chosen;
    }
    return true;
}

void Itemizer::chooseForWord(std::size_t from, std::size_t to) {
    if (takeFont(from, to)) {
        return;
    }
    const std::size_t run = letters_[from].run;
    for (std::size_t at = from; at < to;) {
        std::size_t end = at + 1;
        while (end < to && isMark(text_[end])) {
            ++end;
        }
        if (!takeFont(at, end)) {
            const std::string restricted =
                choice_.restricted(runs_[run].run.font, line_.isVertical);
            return restricted.empty() ? fail(run, Reason::missingLetter, toUtf8(part(at, end)))
                                      : fail(run, Reason::restrictedFont, restricted);
        }
        at = end;
    }
}

void Itemizer::addItem(std::size_t from, std::size_t to, bool isRightToLeft) {
    const Letter& first = letters_[from];
    LineItem item{
        .run = first.run, .pageFont = first.font.ofPage, .added = first.font.added, .glyphs = {}};
    if (item.pageFont != nullptr) {
        addPageGlyphs(item, from, to);
        if (isRightToLeft) {
            std::ranges::reverse(item.glyphs);
        }
    } else if (item.added != nullptr) {
        addShapedGlyphs(item, from, to, isRightToLeft);
    }
    if (isRightToLeft && line_.order != TextOrder::visual) {
        // What follows a letter is left of it.
        for (LineGlyph& glyph : item.glyphs) {
            glyph.behind -= std::exchange(glyph.before, 0);
        }
    }
    result_.items.push_back(std::move(item));
}

void Itemizer::addPageGlyphs(LineItem& item, std::size_t from, std::size_t to) {
    const auto encoded = encodeText(*item.pageFont, shownPart(from, to), placesOf(from, to));
    if (!encoded) {
        // A ligature was divided: its letters alone are not in the font.
        std::size_t at = from;
        while (at + 1 < to && encodeText(*item.pageFont, shownPart(at, at + 1))) {
            ++at;
        }
        return fail(item.run, Reason::missingLetter, toUtf8(part(at, at + 1)));
    }
    double shift = 0;
    for (std::size_t i = 0; i < encoded->size(); ++i) {
        const EncodedLetters& each = (*encoded)[i];
        const std::size_t start = from + each.start;
        const std::size_t end = i + 1 < encoded->size() ? from + (*encoded)[i + 1].start : to;
        item.glyphs.push_back({.codes = each.codes,
                               .advance = each.advance,
                               .way = line_.isVertical ? columnAdvance : each.advance,
                               .before = std::exchange(shift, 0) + letters_[start].shift,
                               .count = each.count,
                               .endsLetter = each.count > 0,
                               .turn = letters_[start].turn});
        for (std::size_t within = start + 1; within < end; ++within) {
            shift += letters_[within].shift;
        }
    }
}

/// What the letters of a cluster mean to readers. Joiners are a part of how words are written.
std::u32string meaningOf(std::u32string_view letters) {
    constexpr std::u32string_view joiners = U"\u200C\u200D";
    std::u32string text;
    std::ranges::remove_copy_if(letters, std::back_inserter(text), [&](char32_t each) {
        return isFormat(each) && joiners.find(each) == joiners.npos;
    });
    return text;
}

void Itemizer::addShapedGlyphs(LineItem& item, std::size_t from, std::size_t to,
                               bool isRightToLeft) {
    const std::vector<ShapedGlyph> shaped =
        shapeText(item.added->font(), {.text = text_,
                                       .start = from,
                                       .count = to - from,
                                       .isRightToLeft = isRightToLeft,
                                       .isVertical = line_.isVertical,
                                       .script = scripts_[from],
                                       .hasLigatures = runs_[item.run].run.spacing == 0});
    std::vector<std::size_t> starts(shaped.size());
    std::ranges::transform(shaped, starts.begin(), &ShapedGlyph::cluster);
    std::ranges::sort(starts);
    for (std::size_t i = 0; i < shaped.size(); ++i) {
        const ShapedGlyph& glyph = shaped[i];
        const auto next = std::ranges::upper_bound(starts, glyph.cluster);
        const std::size_t end = next == starts.end() ? to : *next;
        const bool isFirst = i == 0 || shaped[i - 1].cluster != glyph.cluster;
        const bool isLast = i + 1 == shaped.size() || shaped[i + 1].cluster != glyph.cluster;
        const bool isLead = isRightToLeft ? isLast : isFirst;
        const bool isMissingBlank = glyph.glyph == 0 && isUnseen(text_[glyph.cluster]);
        const std::u32string meaning =
            isLead ? meaningOf(part(glyph.cluster, end)) : std::u32string();
        // In a column all take the same room.
        const double column = isLead ? columnAdvance : 0;
        const double advance =
            line_.isVertical ? columnAdvance : item.added->width(glyph.glyph) / 1000;
        const double way = line_.isVertical ? column
                           : isMissingBlank ? blankAdvance(text_[glyph.cluster], usualSpace)
                                            : glyph.advance;
        const bool isLetterEnd =
            isRightToLeft ? !isMark(text_[glyph.cluster]) : end == to || !isMark(text_[end]);
        item.glyphs.push_back(
            {.codes = {},
             .noted = isMissingBlank ? notNoted : item.added->note(glyph.glyph, meaning),
             .advance = advance,
             .way = way,
             .x = glyph.x,
             .y = glyph.y,
             .before = isLead ? letters_[glyph.cluster].shift : 0,
             .endsLetter = isLast && isLetterEnd,
             .turn = letters_[glyph.cluster].turn});
    }
}

} // namespace

LineItems itemsOf(const TextLine& line, std::span<const LineRun> runs, const PageFonts* ofPage,
                  FontChoice& choice) {
    return Itemizer(line, runs, ofPage, choice).run();
}

} // namespace corvane
