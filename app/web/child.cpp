#include "app/web/child.h"

#include "app/cli/fault.h"
#include "app/cli/programs/spawning.h"
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

/// What a process begins with: made before there is one, since in a copy of a process with threads
/// nothing may be done but system calls.
class Start {
public:
    Start(const std::string& program, const ChildWish& wish)
        : program_(program), time_(static_cast<rlim_t>(wish.time.count())),
          fileSize_(wish.fileSize ? static_cast<rlim_t>(*wish.fileSize) : RLIM_INFINITY) {
        words_.insert(words_.end(), wish.words.begin(), wish.words.end());
        pointers_ = spawnWords(words_);
        if (wish.password) {
            withoutPassword_ = environmentWithoutPassword();
            environment_ = withoutPassword_.data();
        }
    }

    /// The process, a group of its own; negative, with `errno`, where there can be none.
    pid_t run(int input, int output, int errors) const {
        sigset_t all;
        sigset_t former;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &former); // our handlers are not for it
        const pid_t process = fork();
        if (process == 0) {
            become(input, output, errors);
        }
        const int error = errno;
        setpgid(process, process); // also here: who is first is not known
        pthread_sigmask(SIG_SETMASK, &former, nullptr);
        errno = error;
        return process;
    }

private:
    [[noreturn]] void become(int input, int output, int errors) const {
        setpgid(0, 0);
        signal(SIGPIPE, SIG_DFL);
        signal(SIGXFSZ, SIG_DFL);
        limitAll();
        const bool isReady = dup2(input, STDIN_FILENO) >= 0 && dup2(output, STDOUT_FILENO) >= 0 &&
                             dup2(errors, STDERR_FILENO) >= 0 &&
                             close_range(STDERR_FILENO + 1, ~0U, 0) == 0;
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        if (isReady) {
            execve(program_.c_str(), pointers_.data(), environment_);
        }
        _exit(127); // as shells say it
    }

    void limitAll() const {
#ifndef __SANITIZE_ADDRESS__ // which takes terabytes of addresses for itself
        limit(RLIMIT_AS, limits::memory);
#endif
        limit(RLIMIT_CPU, time_);
        limit(RLIMIT_FSIZE, fileSize_);
        limit(RLIMIT_CORE, 0); // a page's contents stay private
    }

    static void limit(__rlimit_resource resource, rlim_t most) {
        rlimit both{};
        getrlimit(resource, &both);
        // The end of a process's time is told by a signal of its own a second before it is ended.
        const rlim_t last = resource == RLIMIT_CPU ? most + 1 : most;
        both.rlim_max = std::min(both.rlim_max, last);
        both.rlim_cur = std::min(both.rlim_max, most);
        setrlimit(resource, &both);
    }

    const std::string& program_;
    rlim_t time_;
    rlim_t fileSize_;
    std::vector<std::string> words_{"corvane"};
    std::vector<char*> pointers_;
    std::vector<char*> withoutPassword_;
    char* const* environment_ = environ;
};

class Child {
public:
    Child(const std::string& program, const ChildWish& wish)
        : wish_(wish), deadline_(Clock::now() + wish.time) {
        Pipe output = newPipe();
        const Descriptor nothing(open("/dev/null", O_RDWR | O_CLOEXEC));
        const Descriptor password = openPassword();
        process_ = Start(program, wish)
                       .run(password ? password.number() : nothing.number(),
                            output.writing.number(), nothing.number());
        if (process_ < 0) {
            throw Failure({code::memory, "no process can be started (" + lastError().message() +
                                             "); close other programs"});
        }
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
