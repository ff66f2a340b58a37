// A process that does one task after another, so that its crash is nobody else's.
#pragma once

#include "app/cli/batch/tasks.h"
#include "app/cli/options/arguments.h"
#include "toolbox/descriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <sys/types.h>

namespace corvane {

/// How a task ended.
struct TaskResult {
    std::int32_t status = 0; ///< as the program would exit
    std::int32_t pages = 0;  ///< of the file, where they were counted
    std::int32_t signal = 0; ///< that ended the process; 0: none
};

class Worker {
public:
    /// Starts the process, which follows `arguments` file by file. Raises `Failure`.
    explicit Worker(const Arguments& arguments);
    /// Ends the process when it has done its task.
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Nothing is at hand then. Raises `Failure`.
    void give(const Task& task);
    const std::optional<Task>& task() const { return task_; }

    /// Can be read from once the task has ended.
    int descriptor() const { return channel_.number(); }
    /// The end of the task, which is not at hand any more. A process that is gone takes no other
    /// task.
    TaskResult take();
    bool isGone() const { return process_ == 0; }

    /// What the task said, on standard output and on standard error.
    std::string output() { return emptied(output_); }
    std::string errors() { return emptied(errors_); }

    /// Tells the process to give its task up.
    void cancel() const;

private:
    static std::string emptied(const Descriptor& file);

    pid_t process_ = 0;
    Descriptor channel_;
    Descriptor output_; ///< in memory, and shared, so that what a crash leaves is read too
    Descriptor errors_;
    std::optional<Task> task_;
};

} // namespace corvane
