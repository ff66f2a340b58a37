#include "app/svg/text/line_order.h"

#include "app/artwork/geometry/geometry.h"
#include "app/svg/text/text_shift.h"
#include "fonts/order/text_order.h"
#include "host/utf8.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

/// Ems that are rounding, where shifts are sums of others.
constexpr double roundedShift = 0x1p-12;

/// Letters are spaced visibly from here on, in ems.
constexpr double seenSpacing = 0.015;

/// Marks behind a letter in a piece of its own face are of one glyph with it: others have faces of
/// their own.
struct LineLetter {
    std::size_t run = 0;
    char32_t character = 0;
    std::u32string marks = {};
    double shift = 0; ///< of it and what follows it, in the line's space
    std::int32_t face = 0;
};

double realLength(Fixed length) {
    return static_cast<double>(length) / fixedOne;
}

/// Nothing where letters are turned, or are none.
std::optional<std::vector<LineLetter>> lettersOf(std::span<const TextRun> runs) {
    std::vector<LineLetter> letters;
    for (std::size_t number = 0; number < runs.size(); ++number) {
        const TextRun& run = runs[number];
        auto piece = run.pieces.begin();
        std::int32_t face = 0;
        for (std::size_t at = 0; at < run.text.size();) {
            const auto [code, length] = decodeCharacter(run.text.substr(at));
            LineLetter letter{.run = number, .character = code};
            for (; piece != run.pieces.end() && std::cmp_less_equal(piece->start, at); ++piece) {
                if (piece->turn != 0) {
                    return std::nullopt;
                }
                letter.shift += lengthOfShift(piece->shift, realLength(run.size));
                face = piece->face;
            }
            if (length == 0) {
                return std::nullopt;
            }
            letter.face = face;
            at += length;
            const bool isBehind = letter.shift == 0 && !letters.empty() && isMark(code) &&
                                  letters.back().run == number && letters.back().face == face;
            if (isBehind) {
                letters.back().marks += code;
            } else {
                letters.push_back(letter);
            }
        }
    }
    return letters;
}

std::u32string textOf(std::span<const LineLetter> letters) {
    std::u32string text(letters.size(), U' ');
    std::ranges::transform(letters, text.begin(), &LineLetter::character);
    return text;
}

/// Letters in a new order, each where it is. The first shift moves the line, whichever comes first.
std::vector<LineLetter> ordered(std::span<const LineLetter> letters,
                                std::span<const std::size_t> order) {
    std::vector<double> places; // of letters, as far as they are moved
    double place = 0;
    for (const LineLetter& letter : letters) {
        places.push_back(place += letter.shift);
    }
    std::vector<LineLetter> moved;
    for (std::size_t i = 0; i < order.size(); ++i) {
        moved.push_back(letters[order[i]]);
        moved.back().shift =
            i == 0 ? letters.front().shift : places[order[i]] - places[order[i - 1]];
    }
    return moved;
}

/// Nothing where letters of a run are apart.
std::optional<std::vector<OrderedRun>> runsOf(std::span<const LineLetter> letters,
                                              std::span<const TextRun> runs) {
    std::vector<OrderedRun> all;
    std::vector<bool> isDone(runs.size());
    std::int32_t face = 0;
    for (const LineLetter& letter : letters) {
        if (all.empty() || all.back().run != letter.run) {
            if (isDone[letter.run]) {
                return std::nullopt;
            }
            isDone[letter.run] = true;
            all.push_back({.run = letter.run});
            face = 0;
        }
        OrderedRun& run = all.back();
        const double em = realLength(runs[letter.run].size);
        const Fixed shift =
            std::abs(letter.shift) > roundedShift * em ? shiftOfLength(letter.shift, em) : 0;
        if (shift != 0 || letter.face != face) {
            run.pieces.push_back({.start = static_cast<std::int32_t>(run.text.size()),
                                  .shift = shift,
                                  .face = letter.face});
            face = letter.face;
        }
        appendCharacter(run.text, letter.character);
        for (const char32_t mark : letter.marks) {
            appendCharacter(run.text, mark);
        }
    }
    return all;
}

/// What nobody sees may be left out of the order. Marks that no script has have no faces of their
/// own: it is not known whose they are.
bool standsAlone(const LineLetter& letter) {
    const auto isKnown = [](char32_t each) {
        return !isMark(each) || (isRightToLeft(each) && !isFormat(each));
    };
    return isKnown(letter.character) && std::ranges::all_of(letter.marks, isKnown);
}

/// Marks alone are seen with circles in some programs, where these put them in order.
bool isLetterFromRight(char32_t character) {
    return isRightToLeft(character) && !isMark(character);
}

/// Whether the runs are of those letters: no mark has come behind a letter of another glyph.
bool hasGlyphs(std::span<const OrderedRun> ordered, std::span<const TextRun> runs,
               std::span<const LineLetter> letters) {
    std::vector<TextRun> written;
    for (const OrderedRun& each : ordered) {
        written.push_back(runs[each.run]);
        written.back().text = each.text;
        written.back().pieces = each.pieces;
    }
    const auto again = lettersOf(written);
    return again && std::ranges::equal(*again, letters, {}, &LineLetter::marks, &LineLetter::marks);
}

/// Programs do not agree on which side of a letter from the right its room is.
bool isSpaced(const TextRun& run) {
    return std::abs(realLength(run.spacing)) > seenSpacing * realLength(run.size);
}

/// A page that shows the right end first shows it as it is read.
bool isShownFromRight(std::span<const TextRun> standing) {
    return standing.front().source.ordinal > standing.back().source.ordinal;
}

} // namespace

std::optional<OrderedLine> asRead(std::span<const TextRun> standing) {
    const auto letters = lettersOf(standing);
    if (!letters || !std::ranges::all_of(*letters, standsAlone) ||
        std::ranges::none_of(*letters, isLetterFromRight, &LineLetter::character) ||
        std::ranges::any_of(standing, isSpaced)) {
        return std::nullopt;
    }
    const std::u32string text = textOf(*letters);
    const auto line = isShownFromRight(standing) ? readingOf(text, true) : readingOf(text);
    if (!line) {
        return std::nullopt;
    }
    std::vector<LineLetter> read = ordered(*letters, line->order);
    for (std::size_t i = 0; i < read.size(); ++i) {
        if (line->levels[i] % 2 != 0) {
            read[i].character = mirrored(read[i].character);
        }
    }
    auto runs = runsOf(read, standing);
    if (!runs || !hasGlyphs(*runs, standing, read)) {
        return std::nullopt;
    }
    return OrderedLine{line->isRightToLeft ? TextOrder::rightToLeft : TextOrder::leftToRight,
                       std::move(*runs)};
}

std::optional<OrderedLine> asSeen(std::span<const TextRun> read, TextOrder order) {
    const auto letters = lettersOf(read);
    if (!letters || letters->empty() || order == TextOrder::visual) {
        return std::nullopt;
    }
    const std::vector<TextLevel> levels =
        levelsOf(textOf(*letters), order == TextOrder::rightToLeft);
    const std::vector<std::size_t> places = visualOrder(levels);
    std::vector<LineLetter> seen = ordered(*letters, places);
    for (std::size_t i = 0; i < seen.size(); ++i) {
        if (levels[places[i]] % 2 != 0) {
            seen[i].character = mirrored(seen[i].character);
        }
    }
    auto runs = runsOf(seen, read);
    return runs ? std::optional(OrderedLine{TextOrder::visual, std::move(*runs)}) : std::nullopt;
}

} // namespace corvane
