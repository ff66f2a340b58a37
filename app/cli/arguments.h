// What the person asked for: the command line as one record.
#pragma once

#include "host/extension.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace corvane {

enum class Command : std::uint8_t { open, save, info, check, log, revert };

/// Where the fonts of a page go, and its images.
enum class PartPlace : std::uint8_t { artwork, none, folder };

struct Arguments {
    Command command = Command::open;
    std::string file;    ///< path of the PDF, bytes as given
    std::string artwork; ///< path of the SVG to save; "-" is standard input; empty: none, the file
                         ///< is only mended
    std::int32_t page = 0; ///< from 1; 0 where none was named
    std::string output;    ///< `open`: path of the SVG, "-" is standard output, empty leaves it to
                           ///< us; `save`: path of the PDF to make, empty changes `file` itself
    PartPlace imagePlace = PartPlace::folder;
    std::string images; ///< folder for pictures, where `imagePlace` says so; empty leaves it to us
    PartPlace fontPlace = PartPlace::artwork;
    bool placesLetters = false; ///< each letter of the artwork gets a place of its own
    std::string fonts = {};     ///< folder for fonts, where `fontPlace` says so
    Profile profile = Profile::extended;
    bool namesProfile = false;           ///< the person named the profile
    std::string passwordFile;            ///< "-" is standard input; empty where none was named
    std::optional<std::string> password; ///< as it was given among the arguments
    bool dryRun = false;
    bool force = false;
    bool allowsFiles = false; ///< images may come from any folder
    bool plain = false;       ///< new content is not compressed
    bool mend = false;        ///< what is damaged in the file is mended
    bool quiet = false;
    bool json = false;
};

enum class Question : std::uint8_t { help, version };

/// Why the command line cannot be followed: a sentence without the program's name.
struct UsageError {
    std::string sentence;
};

/// Reads `words`, the command line without the program's name. A question wins over everything to
/// its right, a fault over every question after it. The last of repeated options counts.
std::variant<Arguments, Question, UsageError> parseArguments(std::span<const char* const> words);

/// What `--help` prints: commands and options, one a line.
std::string usageText();

std::string_view commandName(Command command);
std::string_view profileName(Profile profile);

} // namespace corvane
