// A process of this program that does one command, within limits.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

struct ChildWish {
    std::vector<std::string> words;            ///< the command line, without the program's name
    std::optional<std::string> password = {};  ///< goes to its standard input
    std::chrono::seconds time{};               ///< on the clock, and of the processor
    std::function<bool()> isUnwanted = {};     ///< asked now and then; true ends it
    std::optional<std::int64_t> fileSize = {}; ///< of any file that it writes
};

struct ChildEnd {
    enum class Cause : std::uint8_t { itself, time, output, unwanted };
    Cause cause = Cause::itself;
    int status = 0;     ///< of exit
    int signal = 0;     ///< that ended it; 0: none
    std::string output; ///< what it printed on standard output
};

/// Runs `program` and waits for its end. It gets nothing of ours but what is said here, and what it
/// says on standard error is dropped. Where it has to go it is told to end first, and is ended soon
/// after. The status is 127 where there is no such program. Raises `Failure` where there can be no
/// process.
ChildEnd runChild(const std::string& program, const ChildWish& wish);

} // namespace corvane
