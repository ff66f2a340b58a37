#include "app/svg/text/line_runs.h"

#include "app/svg/text/letter_layout.h"
#include "app/svg/text/text_direction.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

/// Runs of a page count in the order in which it shows them, which may be from the right. Empty
/// where they stand in that order, or are not of a page.
std::vector<std::uint32_t> numbersAsShown(const Document& document, Art text, RunRange runs) {
    std::vector<std::int32_t> ordinals;
    for (std::int32_t run = runs.first; run < runs.end; ++run) {
        const ArtSource source = document.textRun(text, run).source;
        if (source.end == 0) {
            return {};
        }
        ordinals.push_back(source.ordinal);
    }
    if (std::ranges::is_sorted(ordinals)) {
        return {};
    }
    std::vector<std::size_t> shown(ordinals.size());
    std::iota(shown.begin(), shown.end(), std::size_t{0});
    std::ranges::stable_sort(shown, {}, [&](std::size_t run) { return ordinals[run]; });
    std::vector<std::uint32_t> numbers(shown.size());
    for (std::size_t i = 0; i < shown.size(); ++i) {
        numbers[shown[i]] = static_cast<std::uint32_t>(i);
    }
    return numbers;
}

bool losesBlanks(std::string_view text, bool& afterBlank) {
    bool loses = false;
    for (const char c : text) {
        loses = loses || (c == ' ' && afterBlank);
        afterBlank = c == ' ';
    }
    return loses;
}

/// Whether a blank stands where one element of the text ends and another begins.
bool bordersOnBlank(const TextRun& run, bool isAlone) {
    const auto isBlank = [&](std::size_t place) { return run.text[place] == ' '; };
    return (!isAlone && (isBlank(0) || isBlank(run.text.size() - 1))) ||
           std::ranges::any_of(run.pieces, [&](const TextPiece& piece) {
               const auto place = static_cast<std::size_t>(piece.start);
               return place != 0 && (isBlank(place - 1) || isBlank(place));
           });
}

} // namespace

LineRuns::LineRuns(const Document& document, Art text, RunRange runs)
    : document_(document), text_(text), runs_(runs),
      numbers_(numbersAsShown(document, text, runs)) {}

std::size_t LineRuns::count() const {
    return joined_.empty() ? static_cast<std::size_t>(runs_.end - runs_.first) : joined_.size();
}

LineRuns::Written LineRuns::at(std::size_t place) const {
    if (!joined_.empty()) {
        return {joined_[place].whole(), joined_[place].number};
    }
    const std::size_t number = ordered_.empty() ? place : ordered_[place].run;
    TextRun run = document_.textRun(text_, runs_.first + static_cast<std::int32_t>(number));
    if (!ordered_.empty()) {
        run.text = ordered_[place].text;
        run.pieces = ordered_[place].pieces;
    }
    return {run, numbers_.empty() ? static_cast<std::uint32_t>(number) : numbers_[number]};
}

void LineRuns::putInOrder(TextLine& line) {
    std::vector<TextRun> runs;
    bool hasRightToLeft = false;
    for (std::size_t i = 0; i < count(); ++i) {
        runs.push_back(at(i).run);
        hasRightToLeft = hasRightToLeft || holdsRightToLeft(runs.back().text);
    }
    if (!hasRightToLeft) {
        return;
    }
    if (std::optional<OrderedLine> read = asRead(runs)) {
        line.order = read->order;
        ordered_ = std::move(read->runs);
        line = placedWhereRead(line, at(0).run.size);
    }
}

void LineRuns::join() {
    if (count() == 1 || !ordered_.empty() || !numbers_.empty()) {
        return;
    }
    std::vector<TextRun> runs;
    for (std::size_t i = 0; i < count(); ++i) {
        runs.push_back(at(i).run);
    }
    joined_ = joinedRuns(runs);
    if (joined_.size() == runs.size()) {
        joined_.clear();
    }
}

bool needsBlanksKept(const LineRuns& runs) {
    const bool isAlone = runs.count() == 1;
    bool afterBlank = true;
    for (std::size_t i = 0; i < runs.count(); ++i) {
        const TextRun run = runs.at(i).run;
        if (losesBlanks(run.text, afterBlank) || bordersOnBlank(run, isAlone)) {
            return true;
        }
    }
    return afterBlank;
}

} // namespace corvane
