#include "app/cli/edit/editor_process.h"

#include "app/cli/fault.h"
#include "app/cli/programs/spawning.h"
#include "app/cli/programs/stream_actions.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace corvane {

namespace {

class Attributes {
public:
    Attributes() {
        posix_spawnattr_init(&attributes_);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF |
                                                   POSIX_SPAWN_SETSIGMASK);
        // What we ignore or block would stay so; what we handle becomes the default of itself.
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes_, &signals);
        sigaddset(&signals, SIGPIPE);
        sigaddset(&signals, SIGXFSZ);
        posix_spawnattr_setsigdefault(&attributes_, &signals);
    }
    ~Attributes() { posix_spawnattr_destroy(&attributes_); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    const posix_spawnattr_t* get() const { return &attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

} // namespace

std::string endText(const ProgramEnd& end) {
    return end.signal != 0 ? "was ended by signal " + std::to_string(end.signal)
                           : "ended with status " + std::to_string(end.status);
}

EditorProcess::EditorProcess(std::vector<std::string> words) {
    if (words.empty()) {
        throw Failure({code::editor, "the editor cannot be started; name it with --editor"});
    }
    StreamActions streams;
    streams.open(STDIN_FILENO, "/dev/null", O_RDONLY);
    streams.duplicate(STDERR_FILENO, STDOUT_FILENO);
    streams.closeFrom(STDERR_FILENO + 1);
    const Attributes attributes;
    const int error = posix_spawn(&process_, words.front().c_str(), streams.get(), attributes.get(),
                                  spawnWords(words).data(), environmentWithoutPassword().data());
    if (error != 0) {
        throw Failure({code::editor, "the editor " + words.front() + " cannot be started (" +
                                         std::generic_category().message(error) +
                                         "); name another with --editor"});
    }
    descriptor_ = Descriptor(static_cast<int>(syscall(SYS_pidfd_open, process_, 0)));
}

std::optional<ProgramEnd> EditorProcess::ended() {
    int status = 0;
    const pid_t found = end_ ? 0 : waitpid(process_, &status, WNOHANG);
    if (found < 0 && errno == ECHILD) {
        end_ = ProgramEnd{}; // where the parent ignores SIGCHLD, nobody is told how it ended
    } else if (found == process_) {
        end_ = WIFSIGNALED(status) ? ProgramEnd{.status = 0, .signal = WTERMSIG(status)}
                                   : ProgramEnd{.status = WEXITSTATUS(status), .signal = 0};
    }
    return end_;
}

} // namespace corvane
