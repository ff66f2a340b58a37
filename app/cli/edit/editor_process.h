// The editor while it runs.
#pragma once

#include "toolbox/descriptor.h"

#include <chrono>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace corvane {

/// How a program ended.
struct ProgramEnd {
    int status = 0; ///< of exit
    int signal = 0; ///< that ended it; 0: none
    bool isGood() const { return status == 0 && signal == 0; }
};

/// "ended with status 3", "was ended by signal 9".
std::string endText(const ProgramEnd& end);

/// A program in a session of its own: Ctrl-C on our terminal is not for it, nor does it end when
/// the terminal is closed. It goes on when the object goes.
class EditorProcess {
public:
    using Clock = std::chrono::steady_clock;

    /// Starts `words`, the program's path first. It reads nothing from us, says what it says on our
    /// standard error, and does not learn CORVANE_PASSWORD. Raises `Failure`.
    explicit EditorProcess(std::vector<std::string> words);

    /// How it ended; none while it runs. Does not wait.
    std::optional<ProgramEnd> ended();

    /// Can be read from once the program has ended; -1 where the machine has no such thing.
    int descriptor() const { return descriptor_.number(); }

    /// When it was started.
    Clock::time_point start() const { return start_; }

private:
    pid_t process_ = 0;
    Descriptor descriptor_;
    Clock::time_point start_ = Clock::now();
    std::optional<ProgramEnd> end_;
};

} // namespace corvane
