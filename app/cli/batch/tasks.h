// What is to be done with many files: one page of one file after another.
#pragma once

#include "app/cli/batch/output_names.h"
#include "app/cli/options/arguments.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

namespace corvane {

/// `page` of a file that has no list of pages is 0.
struct Task {
    /// Asks only how many pages the file has.
    static constexpr std::int32_t countsPages = -1;

    std::uint32_t file = 0; ///< in the list of files
    std::int32_t page = 0;
};

/// Files in their order, and pages in theirs. Ranges are never written out, so they cost nothing.
class TaskList {
public:
    /// `arguments` outlive the list.
    explicit TaskList(const Arguments& arguments)
        : arguments_(arguments), outputs_(arguments.files) {}

    std::optional<Task> next();

    /// A file's pages were counted: ranges without an end go so far.
    void addPages(std::uint32_t file, std::int32_t count);

    /// Why the output of a task may not be written, as `OutputNames` says.
    std::optional<std::string> refusal(const Task& task);

private:
    struct Span {
        std::uint32_t file;
        std::int32_t next;
        std::int32_t last;
    };

    void startFile();

    const Arguments& arguments_;
    std::uint32_t nextFile_ = 0;
    std::deque<Span> spans_;
    OutputNames outputs_;
};

} // namespace corvane
