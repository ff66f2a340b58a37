#include "fonts/order/text_order.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include <fribidi/fribidi.h>
#include <hb.h>

namespace corvane {

namespace {

hb_unicode_funcs_t* unicode() {
    return hb_unicode_funcs_get_default();
}

bool isBlank(hb_codepoint_t character) {
    const auto category = hb_unicode_general_category(unicode(), character);
    return category == HB_UNICODE_GENERAL_CATEGORY_SPACE_SEPARATOR;
}

bool isOfItsOwn(hb_script_t script) {
    return script != HB_SCRIPT_COMMON && script != HB_SCRIPT_INHERITED &&
           script != HB_SCRIPT_UNKNOWN;
}

} // namespace

std::vector<TextLevel> levelsOf(std::u32string_view line, bool isRightToLeft) {
    const std::vector<FriBidiChar> text(line.begin(), line.end());
    const auto length = static_cast<FriBidiStrIndex>(text.size());
    std::vector<FriBidiCharType> types(text.size());
    std::vector<FriBidiBracketType> brackets(text.size());
    std::vector<FriBidiLevel> embedding(text.size());
    fribidi_get_bidi_types(text.data(), length, types.data());
    fribidi_get_bracket_types(text.data(), length, types.data(), brackets.data());
    FriBidiParType base = isRightToLeft ? FRIBIDI_PAR_RTL : FRIBIDI_PAR_LTR;
    const TextLevel own = isRightToLeft ? 1 : 0;
    if (fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), length, &base,
                                            embedding.data()) == 0) {
        return std::vector<TextLevel>(text.size(), own);
    }
    std::vector<TextLevel> levels(text.size());
    std::ranges::transform(embedding, levels.begin(), [](FriBidiLevel level) {
        return static_cast<TextLevel>(std::max<int>(level, 0));
    });
    // Blanks at the end of a line are of its own direction (rule L1).
    for (std::size_t i = line.size(); i-- > 0 && isBlank(line[i]);) {
        levels[i] = own;
    }
    return levels;
}

std::vector<std::size_t> visualOrder(std::span<const TextLevel> levels) {
    std::vector<std::size_t> order(levels.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const TextLevel highest = levels.empty() ? TextLevel{0} : std::ranges::max(levels);
    // Rule L2: from the highest level down, each stretch of it and above is turned round.
    for (TextLevel level = highest; level > 0; --level) {
        for (std::size_t i = 0; i < order.size();) {
            std::size_t end = i;
            while (end < order.size() && levels[order[end]] >= level) {
                ++end;
            }
            std::reverse(order.begin() + static_cast<std::ptrdiff_t>(i),
                         order.begin() + static_cast<std::ptrdiff_t>(end));
            i = std::max(end, i + 1);
        }
    }
    return order;
}

char32_t mirrored(char32_t character) {
    return hb_unicode_mirroring(unicode(), character);
}

namespace {

/// Whether characters of those levels, so ordered, stand as they did, their brackets turned alike.
bool standsAgain(const ReadLine& line, std::u32string_view read,
                 std::span<const TextLevel> levels) {
    const std::vector<std::size_t> back = visualOrder(levels);
    for (std::size_t place = 0; place < back.size(); ++place) {
        const std::size_t at = back[place];
        const bool turns = mirrored(read[at]) != read[at];
        if (line.order[at] != place || (turns && levels[at] % 2 != line.levels[at] % 2)) {
            return false;
        }
    }
    return true;
}

/// What stands is nearly what is read; the levels of that tell more, and so on.
std::optional<ReadLine> readIn(std::u32string_view standing, bool isRightToLeft) {
    constexpr int mostTries = 4;
    std::vector<TextLevel> guess = levelsOf(standing, isRightToLeft); // by place
    for (int i = 0; i < mostTries; ++i) {
        ReadLine line{isRightToLeft, visualOrder(guess), {}};
        std::u32string read;
        for (const std::size_t at : line.order) {
            line.levels.push_back(guess[at]);
            read += guess[at] % 2 != 0 ? mirrored(standing[at]) : standing[at];
        }
        std::vector<TextLevel> levels = levelsOf(read, isRightToLeft);
        const bool isFound = standsAgain(line, read, levels);
        line.levels = std::move(levels);
        if (isFound) {
            return line;
        }
        for (std::size_t at = 0; at < guess.size(); ++at) {
            guess[line.order[at]] = line.levels[at];
        }
    }
    return std::nullopt;
}

bool isLeftToRight(char32_t character) {
    return fribidi_get_bidi_type(character) == FRIBIDI_TYPE_LTR;
}

} // namespace

std::optional<ReadLine> readingOf(std::u32string_view standing, bool isLikely) {
    auto line = readIn(standing, isLikely);
    return line ? line : readIn(standing, !isLikely);
}

std::optional<ReadLine> readingOf(std::u32string_view standing) {
    const bool isLikely = std::ranges::count_if(standing, isRightToLeft) >=
                          std::ranges::count_if(standing, isLeftToRight);
    return readingOf(standing, isLikely);
}

ReadLine readingWithMarks(std::u32string_view standing, const std::vector<bool>& isBehind) {
    std::vector<std::size_t> starts;
    std::u32string letters;
    for (std::size_t i = 0; i < standing.size(); ++i) {
        if (i == 0 || !isBehind[i]) {
            starts.push_back(i);
            letters += standing[i];
        }
    }
    std::optional<ReadLine> found = readingOf(letters);
    if (!found) {
        found.emplace().levels = levelsOf(letters, false);
        found->order = visualOrder(found->levels);
    }
    ReadLine line{found->isRightToLeft, {}, {}};
    for (std::size_t i = 0; i < starts.size(); ++i) {
        const std::size_t letter = found->order[i];
        const std::size_t end = letter + 1 < starts.size() ? starts[letter + 1] : standing.size();
        for (std::size_t at = starts[letter]; at < end; ++at) {
            line.order.push_back(at);
            line.levels.push_back(found->levels[i]);
        }
    }
    return line;
}

std::u32string inOtherOrder(std::u32string_view text) {
    if (std::ranges::none_of(text, isRightToLeft)) {
        return std::u32string(text);
    }
    std::u32string turned;
    for (std::size_t end = text.size(); end > 0;) {
        std::size_t start = end - 1;
        while (start > 0 && isMark(text[start])) {
            --start;
        }
        turned.append(text, start, end - start);
        end = start;
    }
    return turned;
}

std::vector<std::uint32_t> scriptsOf(std::u32string_view line) {
    std::vector<std::uint32_t> scripts(line.size());
    hb_script_t last = HB_SCRIPT_COMMON;
    std::size_t open = 0; // characters before the first of a script
    for (std::size_t i = 0; i < line.size(); ++i) {
        const hb_script_t script = hb_unicode_script(unicode(), line[i]);
        if (isOfItsOwn(script)) {
            last = script;
            std::fill(scripts.begin() + static_cast<std::ptrdiff_t>(open),
                      scripts.begin() + static_cast<std::ptrdiff_t>(i), script);
        }
        scripts[i] = last;
        open = isOfItsOwn(last) ? i + 1 : open;
    }
    return scripts;
}

bool needsShaping(char32_t character) {
    constexpr std::array plain = {
        HB_SCRIPT_COMMON,   HB_SCRIPT_INHERITED, HB_SCRIPT_UNKNOWN,  HB_SCRIPT_LATIN,
        HB_SCRIPT_GREEK,    HB_SCRIPT_CYRILLIC,  HB_SCRIPT_ARMENIAN, HB_SCRIPT_GEORGIAN,
        HB_SCRIPT_HEBREW,   HB_SCRIPT_HAN,       HB_SCRIPT_HIRAGANA, HB_SCRIPT_KATAKANA,
        HB_SCRIPT_BOPOMOFO, HB_SCRIPT_HANGUL,    HB_SCRIPT_YI,       HB_SCRIPT_ETHIOPIC,
        HB_SCRIPT_CHEROKEE, HB_SCRIPT_THAI,      HB_SCRIPT_RUNIC,    HB_SCRIPT_OGHAM};
    const bool isForm = (character >= 0xFB50 && character <= 0xFDFF) ||
                        (character >= 0xFE70 && character <= 0xFEFC);
    return !isForm &&
           std::ranges::find(plain, hb_unicode_script(unicode(), character)) == plain.end();
}

bool isRightToLeft(char32_t character) {
    const FriBidiCharType type = fribidi_get_bidi_type(character);
    // Marks have no direction of their own; those of scripts from the right lie among their
    // letters.
    const bool isOwnMark = character >= 0x0590 && character <= 0x08FF && isMark(character);
    return type == FRIBIDI_TYPE_RTL || type == FRIBIDI_TYPE_AL || isOwnMark;
}

bool runsBothWays(std::u32string_view text) {
    const auto stays = [](char32_t character) {
        return isBlank(character) || isLeftToRight(character);
    };
    return std::ranges::any_of(text, isRightToLeft) && std::ranges::any_of(text, stays);
}

bool isMark(char32_t character) {
    switch (hb_unicode_general_category(unicode(), character)) {
    case HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK:
    case HB_UNICODE_GENERAL_CATEGORY_SPACING_MARK:
    case HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK:
        return true;
    default:
        return isFormat(character);
    }
}

bool isFormat(char32_t character) {
    return hb_unicode_general_category(unicode(), character) == HB_UNICODE_GENERAL_CATEGORY_FORMAT;
}

} // namespace corvane
