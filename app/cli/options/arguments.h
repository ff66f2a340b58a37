// What the person asked for: the command line as one record.
#pragma once

#include "app/cli/batch/page_ranges.h"
#include "host/extension.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane {

enum class Command : std::uint8_t { open, save, edit, info, check, log, revert, serve, inkscape };

class PasswordSource;

/// Where the fonts of a page go, and its images.
enum class PartPlace : std::uint8_t { artwork, none, folder };

/// What becomes of the extensions for Inkscape.
enum class ExtensionWish : std::uint8_t { none, install, remove };

struct Arguments {
    Command command = Command::open;
    std::string file; ///< path of the PDF, bytes as given; `inkscape`: of the folder
    /// Of a command for many files: all of them; `file` is the one at hand then. `serve`: files and
    /// folders. Else empty.
    std::vector<std::string> files = {};
    std::vector<PageRange> pages = {}; ///< of each of many files; empty: as for one
    std::int32_t jobs = 1;             ///< processes that work on many files
    std::int32_t port = 0;             ///< `serve`: 0 leaves it to the system
    bool stays = false;                ///< `serve`: also while no page is open
    bool opensBrowser = true;          ///< `serve`
    std::string artwork; ///< path of the SVG to save; "-" is standard input; empty: none, the file
                         ///< is only mended
    std::int32_t page = 0; ///< from 1; 0 where none was named
    std::string output;    ///< `open`: path of the SVG, "-" is standard output, empty leaves it to
                           ///< us; `save`: path of the PDF to make, empty changes `file` itself
    std::string folder = {}; ///< `open`: of artwork whose name is left to us; empty: where we are
    std::string editor = {}; ///< `edit`: the command that starts it; empty leaves it to us
    PartPlace imagePlace = PartPlace::folder;
    std::string images; ///< folder for pictures, where `imagePlace` says so; empty leaves it to us
    std::string thumbnail = {}; ///< `info`: path of the PNG that shows the page; empty: none
    PartPlace fontPlace = PartPlace::artwork;
    bool placesLetters = false; ///< each letter of the artwork gets a place of its own
    std::string fonts = {};     ///< folder for fonts, where `fontPlace` says so
    Profile profile = Profile::extended;
    bool namesProfile = false;           ///< the person named the profile
    std::string passwordFile;            ///< "-" is standard input; empty where none was named
    std::optional<std::string> password; ///< as it was given among the arguments
    bool dryRun = false;
    std::optional<std::int64_t> expectedSize = {}; ///< the file is as long, or is left alone
    bool force = false;
    bool allowsFiles = false; ///< images may come from any folder
    bool plain = false;       ///< new content is not compressed
    bool mend = false;        ///< what is damaged in the file is mended
    /// What several sessions of one command share, so that nobody is asked twice; not an owner.
    /// Null: each session has its own.
    PasswordSource* passwords = nullptr;
    ExtensionWish extensions = ExtensionWish::none; ///< `inkscape`
    bool quiet = false;
    bool json = false;
};

enum class Question : std::uint8_t { help, version };

/// Whether the command goes through many files, or many pages of one.
inline bool isBatch(const Arguments& arguments) {
    return !arguments.files.empty() && arguments.command != Command::serve;
}

/// Why the command line cannot be followed: a sentence without the program's name.
struct UsageError {
    std::string sentence;
};

/// Reads `words`, the command line without the program's name. A question wins over everything to
/// its right, a fault over every question after it. The last of repeated options counts.
std::variant<Arguments, Question, UsageError> parseArguments(std::span<const char* const> words);

std::string_view commandName(Command command);
std::string_view profileName(Profile profile);

} // namespace corvane
