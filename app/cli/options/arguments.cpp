#include "app/cli/options/arguments.h"

#include "app/cli/batch/name_pattern.h"
#include "app/cli/options/option_table.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace corvane {

namespace {

constexpr std::array<Profile, 2> profiles{Profile::original, Profile::extended};

std::string quoted(std::string_view word) {
    return "\"" + std::string(word) + "\"";
}

constexpr std::int32_t mostJobs = 1024; ///< more would only fill the machine
constexpr std::int32_t lastPort = 65'535;

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
        const auto commands = commandRows();
        const auto row = std::ranges::find(commands, word, &CommandRow::name);
        if (row != commands.end()) {
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
        const auto options = optionRows();
        const auto row = std::ranges::find(options, name, &OptionRow::name);
        if (row == options.end()) {
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
            arguments_.page = wholeNumber(value).value_or(0);
            if (arguments_.page == 0) {
                fault_ = "--page takes a whole number from 1, not " + quoted(value);
            }
            break;
        case OptionKind::pages:
            arguments_.pages = pageRanges(value).value_or(std::vector<PageRange>());
            if (arguments_.pages.empty()) {
                fault_ = "--pages takes pages and ranges such as 1-3,7 or 5-, not " + quoted(value);
            }
            break;
        case OptionKind::jobs:
            arguments_.jobs = wholeNumber(value).value_or(0);
            if (arguments_.jobs < 1 || arguments_.jobs > mostJobs) {
                fault_ = "--jobs takes a whole number from 1 to " + std::to_string(mostJobs) +
                         ", not " + quoted(value);
            }
            break;
        case OptionKind::output:
            arguments_.output = value;
            break;
        case OptionKind::thumbnail:
            arguments_.thumbnail = value;
            break;
        case OptionKind::editor:
            arguments_.editor = value;
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
        case OptionKind::install:
            takeWish(ExtensionWish::install);
            break;
        case OptionKind::remove:
            takeWish(ExtensionWish::remove);
            break;
        case OptionKind::port:
            arguments_.port = wholeNumber(value).value_or(0);
            if (arguments_.port < 1 || arguments_.port > lastPort) {
                fault_ = "--port takes a whole number from 1 to " + std::to_string(lastPort) +
                         ", not " + quoted(value);
            }
            break;
        case OptionKind::stay:
            arguments_.stays = true;
            break;
        case OptionKind::noBrowser:
            arguments_.opensBrowser = false;
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
        case OptionKind::expectSize:
            arguments_.expectedSize = wholeNumber(value);
            if (!arguments_.expectedSize) {
                fault_ = "--expect-size takes a number of bytes, not " + quoted(value);
            }
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

    void takeWish(ExtensionWish wish) {
        if (arguments_.extensions != ExtensionWish::none && arguments_.extensions != wish) {
            fault_ = "--install and --remove do not go together";
        }
        arguments_.extensions = wish;
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
            return !goesWith(row->kind, command_->command);
        });
        if (stranger != options_.end()) {
            fault_ = "the option " + std::string((*stranger)->name) + " does not go with " +
                     std::string(command_->name);
        } else if (command_->command == Command::save && arguments_.output == "-") {
            fault_ = "--output takes the name of a file, not -";
        } else if (!arguments_.thumbnail.empty() && arguments_.page == 0) {
            fault_ = "--thumbnail needs the page, --page N";
        } else if (command_->command == Command::inkscape &&
                   arguments_.extensions == ExtensionWish::none) {
            fault_ = "the command inkscape needs --install or --remove";
        } else if (readsStandardInput_ && arguments_.passwordFile == "-") {
            fault_ = "artwork and password cannot both come from standard input";
        }
    }

    void nameFiles() {
        if (command_->command == Command::inkscape) {
            if (!operands_.empty()) {
                fault_ = "the command inkscape takes no file: " + quoted(operands_.front()) +
                         " is one too many";
            }
            return;
        }
        const bool isSave = command_->command == Command::save;
        const bool isLooked =
            command_->command == Command::open || command_->command == Command::check;
        const bool isServed = command_->command == Command::serve;
        const bool onlyMends = arguments_.mend && operands_.size() == 1 && !readsStandardInput_;
        const std::size_t wanted = isSave && !onlyMends ? 2 : 1;
        if (operands_.size() < wanted) {
            fault_ = "the command " + std::string(command_->name) +
                     (isSave ? " needs two files: the artwork, then the PDF" : " needs a file");
        } else if (operands_.size() > wanted && !isLooked && !isServed) {
            fault_ = (isSave ? "one artwork and one PDF at a time: " : "one file at a time: ") +
                     quoted(operands_[wanted]) + " is one too many";
        } else {
            arguments_.file = operands_.back();
            if (isSave && !onlyMends) {
                const bool hasThatName = operands_.front() == "-" && !readsStandardInput_;
                arguments_.artwork = hasThatName ? "./-" : operands_.front();
            }
        }
        if (fault_.empty() && isServed) {
            arguments_.file = operands_.front();
            arguments_.files = std::move(operands_);
            return;
        }
        const bool isMany =
            operands_.size() > 1 || !arguments_.pages.empty() || arguments_.jobs > 1;
        if (fault_.empty() && isLooked && isMany) {
            nameMany();
        }
    }

    /// Many files, or many pages: what goes for one need not go for all.
    void nameMany() {
        arguments_.files = std::move(operands_);
        if (arguments_.page != 0 && !arguments_.pages.empty()) {
            fault_ = "--page and --pages do not go together";
        } else if (!arguments_.output.empty() && !isPattern(arguments_.output)) {
            fault_ = "several pages cannot all go to " + quoted(arguments_.output) +
                     "; give a pattern, such as -o '{stem}-{page}.svg'";
        } else if (arguments_.passwordFile == "-") {
            fault_ = "with several files the password cannot come from standard input";
        } else if (arguments_.imagePlace == PartPlace::folder && !arguments_.images.empty()) {
            fault_ = "the images of several pages cannot all go to " + quoted(arguments_.images) +
                     "; leave --images out, or say embed or none";
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

std::string_view profileName(Profile profile) {
    return profile == Profile::original ? "original" : "extended";
}

} // namespace corvane
