#include "app/cli/arguments.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace corvane {

namespace {

struct CommandRow {
    Command command;
    std::string_view name;
    std::string_view operands;
    std::string_view purpose;
};

constexpr std::array commandTable{
    CommandRow{Command::open, "open", "FILE.pdf [--page N] [-o OUT.svg] [--images DIR]",
               "turn a page into editable artwork"},
    CommandRow{Command::info, "info", "FILE.pdf", "pages, boxes, rotation, objects, updates"},
    CommandRow{Command::check, "check", "FILE.pdf", "can it be opened, and why not"},
};

/// Commands that scripts of later versions may name.
constexpr std::array<std::string_view, 3> laterCommands{"save", "log", "revert"};

enum class OptionKind : std::uint8_t { page, output, images, profile, quiet, json, version, help };

struct OptionRow {
    OptionKind kind;
    std::string_view name;
    std::string_view value; ///< what follows the option; empty for a switch
    bool onlyOpen;
    std::string_view purpose;
};

constexpr std::array optionTable{
    OptionRow{OptionKind::page, "--page", "N", true,
              "the page to open, from 1; asked for on a terminal, else the first"},
    OptionRow{OptionKind::output, "-o", "OUT.svg", true,
              "where the artwork goes; - is standard output (FILE-pageN.svg)"},
    OptionRow{OptionKind::images, "--images", "DIR", true, "the folder for pictures (OUT-images)"},
    OptionRow{OptionKind::profile, "--profile", "NAME", false,
              "original: the classic behaviour only; extended: files of today (extended)"},
    OptionRow{OptionKind::quiet, "--quiet", "", false, "print nothing but errors"},
    OptionRow{OptionKind::json, "--json", "", false, "print the facts as one JSON object"},
    OptionRow{OptionKind::version, "--version", "", false, "print the version"},
    OptionRow{OptionKind::help, "--help", "", false, "print this text"},
};

constexpr std::array<Profile, 2> profiles{Profile::original, Profile::extended};

std::string quoted(std::string_view word) {
    return "\"" + std::string(word) + "\"";
}

std::optional<std::int32_t> pageNumber(std::string_view text) {
    std::int32_t number = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (fault != std::errc() || end != text.data() + text.size() || number < 1) {
        return std::nullopt;
    }
    return number;
}

/// One walk over the words of a command line.
class Parser {
public:
    explicit Parser(std::span<const char* const> words) : words_(words) {}

    std::variant<Arguments, Question, UsageError> parse() {
        bool onlyOperands = false;
        while (next_ < words_.size() && fault_.empty() && !question_) {
            const std::string_view word = words_[next_++];
            if (!onlyOperands && word == "--") {
                onlyOperands = true;
            } else if (!onlyOperands && word.starts_with("-")) {
                takeOption(word);
            } else if (!command_) {
                takeCommand(word);
            } else {
                takeFile(word);
            }
        }
        if (question_) {
            return *question_;
        }
        checkWhole();
        if (!fault_.empty()) {
            return UsageError{std::move(fault_)};
        }
        return std::move(arguments_);
    }

private:
    void takeCommand(std::string_view word) {
        const auto row = std::ranges::find(commandTable, word, &CommandRow::name);
        if (row != commandTable.end()) {
            command_ = &*row;
            arguments_.command = row->command;
        } else if (std::ranges::find(laterCommands, word) != laterCommands.end()) {
            fault_ = "this version does not have the command " + quoted(word);
        } else {
            fault_ = "there is no command " + quoted(word);
        }
    }

    void takeFile(std::string_view word) {
        if (hasFile_) {
            fault_ = "one file at a time: " + quoted(word) + " is one too many";
            return;
        }
        hasFile_ = true;
        arguments_.file = word;
    }

    void takeOption(std::string_view word) {
        if (word == "-") {
            fault_ = "a PDF is not read from standard input; name a file (./- if it has that name)";
            return;
        }
        const bool isLong = word.starts_with("--");
        const auto equals = isLong ? word.find('=') : std::string_view::npos;
        const std::string_view name = word.substr(0, equals);
        const auto row = std::ranges::find(optionTable, name, &OptionRow::name);
        if (row == optionTable.end()) {
            fault_ = "there is no option " + quoted(name);
            return;
        }
        std::string_view value;
        if (row->value.empty()) {
            if (equals != std::string_view::npos) {
                fault_ = "the option " + std::string(name) + " takes no value";
                return;
            }
        } else if (equals != std::string_view::npos) {
            value = word.substr(equals + 1);
        } else if (next_ < words_.size()) {
            value = words_[next_++];
        }
        if (!row->value.empty() && value.empty()) {
            fault_ =
                "the option " + std::string(name) + " needs a value: " + std::string(row->value);
            return;
        }
        if (row->onlyOpen) {
            onlyOpenOption_ = row->name;
        }
        apply(*row, value);
    }

    void apply(const OptionRow& row, std::string_view value) {
        switch (row.kind) {
        case OptionKind::page:
            arguments_.page = pageNumber(value).value_or(0);
            if (arguments_.page == 0) {
                fault_ = "--page takes a whole number from 1, not " + quoted(value);
            }
            break;
        case OptionKind::output:
            arguments_.output = value;
            break;
        case OptionKind::images:
            arguments_.images = value;
            break;
        case OptionKind::profile: {
            const auto profile = std::ranges::find(profiles, value, profileName);
            if (profile == profiles.end()) {
                fault_ = "--profile takes original or extended, not " + quoted(value);
            } else {
                arguments_.profile = *profile;
            }
            break;
        }
        case OptionKind::quiet:
            arguments_.quiet = true;
            break;
        case OptionKind::json:
            arguments_.json = true;
            break;
        case OptionKind::version:
            question_ = Question::version;
            break;
        case OptionKind::help:
            question_ = Question::help;
            break;
        }
    }

    void checkWhole() {
        if (!fault_.empty()) {
            return;
        }
        if (!command_) {
            fault_ = "a command is missing";
        } else if (!hasFile_) {
            fault_ = "the command " + std::string(command_->name) + " needs a file";
        } else if (!onlyOpenOption_.empty() && command_->command != Command::open) {
            fault_ = "the option " + std::string(onlyOpenOption_) + " does not go with " +
                     std::string(command_->name);
        }
    }

    std::span<const char* const> words_;
    std::size_t next_ = 0;
    Arguments arguments_;
    const CommandRow* command_ = nullptr;
    bool hasFile_ = false;
    std::string_view onlyOpenOption_;
    std::optional<Question> question_;
    std::string fault_;
};

} // namespace

std::variant<Arguments, Question, UsageError> parseArguments(std::span<const char* const> words) {
    return Parser(words).parse();
}

std::string usageText() {
    static constexpr std::size_t column = 22;
    const auto padded = [](std::string text) {
        text.resize(std::max(text.size() + 1, column), ' ');
        return text;
    };
    std::string text = "Opens a page of a PDF as editable artwork (SVG).\n\n";
    for (const CommandRow& row : commandTable) {
        text += "  corvane " + std::string(row.name) + " " + std::string(row.operands) + "\n" +
                "      " + std::string(row.purpose) + "\n";
    }
    text += "\n";
    for (const OptionRow& row : optionTable) {
        text += padded("  " + std::string(row.name) + " " + std::string(row.value)) +
                std::string(row.purpose) + "\n";
    }
    text += "\nA file whose name begins with - goes after --.\n"
            "Exit: 0 done, 1 failed, 2 bad usage, 130 cancelled.\n";
    return text;
}

std::string_view commandName(Command command) {
    return std::ranges::find(commandTable, command, &CommandRow::command)->name;
}

std::string_view profileName(Profile profile) {
    return profile == Profile::original ? "original" : "extended";
}

} // namespace corvane
