#include "app/manual/completion.h"

#include <algorithm>

namespace corvane {

namespace {

std::string_view takeWord(std::string_view& text) {
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(std::min(text.size(), word.size() + 1));
    return word;
}

/// "pdf", of "FILE.pdf..."; empty where the word names no file.
std::string_view suffixOf(std::string_view word) {
    const std::size_t dot = word.find('.');
    if (dot == std::string_view::npos) {
        return {};
    }
    const std::string_view rest = word.substr(dot + 1);
    return rest.substr(0, rest.find('.'));
}

void addSuffix(std::vector<std::string_view>& suffixes, std::string_view suffix) {
    if (!suffix.empty() && std::ranges::find(suffixes, suffix) == suffixes.end()) {
        suffixes.push_back(suffix);
    }
}

/// Files of a synopsis; those in brackets belong to options.
void addFiles(Offer& offer, std::string_view operands) {
    operands = operands.substr(0, operands.find('['));
    while (!operands.empty()) {
        addSuffix(offer.suffixes, suffixOf(takeWord(operands)));
    }
}

std::string_view beginning(std::string_view purpose) {
    return purpose.substr(0, std::min(purpose.find(';'), purpose.find(" (")));
}

} // namespace

Offer valueOffer(const OptionRow& option) {
    Offer offer;
    for (std::string_view words = option.words; !words.empty();) {
        offer.words.push_back(takeWord(words));
    }
    addSuffix(offer.suffixes, suffixOf(option.value));
    offer.anyFile = option.value == "FILE";
    offer.folders = option.value == "WHERE" || option.value == "DIR";
    offer.programs = option.value == "COMMAND";
    return offer;
}

std::vector<CommandOffer> commandOffers() {
    std::vector<CommandOffer> offers;
    for (const CommandRow& row : commandRows()) {
        auto offer = std::ranges::find(offers, row.command, &CommandOffer::command);
        if (offer == offers.end()) {
            offers.push_back({row.command, row.name, row.purpose, {}});
            offer = offers.end() - 1;
        }
        addFiles(offer->files, row.operands);
    }
    return offers;
}

std::vector<const OptionRow*> optionsOf(const CommandOffer* command) {
    std::vector<const OptionRow*> options;
    for (const OptionRow& row : optionRows()) {
        const bool goes = command == nullptr ? row.commands == everyCommand
                                             : (row.commands & only(command->command)) != 0;
        if (goes) {
            options.push_back(&row);
        }
    }
    return options;
}

std::string_view shortPurpose(const OptionRow& option) {
    return option.words.empty() ? beginning(option.purpose) : option.purpose;
}

std::string_view shortPurpose(const CommandOffer& command) {
    return beginning(command.purpose);
}

} // namespace corvane
