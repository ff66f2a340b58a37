// Completions of the command line for shells, made of the tables of commands and options.
#pragma once

#include "app/cli/options/option_table.h"

#include <string>
#include <string_view>
#include <vector>

namespace corvane {

std::string bashCompletion();
std::string zshCompletion();
std::string fishCompletion();

/// What may stand in one place of a command line.
struct Offer {
    std::vector<std::string_view> words;
    std::vector<std::string_view> suffixes; ///< of files, without the dot
    bool anyFile = false;
    bool folders = false;
    bool programs = false;
};

/// Of the value of an option. Its name in the table says most: OUT.svg is such a file, FILE any
/// file, WHERE and DIR a folder, COMMAND a program.
Offer valueOffer(const OptionRow& option);

struct CommandOffer {
    Command command;
    std::string_view name;
    std::string_view purpose;
    Offer files;
};

/// Each command once, in the order of the table.
std::vector<CommandOffer> commandOffers();

/// The options of a command; of no command: those that go with every one.
std::vector<const OptionRow*> optionsOf(const CommandOffer* command);

/// What a purpose says first: a list of candidates has little room. Where there are words to choose
/// from, all of it.
std::string_view shortPurpose(const OptionRow& option);
std::string_view shortPurpose(const CommandOffer& command);

} // namespace corvane
