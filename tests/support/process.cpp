#include "tests/support/process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <linux/capability.h>
#include <poll.h>
#include <pty.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>

namespace corvane::test {

namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

/// A file descriptor that is closed with its owner.
class Descriptor {
public:
    explicit Descriptor(int value = -1) : value_(value) {}
    Descriptor(Descriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    ~Descriptor() { reset(); }

    int get() const { return value_; }
    void reset() {
        if (value_ >= 0) {
            close(std::exchange(value_, -1));
        }
    }

private:
    int value_;
};

/// Both ends of a pipe, or the two sides of a pseudo-terminal without echo.
struct Channel {
    Descriptor ours;
    Descriptor theirs;
};

enum class Direction { toChild, fromChild };

Channel makePipe(Direction direction) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        fail("pipe2");
    }
    const bool isInput = direction == Direction::toChild;
    return {Descriptor(ends[isInput ? 1 : 0]), Descriptor(ends[isInput ? 0 : 1])};
}

Channel makeTerminal() {
    termios settings{};
    settings.c_lflag = ICANON | ISIG;
    settings.c_cc[VEOF] = 4;
    int ours = -1;
    int theirs = -1;
    if (openpty(&ours, &theirs, nullptr, &settings, nullptr) != 0) {
        fail("openpty");
    }
    fcntl(ours, F_SETFD, FD_CLOEXEC);
    fcntl(theirs, F_SETFD, FD_CLOEXEC);
    return {Descriptor(ours), Descriptor(theirs)};
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (std::string& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

std::vector<std::string> environmentOf(const Process& process) {
    std::vector<std::string> result;
    for (const auto& [name, value] : process.environment) {
        result.push_back(name + "=" + value);
    }
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const std::string name = text.substr(0, text.find('='));
        if (std::ranges::find(process.environment, name,
                              &std::pair<std::string, std::string>::first) ==
            process.environment.end()) {
            result.push_back(text);
        }
    }
    return result;
}

void limit(__rlimit_resource resource, const std::optional<std::uint64_t>& bytes) {
    if (bytes) {
        const rlimit value{*bytes, *bytes};
        setrlimit(resource, &value);
    }
}

/// What happens between fork and exec; all that needs memory was made before.
[[noreturn]] void becomeProgram(const Process& process, char* const* words,
                                char* const* environment, std::array<int, 3> streams) {
    setpgid(0, 0);
    for (int i = 0; i < 3; ++i) {
        if (dup2(streams[static_cast<std::size_t>(i)], i) < 0) {
            _exit(127);
        }
    }
    if (!process.folder.empty() && chdir(process.folder.c_str()) != 0) {
        _exit(127);
    }
    if (process.obeysPermissions) {
        prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
        prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
    }
    for (const int signal : {SIGINT, SIGPIPE, SIGXFSZ}) {
        std::signal(signal, SIG_DFL);
    }
    limit(RLIMIT_FSIZE, process.fileSize);
    limit(RLIMIT_AS, process.addressSpace);
    execve(words[0], words, environment);
    _exit(127);
}

/// One read; closes the descriptor at the end of its stream.
void drain(Descriptor& from, std::string& into) {
    std::array<char, 65536> block{};
    const ssize_t count = read(from.get(), block.data(), block.size());
    // A pseudo-terminal without a program answers EIO.
    if (count > 0) {
        into.append(block.data(), static_cast<std::size_t>(count));
    } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
        from.reset();
    }
}

/// Feeds and reads the program until it has closed what it says, or the time is over.
class Conversation {
public:
    Conversation(const Process& process, pid_t child, Outcome& outcome)
        : process_(process), child_(child), outcome_(outcome) {}

    void hold(Descriptor& input, Descriptor& output, Descriptor& errors) {
        const auto end = Clock::now() + process_.timeout;
        while (output.get() >= 0 || errors.get() >= 0) {
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
            if (left.count() <= 0) {
                outcome_.timedOut = true;
                kill(-child_, SIGKILL);
                return;
            }
            std::array<pollfd, 3> polled{pollfd{output.get(), POLLIN, 0},
                                         pollfd{errors.get(), POLLIN, 0},
                                         pollfd{allowed() > fed_ ? input.get() : -1, POLLOUT, 0}};
            poll(polled.data(), polled.size(), static_cast<int>(left.count()));
            if (polled[0].revents != 0) {
                drain(output, outcome_.output);
            }
            if (polled[1].revents != 0) {
                drain(errors, outcome_.errors);
                interruptOnce();
            }
            if (polled[2].revents != 0) {
                feed(input);
            }
        }
    }

private:
    /// How much of the input may have been written by now.
    std::size_t allowed() const {
        const std::string& question = process_.inputOn;
        if (question.empty()) {
            return process_.input.empty() ? 1 : process_.input.size();
        }
        std::size_t end = 0;
        for (std::size_t at = outcome_.errors.find(question);
             at != std::string::npos && end < process_.input.size();
             at = outcome_.errors.find(question, at + 1)) {
            end = std::min(process_.input.find('\n', end) + 1, process_.input.size());
        }
        return end;
    }

    void feed(Descriptor& input) {
        const ssize_t count = write(input.get(), process_.input.data() + fed_, allowed() - fed_);
        fed_ += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
        if (fed_ == process_.input.size() || (count < 0 && errno != EINTR)) {
            input.reset();
        }
    }

    void interruptOnce() {
        if (!process_.interruptOn.empty() && !isInterrupted_ &&
            outcome_.errors.find(process_.interruptOn) != std::string::npos) {
            isInterrupted_ = true;
            kill(child_, SIGINT);
        }
    }

    const Process& process_;
    pid_t child_;
    Outcome& outcome_;
    std::size_t fed_ = 0;
    bool isInterrupted_ = false;
};

/// A reader that is gone must not end the test.
class IgnoredPipeSignal {
public:
    IgnoredPipeSignal() : former_(std::signal(SIGPIPE, SIG_IGN)) {}
    ~IgnoredPipeSignal() { std::signal(SIGPIPE, former_); }
    IgnoredPipeSignal(const IgnoredPipeSignal&) = delete;
    IgnoredPipeSignal& operator=(const IgnoredPipeSignal&) = delete;

private:
    void (*former_)(int);
};

} // namespace

Outcome run(const Process& process) {
    const IgnoredPipeSignal ignored;
    std::vector<std::string> words = process.words;
    std::vector<std::string> environment = environmentOf(process);
    const std::vector<char*> wordPointers = pointers(words);
    const std::vector<char*> environmentPointers = pointers(environment);

    Channel input = makePipe(Direction::toChild);
    Channel output = makePipe(Direction::fromChild);
    Channel errors = makePipe(Direction::fromChild);
    if (process.onTerminal) {
        errors = makeTerminal();
        input.theirs = Descriptor(fcntl(errors.theirs.get(), F_DUPFD_CLOEXEC, 0));
        input.ours = Descriptor(fcntl(errors.ours.get(), F_DUPFD_CLOEXEC, 0));
    }
    if (!process.outputFile.empty()) {
        output.theirs = Descriptor(
            open(process.outputFile.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666));
    }

    const auto start = Clock::now();
    const pid_t child = fork();
    if (child < 0) {
        fail("fork");
    }
    if (child == 0) {
        becomeProgram(process, wordPointers.data(), environmentPointers.data(),
                      {input.theirs.get(), output.theirs.get(), errors.theirs.get()});
    }
    input.theirs.reset();
    output.theirs.reset();
    errors.theirs.reset();

    Outcome outcome;
    Conversation(process, child, outcome).hold(input.ours, output.ours, errors.ours);
    int status = 0;
    rusage usage{};
    while (wait4(child, &status, 0, &usage) < 0 && errno == EINTR) {
    }
    outcome.seconds = Clock::now() - start;
    outcome.peakMemory = std::int64_t{usage.ru_maxrss} * 1024;
    if (WIFEXITED(status)) {
        outcome.status = WEXITSTATUS(status);
    } else if (WIFSIGNALED(status)) {
        outcome.signal = WTERMSIG(status);
    }
    return outcome;
}

} // namespace corvane::test
