#include "app/cli/inkscape/extension_folder.h"

#include "app/cli/fault.h"
#include "app/cli/programs/installed_program.h"
#include "app/cli/programs/stream_actions.h"
#include "toolbox/descriptor.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace corvane {

namespace {

constexpr std::size_t longestAnswer = 65536; ///< of a program that says a path

std::string readAll(const Descriptor& from) {
    std::string text;
    std::array<char, 4096> block{};
    while (text.size() < longestAnswer) {
        const ssize_t count = read(from.number(), block.data(), block.size());
        if (count > 0) {
            text.append(block.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            break;
        }
    }
    return text;
}

/// What the program says on standard output; empty where it cannot be started.
std::string answerOf(std::string program, std::string question) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return "";
    }
    Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);
    StreamActions streams;
    streams.open(STDIN_FILENO, "/dev/null", O_RDONLY);
    streams.duplicate(ends[1], STDOUT_FILENO);
    streams.open(STDERR_FILENO, "/dev/null", O_WRONLY);
    std::array<char*, 3> words{program.data(), question.data(), nullptr};
    pid_t child = 0;
    if (posix_spawn(&child, program.c_str(), streams.get(), nullptr, words.data(), environ) != 0) {
        return "";
    }
    writing.close();
    std::string answer = readAll(reading);
    reading.close(); // one that says more does not wait for us
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    return answer;
}

/// The last line, since a program may complain before it answers.
std::string lastLine(std::string text) {
    text.erase(text.find_last_not_of('\n') + 1);
    return text.substr(text.rfind('\n') + 1);
}

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

/// Where the data of a person are, without asking Inkscape; empty where nothing says it.
std::string conventionalFolder() {
    if (std::string folder = variable("INKSCAPE_PROFILE_DIR"); !folder.empty()) {
        return folder;
    }
    if (const std::string folder = variable("XDG_CONFIG_HOME"); folder.starts_with('/')) {
        return folder + "/inkscape";
    }
    const std::string home = variable("HOME");
    return home.empty() ? "" : home + "/.config/inkscape";
}

} // namespace

ExtensionFolder extensionFolder() {
    const std::string inkscape = installedProgram("inkscape");
    std::string data;
    if (!inkscape.empty()) {
        data = lastLine(answerOf(inkscape, "--user-data-directory"));
    }
    if (!data.starts_with('/')) {
        data = conventionalFolder();
    }
    if (data.empty()) {
        throw Failure({code::io, "nothing says where Inkscape keeps extensions; set HOME, or "
                                 "INKSCAPE_PROFILE_DIR"});
    }
    return {data + "/extensions/corvane", !inkscape.empty()};
}

} // namespace corvane
