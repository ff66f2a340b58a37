#include "app/cli/batch/worker.h"

#include "app/cli/commands/commands.h"
#include "app/cli/fault.h"
#include "app/cli/follow.h"
#include "app/cli/plugin.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace corvane {

namespace {

/// Several writers go on where the last one ended, and so after the file was emptied.
Descriptor memoryFile(const char* name) {
    Descriptor file(memfd_create(name, MFD_CLOEXEC));
    if (!file || fcntl(file.number(), F_SETFL, O_APPEND) != 0) {
        throw Failure(outputFault("a process's messages", lastError()));
    }
    return file;
}

/// Whole records only: the channel keeps their bounds.
template <class Record>
bool send(int channel, const Record& record) {
    while (true) {
        const ssize_t count = ::send(channel, &record, sizeof record, MSG_NOSIGNAL);
        if (count >= 0 || errno != EINTR) {
            return count == static_cast<ssize_t>(sizeof record);
        }
    }
}

template <class Record>
bool receive(int channel, Record& record) {
    while (true) {
        const ssize_t count = recv(channel, &record, sizeof record, 0);
        if (count >= 0 || errno != EINTR) {
            return count == static_cast<ssize_t>(sizeof record);
        }
    }
}

/// What is said of a file that cannot be opened is the same as if its pages were opened.
TaskResult countPages(const Arguments& arguments) {
    Arguments counting = arguments;
    counting.command = Command::info;
    counting.json = true; // and so prints nothing itself
    Report found;
    Report report;
    report.error = faultOf([&] { runInfo(counting, found); });
    const auto pages = static_cast<std::int32_t>(found.pages.size());
    return {report.error ? conclude(arguments, report) : exitDone, pages, 0};
}

TaskResult doTask(Arguments arguments, const Task& task) {
    if (task.page == Task::countsPages) {
        return countPages(arguments);
    }
    arguments.page = task.page;
    return {follow(std::move(arguments)), 0, 0};
}

/// The life of the process. Its tasks end with the channel, which the system closes when the
/// program that gives them is gone.
[[noreturn]] void work(Arguments arguments, int channel) {
    const std::vector<std::string> files = std::exchange(arguments.files, {});
    // It stays loaded from one file to the next. Where that fails each task says so.
    std::optional<Plugin> plugin;
    static_cast<void>(faultOf([&] { plugin.emplace(pluginPath()); }));
    Task task;
    while (receive(channel, task)) {
        arguments.file = files[task.file];
        const TaskResult result = doTask(arguments, task);
        std::fflush(nullptr);
        if (!send(channel, result)) {
            break;
        }
    }
    _exit(exitDone);
}

} // namespace

Worker::Worker(const Arguments& arguments)
    : output_(memoryFile("output")), errors_(memoryFile("errors")) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throw Failure(outputFault("a channel to a process", lastError()));
    }
    channel_ = Descriptor(ends[0]);
    Descriptor theirs(ends[1]);
    process_ = fork();
    if (process_ < 0) {
        process_ = 0;
        throw Failure({code::memory, "no process can be started (" + lastError().message() +
                                         "); take fewer with --jobs"});
    }
    if (process_ == 0) {
        channel_.close();
        if (dup2(output_.number(), STDOUT_FILENO) < 0 ||
            dup2(errors_.number(), STDERR_FILENO) < 0) {
            _exit(exitFailed);
        }
        work(arguments, theirs.number());
    }
}

Worker::~Worker() {
    if (process_ != 0) {
        shutdown(channel_.number(), SHUT_RDWR);
        while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
}

void Worker::give(const Task& task) {
    task_ = task;
    send(channel_.number(), task); // where the process is gone, reading the result tells
}

TaskResult Worker::take() {
    task_.reset();
    TaskResult result;
    if (receive(channel_.number(), result)) {
        return result;
    }
    int status = 0;
    while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
    process_ = 0;
    return {exitFailed, 0, WIFSIGNALED(status) ? WTERMSIG(status) : 0};
}

void Worker::cancel() const {
    if (process_ != 0) {
        kill(process_, SIGINT);
    }
}

std::string Worker::emptied(const Descriptor& file) {
    struct stat facts {};
    if (fstat(file.number(), &facts) != 0 || facts.st_size == 0) {
        return {};
    }
    std::string text(static_cast<std::size_t>(facts.st_size), '\0');
    const ssize_t count = pread(file.number(), text.data(), text.size(), 0);
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (ftruncate(file.number(), 0) != 0) {
        throw Failure(outputFault("a process's messages", lastError()));
    }
    return text;
}

} // namespace corvane
