#include "app/cli/arguments.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <vector>

namespace corvane {

namespace {

struct CommandRow {
    Command command;
    std::string_view name;
    std::string_view operands;
    std::string_view purpose;
};

constexpr std::array commandTable{
    CommandRow{Command::open, "open",
               "FILE.pdf [--page N] [-o OUT.svg] [--images WHERE] [--fonts WHERE] [--text HOW]",
               "turn a page into editable artwork"},
    CommandRow{Command::save, "save",
               "ART.svg FILE.pdf [--page N] [--output OTHER.pdf] [--dry-run] [--force] [--plain] "
               "[--mend] [--images DIR] [--allow-files]",
               "make artwork a page of the file; ART.svg may be - (standard input)"},
    CommandRow{Command::save, "save", "--mend FILE.pdf [--output OTHER.pdf] [--dry-run]",
               "mend a damaged file, and change no page"},
    CommandRow{Command::info, "info", "FILE.pdf", "pages, boxes, rotation, objects, updates"},
    CommandRow{Command::check, "check", "FILE.pdf", "can it be opened, and what is damaged"},
    CommandRow{Command::log, "log", "FILE.pdf", "the updates appended to a file"},
    CommandRow{Command::revert, "revert", "FILE.pdf",
               "take the newest update off again, if it is ours"},
};

enum class OptionKind : std::uint8_t {
    page,
    output,
    images,
    fonts,
    text,
    dryRun,
    force,
    allowFiles,
    plain,
    mend,
    passwordFile,
    password,
    profile,
    quiet,
    json,
    version,
    help
};

/// A set of commands, a bit for each.
using Commands = std::uint32_t;
constexpr Commands only(Command command) {
    return Commands{1} << static_cast<unsigned>(command);
}
constexpr Commands everyCommand = ~Commands{0};

struct OptionRow {
    OptionKind kind;
    std::string_view name;
    std::string_view value; ///< what follows the option; empty for a switch
    Commands commands;      ///< that it goes with
    std::string_view purpose;
};

constexpr std::array optionTable{
    OptionRow{OptionKind::page, "--page", "N",
              only(Command::open) | only(Command::save) | only(Command::info),
              "the page, from 1; else the artwork's own, asked for on a terminal, or 1; of info: "
              "also lists the images that it draws"},
    OptionRow{OptionKind::output, "-o", "OUT.svg", only(Command::open),
              "where the artwork goes; - is standard output (FILE-pageN.svg)"},
    OptionRow{OptionKind::images, "--images", "WHERE", only(Command::open) | only(Command::save),
              "the page's pictures: embed, none, or a folder (OUT-images); saving: their folder"},
    OptionRow{OptionKind::fonts, "--fonts", "WHERE", only(Command::open),
              "the page's fonts: embed them (embed), none, or a folder for files to install"},
    OptionRow{OptionKind::text, "--text", "HOW", only(Command::open),
              "letters follow one another (flow), or each has its place (exact)"},
    OptionRow{OptionKind::output, "--output", "OTHER.pdf", only(Command::save),
              "save into a copy of the file with this name"},
    OptionRow{OptionKind::dryRun, "--dry-run", "", only(Command::save),
              "say what would be saved, change nothing"},
    OptionRow{OptionKind::force, "--force", "", only(Command::save),
              "save even where that undoes another change, deletes much, or loses something"},
    OptionRow{OptionKind::allowFiles, "--allow-files", "", only(Command::save),
              "take pictures from any folder that the artwork names"},
    OptionRow{OptionKind::plain, "--plain", "", only(Command::save),
              "write new content uncompressed, for people who read it"},
    OptionRow{OptionKind::mend, "--mend", "", only(Command::save),
              "mend what is damaged in the file, too; every old byte stays"},
    OptionRow{OptionKind::passwordFile, "--password-file", "FILE", everyCommand,
              "its first line is the password of the PDF; - is standard input"},
    OptionRow{OptionKind::password, "--password", "TEXT", everyCommand,
              "the same, not advised: others on this machine can read arguments"},
    OptionRow{OptionKind::profile, "--profile", "NAME", everyCommand,
              "original: the classic behaviour only; extended: files of today (extended)"},
    OptionRow{OptionKind::quiet, "--quiet", "", everyCommand, "print nothing but errors"},
    OptionRow{OptionKind::json, "--json", "", everyCommand, "print the facts as one JSON object"},
    OptionRow{OptionKind::version, "--version", "", everyCommand, "print the version"},
    OptionRow{OptionKind::help, "--help", "", everyCommand, "print this text"},
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
            } else if (!onlyOperands && word == "-") {
                takeStandardInput();
            } else if (!onlyOperands && word.starts_with("-")) {
                takeOption(word);
            } else if (!command_) {
                takeCommand(word);
            } else {
                operands_.emplace_back(word);
            }
        }
        if (question_) {
            return *question_;
        }
        checkWhole();
        if (fault_.empty()) {
            nameFiles();
        }
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
        } else {
            fault_ = "there is no command " + quoted(word);
        }
    }

    /// Only artwork comes from there, and it is the first operand.
    void takeStandardInput() {
        if (command_ != nullptr && command_->command == Command::save && operands_.empty()) {
            operands_.emplace_back("-");
            readsStandardInput_ = true;
        } else {
            fault_ = "a PDF is not read from standard input; name a file (./- if it has that name)";
        }
    }

    void takeOption(std::string_view word) {
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
        options_.push_back(&*row);
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
            takePlace(value, arguments_.imagePlace, arguments_.images);
            break;
        case OptionKind::fonts:
            takePlace(value, arguments_.fontPlace, arguments_.fonts);
            break;
        case OptionKind::text:
            if (value != "flow" && value != "exact") {
                fault_ = "--text takes flow or exact, not " + quoted(value);
            }
            arguments_.placesLetters = value == "exact";
            break;
        case OptionKind::passwordFile:
            arguments_.passwordFile = value;
            break;
        case OptionKind::password:
            arguments_.password = value;
            break;
        case OptionKind::plain:
            arguments_.plain = true;
            break;
        case OptionKind::mend:
            arguments_.mend = true;
            break;
        case OptionKind::profile: {
            const auto profile = std::ranges::find(profiles, value, profileName);
            if (profile == profiles.end()) {
                fault_ = "--profile takes original or extended, not " + quoted(value);
            } else {
                arguments_.profile = *profile;
                arguments_.namesProfile = true;
            }
            break;
        }
        case OptionKind::dryRun:
            arguments_.dryRun = true;
            break;
        case OptionKind::force:
            arguments_.force = true;
            break;
        case OptionKind::allowFiles:
            arguments_.allowsFiles = true;
            break;
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

    static void takePlace(std::string_view value, PartPlace& place, std::string& folder) {
        place = value == "embed"  ? PartPlace::artwork
                : value == "none" ? PartPlace::none
                                  : PartPlace::folder;
        folder = place == PartPlace::folder ? value : std::string_view();
    }

    void checkWhole() {
        if (!fault_.empty()) {
            return;
        }
        if (!command_) {
            fault_ = "a command is missing";
            return;
        }
        const auto stranger = std::ranges::find_if(options_, [&](const OptionRow* row) {
            return (row->commands & only(command_->command)) == 0;
        });
        if (stranger != options_.end()) {
            fault_ = "the option " + std::string((*stranger)->name) + " does not go with " +
                     std::string(command_->name);
        } else if (command_->command == Command::save && arguments_.output == "-") {
            fault_ = "--output takes the name of a file, not -";
        } else if (readsStandardInput_ && arguments_.passwordFile == "-") {
            fault_ = "artwork and password cannot both come from standard input";
        }
    }

    void nameFiles() {
        const bool isSave = command_->command == Command::save;
        const bool onlyMends = arguments_.mend && operands_.size() == 1 && !readsStandardInput_;
        const std::size_t wanted = isSave && !onlyMends ? 2 : 1;
        if (operands_.size() < wanted) {
            fault_ = "the command " + std::string(command_->name) +
                     (isSave ? " needs two files: the artwork, then the PDF" : " needs a file");
        } else if (operands_.size() > wanted) {
            fault_ = (isSave ? "one artwork and one PDF at a time: " : "one file at a time: ") +
                     quoted(operands_[wanted]) + " is one too many";
        } else {
            arguments_.file = operands_.back();
            if (isSave && !onlyMends) {
                const bool hasThatName = operands_.front() == "-" && !readsStandardInput_;
                arguments_.artwork = hasThatName ? "./-" : operands_.front();
            }
        }
    }

    std::span<const char* const> words_;
    std::size_t next_ = 0;
    Arguments arguments_;
    const CommandRow* command_ = nullptr;
    std::vector<std::string> operands_;
    std::vector<const OptionRow*> options_;
    bool readsStandardInput_ = false;
    std::optional<Question> question_;
    std::string fault_;
};

} // namespace

std::variant<Arguments, Question, UsageError> parseArguments(std::span<const char* const> words) {
    return Parser(words).parse();
}

std::string usageText() {
    static constexpr std::size_t column = 24;
    const auto padded = [](std::string text) {
        text.resize(std::max(text.size() + 1, column), ' ');
        return text;
    };
    std::string text = "Opens a page of a PDF as editable artwork (SVG), and saves it back.\n\n";
    for (const CommandRow& row : commandTable) {
        text += "  corvane " + std::string(row.name) + " " + std::string(row.operands) + "\n" +
                "      " + std::string(row.purpose) + "\n";
    }
    text += "\n";
    for (const OptionRow& row : optionTable) {
        text += padded("  " + std::string(row.name) + " " + std::string(row.value)) +
                std::string(row.purpose) + "\n";
    }
    text +=
        "\nSaving only appends: what was changed or removed can still be read in the file's old "
        "bytes.\nSo deleting is no redaction.\n"
        "\nThe password of an encrypted PDF may also be in the variable CORVANE_PASSWORD; else it "
        "is "
        "asked for\non a terminal.\n"
        "\nA file whose name begins with - goes after --.\n"
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
