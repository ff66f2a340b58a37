#include "app/cli/report/dates.h"
#include "app/cli/report/report.h"
#include "app/cli/text.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

/// "1-3, 7"; "-" where there is none.
std::string rangesText(const std::vector<std::int32_t>& pages) {
    std::string text;
    for (auto first = pages.begin(); first != pages.end();) {
        auto last = first;
        while (std::next(last) != pages.end() && *std::next(last) == *last + 1) {
            ++last;
        }
        text += (text.empty() ? "" : ", ") + std::to_string(*first);
        if (last != first) {
            text += "-" + std::to_string(*last);
        }
        first = std::next(last);
    }
    return text.empty() ? "-" : text;
}

using Cells = std::array<std::string, 7>;

Cells cellsOf(const Update& update) {
    const UpdateFacts& facts = update.facts;
    const std::string date = utcText(update.date);
    return {std::to_string(facts.number),  grouped(facts.offset),    grouped(facts.size),
            std::to_string(facts.objects), rangesText(update.pages), date.empty() ? "-" : date,
            facts.ours ? "ours" : ""};
}

/// Numbers stand at the right of their column, words at its left; two blanks lie between.
std::string lineOf(const Cells& cells, const std::array<std::size_t, 7>& widths) {
    constexpr std::size_t numbers = 4;
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string room(widths[i] - cells[i].size(), ' ');
        line += "  " + (i < numbers ? room + cells[i] : cells[i] + room);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

} // namespace

std::string logText(const std::string& file, const Report& report) {
    std::vector<Cells> rows{{"update", "offset", "size", "objects", "pages", "date (UTC)", ""}};
    for (const Update& update : report.updates) {
        rows.push_back(cellsOf(update));
    }
    std::array<std::size_t, 7> widths{};
    for (const Cells& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    std::string text = terminalText(file) + "\n";
    for (const Cells& row : rows) {
        text += lineOf(row, widths);
    }
    return text;
}

std::string revertedText(const std::string& file, const Update& update) {
    return file + ": update " + std::to_string(update.facts.number) + " (" +
           grouped(update.facts.size) + " bytes, page " + rangesText(update.pages) +
           ") was taken off; the file is again as it was before";
}

} // namespace corvane
