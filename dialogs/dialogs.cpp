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

/// What was mended, for a sentence: "a; b; 3 of c".
std::string mendSentence(const MendCounts& mends) {
    std::string sentence;
    for (std::size_t kind = 0; kind < mendKinds; ++kind) {
        if (mends[kind] == 0) {
            continue;
        }
        const auto several = static_cast<std::int32_t>(mends[kind] > 1);
        std::string phrase =
            listEntry(mendTexts, 2 * static_cast<std::int32_t>(kind) + 1 + several);
        if (const std::size_t gap = phrase.find('%'); gap != std::string::npos) {
            phrase.replace(gap, 1, std::to_string(mends[kind]));
        }
        if (!phrase.empty()) {
            sentence += (sentence.empty() ? "" : "; ") + phrase;
        }
    }
    return sentence;
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

/// Whether the reason may be noted for this code; a reading that was given up may have noted
/// another.
bool isReasonOf(Reason reason, Exception code) {
    return code == (reason < Reason::unmendableHeader ? Exception::crossReference
                    : reason < Reason::missingLetter  ? Exception::repairedFile
                                                      : Exception::unpatchable);
}

} // namespace

void aboutDialog() {
    if (DialogFront* const front = dialogFront()) {
        front->showAbout(listEntry(aboutTexts, 1));
    }
}

std::string exceptionText(Exception code) {
    const NotedReason noted = takeReason();
    const bool isExplained = noted.reason != Reason::none && isReasonOf(noted.reason, code);
    return isExplained ? reasonSentence(noted)
                       : listEntry(exceptionTexts, static_cast<std::int32_t>(code));
}

void errorDialog(Exception code) {
    const std::string text = exceptionText(code);
    if (DialogFront* const front = dialogFront()) {
        front->showError(static_cast<std::int32_t>(code), text);
    }
}

bool isWorthWarning(const MendCounts& mends) {
    return !mendSentence(mends).empty();
}

bool warningDialog(std::string_view fileName, const MendCounts& mends) {
    DialogFront* const front = dialogFront();
    const bool reading = isImportWarning();
    std::vector<std::pair<Warning, std::string>> sentences;
    for (Warning code = popWarning(); code != Warning::none; code = popWarning()) {
        std::string sentence = warningSentence(code);
        if (const std::string what = mendSentence(mends);
            !what.empty() && (code == Warning::repaired || code == Warning::mended)) {
            sentence += (code == Warning::repaired ? "; " : ": ") + what;
        }
        sentences.emplace_back(code, std::move(sentence));
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

bool pagesDialog(std::int32_t first, std::int32_t last, std::int32_t& page, PageProxies& proxies) {
    DialogFront* const front = dialogFront();
    return front == nullptr || front->chooseShownPage(first, last, page, proxies);
}

bool folderDialog(std::int16_t& volume, std::int32_t& directory) {
    DialogFront* const front = dialogFront();
    return front != nullptr && front->chooseFolder(volume, directory);
}

} // namespace corvane
