#include "app/manual/completion.h"

namespace corvane {

namespace {

constexpr std::string_view head = R"(# Completion of corvane for bash.

_corvane_offer() {
    local found
    mapfile -t found < <(compgen "$@" -- "$current")
    COMPREPLY+=("${found[@]}")
}

# Folders, and files with one of the suffixes.
_corvane_files() {
    local suffix
    compopt -o filenames 2>/dev/null
    _corvane_offer -d
    for suffix; do
        _corvane_offer -f -X "!*.$suffix"
    done
}

_corvane_any_file() {
    compopt -o filenames 2>/dev/null
    _corvane_offer -f
}

_corvane() {
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} command= bare= i
    # readline makes three words of --option=value.
    if [[ $current == = ]]; then
        current=
    elif [[ $before == = ]]; then
        before=${COMP_WORDS[COMP_CWORD-2]}
    fi
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
        --) bare=1 before= ;;
        =) ((i++)) ;;
        @VALUED@) [[ ${COMP_WORDS[i+1]} == = ]] || ((i++)) ;;
        -?*) ;;
        *) command=${command:-${COMP_WORDS[i]}} ;;
        esac
    done
)";

constexpr std::string_view tail = R"(
complete -F _corvane corvane
)";

/// "[pP][dD][fF]": files of all programs, in letters of any case.
std::string pattern(std::string_view suffix) {
    std::string text;
    for (const char letter : suffix) {
        const bool isLetter = letter >= 'a' && letter <= 'z';
        text += isLetter ? std::string{'[', letter, static_cast<char>(letter - 'a' + 'A'), ']'}
                         : std::string(1, letter);
    }
    return text;
}

std::string offerWords(const std::string& words) {
    return "_corvane_offer -W '" + words + "'";
}

/// Commands of bash, each on a line behind `indent`.
std::string offering(const Offer& offer, const std::string& indent) {
    std::string text;
    if (!offer.words.empty()) {
        std::string words;
        for (const std::string_view word : offer.words) {
            words += (words.empty() ? "" : " ") + std::string(word);
        }
        text += indent + offerWords(words) + "\n";
    }
    if (offer.folders || !offer.suffixes.empty()) {
        text += indent + "_corvane_files";
        for (const std::string_view suffix : offer.suffixes) {
            text += " '" + pattern(suffix) + "'";
        }
        text += "\n";
    }
    text += offer.anyFile ? indent + "_corvane_any_file\n" : "";
    return text + (offer.programs ? indent + "_corvane_offer -c\n" : "");
}

std::string optionNames(const CommandOffer* command) {
    std::string names;
    for (const OptionRow* option : optionsOf(command)) {
        names += (names.empty() ? "" : " ") + std::string(option->name);
    }
    return names;
}

} // namespace

std::string bashCompletion() {
    std::string valued;
    std::string values = "    case $before in\n";
    for (const OptionRow& option : optionRows()) {
        if (!option.value.empty()) {
            valued += (valued.empty() ? "" : "|") + std::string(option.name);
            values += "    " + std::string(option.name) + ")\n" +
                      offering(valueOffer(option), "        ") + "        return ;;\n";
        }
    }
    const std::string indent(12, ' ');
    const std::string end = indent + ";;\n";
    std::string names;
    std::string options =
        "    if [[ $current == -* && -z $bare ]]; then\n        case $command in\n";
    std::string operands = "        case $command in\n";
    for (const CommandOffer& command : commandOffers()) {
        const std::string label = "        " + std::string(command.name) + ")\n";
        names += (names.empty() ? "" : " ") + std::string(command.name);
        options += label + indent + offerWords(optionNames(&command)) + "\n" + end;
        operands += label + offering(command.files, indent) + end;
    }
    const std::string label = "        '')\n" + indent;
    options += label + offerWords(optionNames(nullptr)) + "\n" + end + "        esac\n    else\n";
    operands += label + offerWords(names) + "\n" + end + "        esac\n    fi\n}\n";

    std::string text(head);
    static constexpr std::string_view place = "@VALUED@";
    text.replace(text.find(place), place.size(), valued);
    return text + values + "    esac\n" + options + operands + std::string(tail);
}

} // namespace corvane
