#include "app/manual/completion.h"

namespace corvane {

namespace {

/// Files with a suffix come first, and folders; fish offers others behind them.
constexpr std::string_view head = R"(# Completion of corvane for fish.

complete -c corvane -f
)";

std::string quoted(std::string_view text) {
    std::string result = "'";
    for (const char mark : text) {
        result += (mark == '\'' || mark == '\\' ? "\\" : "") + std::string(1, mark);
    }
    return result + "'";
}

/// " -x -a ...", for what may follow; " -x" where nothing can be offered.
std::string offering(const Offer& offer) {
    std::string list;
    for (const std::string_view word : offer.words) {
        list += " " + std::string(word);
    }
    for (const std::string_view suffix : offer.suffixes) {
        list += " (__fish_complete_suffix ." + std::string(suffix) + ")";
    }
    list += offer.folders ? " (__fish_complete_directories)" : "";
    list += offer.programs ? " (__fish_complete_command)" : "";
    if (offer.anyFile) {
        return " -r -F";
    }
    const std::string keep = offer.suffixes.empty() ? "" : " -k";
    return list.empty() ? " -x" : keep + " -x -a " + quoted(list.substr(1));
}

/// "-l page", or "-s o".
std::string flag(std::string_view name) {
    return name.starts_with("--") ? " -l " + std::string(name.substr(2))
                                  : " -s " + std::string(name.substr(1));
}

std::string seen(const std::string& commands) {
    return " -n '__fish_seen_subcommand_from" + commands + "'";
}

} // namespace

std::string fishCompletion() {
    const auto commands = commandOffers();
    std::string text(head);
    for (const CommandOffer& command : commands) {
        text += "complete -c corvane -n __fish_use_subcommand -a " + std::string(command.name) +
                " -d " + quoted(shortPurpose(command)) + "\n";
    }
    for (const CommandOffer& command : commands) {
        text += "complete -c corvane" + seen(" " + std::string(command.name)) +
                offering(command.files) + "\n";
    }
    for (const OptionRow& option : optionRows()) {
        std::string names;
        for (const CommandOffer& command : commands) {
            if ((option.commands & only(command.command)) != 0) {
                names += " " + std::string(command.name);
            }
        }
        text += "complete -c corvane" + (option.commands == everyCommand ? "" : seen(names)) +
                flag(option.name) + (option.value.empty() ? "" : offering(valueOffer(option))) +
                " -d " + quoted(shortPurpose(option)) + "\n";
    }
    return text;
}

} // namespace corvane
