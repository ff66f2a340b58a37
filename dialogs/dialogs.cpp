#include "dialogs/dialogs.h"

#include "host/front.h"
#include "resources/resources.h"
#include "runtime/reason.h"
#include "runtime/string.h"
#include "runtime/warning.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace corvane {

namespace {

/// Entry `index` of a string list of the plug-in's resources.
std::string listEntry(std::int16_t list, std::int32_t index) {
    std::array<std::uint8_t, 256> text{};
    if (index >= 1 && index <= INT16_MAX) {
        getString(text, list, static_cast<std::int16_t>(index));
    }
    return {text.begin() + 1, text.begin() + 1 + text[0]};
}

std::string warningSentence(Warning warning) {
    constexpr std::int32_t firstWritten = 1001;
    const auto code = static_cast<std::int32_t>(warning);
    return code < firstWritten ? listEntry(readWarningTexts, code)
                               : listEntry(writeWarningTexts, code - firstWritten + 1);
}

std::string reasonSentence(const NotedReason& noted) {
    std::string sentence = listEntry(reasonTexts, static_cast<std::int32_t>(noted.reason));
    if (const std::size_t gap = sentence.find('%'); gap != std::string::npos) {
        // A name out of a file may be of any length.
        sentence.replace(gap, 1, noted.name.substr(0, 64));
    }
    return sentence;
}

} // namespace

void aboutDialog() {
    if (DialogFront* const front = dialogFront()) {
        front->showAbout(listEntry(aboutTexts, 1));
    }
}

void errorDialog(Exception code) {
    const NotedReason noted = takeReason();
    if (DialogFront* const front = dialogFront()) {
        const auto number = static_cast<std::int32_t>(code);
        const bool isExplained =
            noted.reason != Reason::none &&
            (code == Exception::crossReference || code == Exception::unpatchable);
        front->showError(number,
                         isExplained ? reasonSentence(noted) : listEntry(exceptionTexts, number));
    }
}

bool warningDialog(std::string_view fileName) {
    DialogFront* const front = dialogFront();
    const bool reading = isImportWarning();
    std::vector<std::pair<Warning, std::string>> sentences;
    for (Warning code = popWarning(); code != Warning::none; code = popWarning()) {
        sentences.emplace_back(code, warningSentence(code));
    }
    if (front == nullptr) {
        return true;
    }
    std::vector<WarningText> warnings;
    std::ranges::transform(sentences, std::back_inserter(warnings), [](const auto& entry) {
        return WarningText{static_cast<std::int32_t>(entry.first), entry.second};
    });
    std::ranges::sort(warnings, {}, &WarningText::code);
    return front->showWarnings(reading, warnings, fileName);
}

bool pagesDialog(std::int32_t first, std::int32_t last, std::int32_t& page) {
    DialogFront* const front = dialogFront();
    return front == nullptr || front->choosePage(first, last, page);
}

bool folderDialog(std::int16_t& volume, std::int32_t& directory) {
    DialogFront* const front = dialogFront();
    return front != nullptr && front->chooseFolder(volume, directory);
}

} // namespace corvane
