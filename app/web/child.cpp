#include "app/web/child.h"

#include "app/cli/fault.h"
#include "app/cli/programs/spawning.h"
#include "app/cli/programs/stream_actions.h"
#include "app/cli/terminal/secret_text.h"
#include "app/web/limits.h"
#include "toolbox/descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace corvane {

namespace {

using Clock = std::chrono::steady_clock;
using Cause = ChildEnd::Cause;

struct Pipe {
    Descriptor reading;
    Descriptor writing;
};

Pipe newPipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw Failure(outputFault("a channel to a process", lastError()));
    }
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

void limit(pid_t process, __rlimit_resource resource, rlim_t most) {
    const rlimit both{most, most + 1}; // the first is told by a signal of its own
    prlimit(process, resource, &both, nullptr);
}

/// The process runs already, for less than a millisecond: it has opened nothing yet.
void limitAll(pid_t process, const ChildWish& wish) {
#ifndef __SANITIZE_ADDRESS__ // which takes terabytes of addresses for itself
    limit(process, RLIMIT_AS, limits::memory);
#endif
    limit(process, RLIMIT_CPU, static_cast<rlim_t>(wish.time.count()));
    if (wish.fileSize) {
        limit(process, RLIMIT_FSIZE, static_cast<rlim_t>(*wish.fileSize));
    }
    limit(process, RLIMIT_CORE, 0); // a page's contents stay private
}

class Child {
public:
    Child(const std::string& program, const ChildWish& wish)
        : wish_(wish), deadline_(Clock::now() + wish.time) {
        Pipe output = newPipe();
        StreamActions streams;
        const Descriptor password = openPassword();
        if (password) {
            streams.duplicate(password.number(), STDIN_FILENO);
        } else {
            streams.open(STDIN_FILENO, "/dev/null", O_RDONLY);
        }
        streams.duplicate(output.writing.number(), STDOUT_FILENO);
        streams.open(STDERR_FILENO, "/dev/null", O_WRONLY);
        streams.closeFrom(STDERR_FILENO + 1);
        std::vector<std::string> words{"corvane"};
        words.insert(words.end(), wish.words.begin(), wish.words.end());
        const SpawnAttributes attributes(POSIX_SPAWN_SETPGROUP);
        const int error = posix_spawn(&process_, program.c_str(), streams.get(), attributes.get(),
                                      spawnWords(words).data(),
                                      password ? environmentWithoutPassword().data() : environ);
        if (error != 0) {
            throw Failure({code::memory, "no process can be started (" +
                                             std::generic_category().message(error) +
                                             "); close other programs"});
        }
        limitAll(process_, wish);
        output_ = std::move(output.reading);
        descriptor_ = Descriptor(static_cast<int>(syscall(SYS_pidfd_open, process_, 0)));
    }

    ~Child() {
        if (!isReaped_) {
            kill(-process_, SIGKILL);
            while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
            }
        }
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    ChildEnd run() {
        while (!hasEnded()) {
            await();
            read();
            judge();
        }
        read();
        return std::move(end_);
    }

private:
    /// What is past the longest counts in no PDF. So short that it fits into a pipe, and nobody
    /// waits.
    Descriptor openPassword() const {
        if (!wish_.password) {
            return {};
        }
        Pipe pipe = newPipe();
        const std::string line = wish_.password->substr(0, SecretText::longest) + "\n";
        if (write(pipe.writing.number(), line.data(), line.size()) < 0) {
            throw Failure(outputFault("a password for a process", lastError()));
        }
        return std::move(pipe.reading);
    }

    void await() const {
        std::array<pollfd, 2> polled{pollfd{output_.number(), POLLIN, 0},
                                     pollfd{descriptor_.number(), POLLIN, 0}};
        // Without a descriptor of the process: its output ends with it.
        poll(polled.data(), polled.size(),
             static_cast<int>(limits::turn / std::chrono::milliseconds(1)));
    }

    /// All that is there, to the limit.
    void read() {
        std::array<char, 16 * 1024> piece{};
        while (output_ && isReady()) {
            const ssize_t count = ::read(output_.number(), piece.data(), piece.size());
            if (count <= 0) {
                if (count == 0 || errno != EINTR) {
                    output_.close();
                }
                continue;
            }
            if (end_.output.size() + static_cast<std::size_t>(count) > limits::output) {
                stop(Cause::output);
                output_.close();
                return;
            }
            end_.output.append(piece.data(), static_cast<std::size_t>(count));
        }
    }

    bool isReady() const {
        pollfd polled{output_.number(), POLLIN, 0};
        return poll(&polled, 1, 0) > 0;
    }

    void judge() {
        const auto now = Clock::now();
        if (end_.cause != Cause::itself) {
            if (now > deadline_) {
                kill(-process_, SIGKILL);
            }
        } else if (now > deadline_) {
            stop(Cause::time);
        } else if (wish_.isUnwanted && wish_.isUnwanted()) {
            stop(Cause::unwanted);
        }
    }

    void stop(Cause cause) {
        if (end_.cause == Cause::itself) {
            end_.cause = cause;
            kill(-process_, SIGTERM);
            deadline_ = Clock::now() + limits::graceTime;
        }
    }

    bool hasEnded() {
        int status = 0;
        const pid_t found = waitpid(process_, &status, WNOHANG);
        if (found == process_) {
            end_.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
            end_.cause = end_.signal == SIGXCPU ? Cause::time : end_.cause;
            end_.status = WIFEXITED(status) ? WEXITSTATUS(status) : 0;
        }
        // Where the parent ignores SIGCHLD, nobody is told how it ended.
        isReaped_ = found == process_ || (found < 0 && errno == ECHILD);
        return isReaped_;
    }

    const ChildWish& wish_;
    Clock::time_point deadline_;
    pid_t process_ = 0;
    bool isReaped_ = false;
    Descriptor output_;
    Descriptor descriptor_; ///< can be read from once the process has ended
    ChildEnd end_;
};

} // namespace

ChildEnd runChild(const std::string& program, const ChildWish& wish) {
    return Child(program, wish).run();
}

} // namespace corvane
