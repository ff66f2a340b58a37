// The commands and options that there are, for reading a command line and for telling people.
#pragma once

#include "app/cli/options/arguments.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

struct CommandRow {
    Command command;
    std::string_view name;
    std::string_view operands;
    std::string_view purpose;
};

enum class OptionKind : std::uint8_t {
    page,
    pages,
    jobs,
    output,
    editor,
    thumbnail,
    images,
    fonts,
    text,
    dryRun,
    expectSize,
    force,
    allowFiles,
    plain,
    mend,
    install,
    remove,
    port,
    stay,
    noBrowser,
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
    std::string_view words = {}; ///< words that the value may be, between blanks
};

std::span<const CommandRow> commandRows();
std::span<const OptionRow> optionRows();

/// Of two names of a kind, each goes with the commands of both.
bool goesWith(OptionKind kind, Command command);

} // namespace corvane
