#include "app/manual/completion.h"

namespace corvane {

namespace {

constexpr std::string_view head = R"(#compdef corvane
# Completion of corvane for zsh.

# Some words, or a folder.
_corvane_place() {
    local -a words=("$@")
    _alternative 'words:word:compadd -a words' 'folders:folder:_files -/'
}

_corvane() {
    local curcontext=$curcontext state line
    local -A opt_args
    local -a commands=(
)";

/// `text` for a word between apostrophes, in which `marks` mean something to zsh's own functions.
std::string quoted(std::string_view text, std::string_view marks) {
    std::string result;
    for (const char mark : text) {
        if (mark == '\'') {
            result += "'\\''";
        } else {
            result +=
                (marks.find(mark) != std::string_view::npos ? "\\" : "") + std::string(1, mark);
        }
    }
    return result;
}

/// What stands behind the last colon of a specification.
std::string action(const Offer& offer) {
    std::string words;
    for (const std::string_view word : offer.words) {
        words += " " + std::string(word);
    }
    if (offer.folders) {
        return " _corvane_place" + words;
    }
    if (!words.empty()) {
        return "(" + words.substr(1) + ")";
    }
    if (!offer.suffixes.empty()) {
        std::string suffixes;
        for (const std::string_view suffix : offer.suffixes) {
            suffixes += (suffixes.empty() ? "" : "|") + std::string(suffix);
        }
        return "_files -g \"(#i)*.(" + suffixes + ")(-.)\"";
    }
    return offer.programs ? "_command_names -e" : offer.anyFile ? "_files" : " ";
}

std::string specifications(const CommandOffer* command, const std::string& indent) {
    std::string text;
    for (const OptionRow* option : optionsOf(command)) {
        const bool isLong = option->name.starts_with("--");
        text += indent + "'" + std::string(option->name) +
                (isLong && !option->value.empty() ? "=" : "") + "[" +
                quoted(shortPurpose(*option), "[]\\") + "]";
        if (!option->value.empty()) {
            text += ":" + quoted(option->value, ":\\") + ":" + action(valueOffer(*option));
        }
        text += "' \\\n";
    }
    return text;
}

} // namespace

std::string zshCompletion() {
    const auto commands = commandOffers();
    std::string text(head);
    for (const CommandOffer& command : commands) {
        text += "        '" + std::string(command.name) + ":" +
                quoted(shortPurpose(command), ":\\") + "'\n";
    }
    text += "    )\n    _arguments -C -S \\\n" + specifications(nullptr, "        ") +
            "        '1:command:->command' '*::file:->file'\n"
            "    case $state in\n"
            "    command) _describe -t commands command commands ;;\n"
            "    file)\n"
            "        case $words[1] in\n";
    for (const CommandOffer& command : commands) {
        text += "        " + std::string(command.name) + ")\n            _arguments -S \\\n" +
                specifications(&command, "                ") +
                "                '*:file:" + action(command.files) + "' ;;\n";
    }
    return text + "        esac ;;\n    esac\n}\n\n_corvane \"$@\"\n";
}

} // namespace corvane
