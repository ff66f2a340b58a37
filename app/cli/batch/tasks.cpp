#include "app/cli/batch/tasks.h"

#include "app/cli/batch/name_pattern.h"

#include <algorithm>

namespace corvane {

std::optional<Task> TaskList::next() {
    while (spans_.empty() && nextFile_ < arguments_.files.size()) {
        startFile();
    }
    if (spans_.empty()) {
        return std::nullopt;
    }
    Span& span = spans_.front();
    const Task task{span.file, span.next};
    if (span.next == span.last) {
        spans_.pop_front();
    } else {
        ++span.next;
    }
    return task;
}

void TaskList::startFile() {
    const std::uint32_t file = nextFile_++;
    const bool isOpen =
        std::ranges::find(arguments_.pages, 0, &PageRange::last) != arguments_.pages.end();
    if (isOpen) {
        spans_.push_back({file, Task::countsPages, Task::countsPages});
    } else if (arguments_.pages.empty()) {
        spans_.push_back({file, arguments_.page, arguments_.page});
    }
    for (const PageRange& range : arguments_.pages) {
        if (!isOpen) {
            spans_.push_back({file, range.first, range.last});
        }
    }
}

void TaskList::addPages(std::uint32_t file, std::int32_t count) {
    for (const PageRange& range : arguments_.pages) {
        // A range that begins behind the file is a page that is not there, and so is said.
        const std::int32_t last = range.last == 0 ? std::max(count, range.first) : range.last;
        spans_.push_back({file, range.first, last});
    }
}

std::optional<std::string> TaskList::claimed(const Task& task) {
    if (arguments_.command != Command::open || task.page == Task::countsPages ||
        !isPattern(arguments_.output)) {
        return std::nullopt;
    }
    const std::string& file = arguments_.files[task.file];
    const auto [entry, isNew] =
        names_.try_emplace(filledName(arguments_.output, file, std::max(task.page, 1)), task.file);
    return isNew ? std::nullopt : std::optional(arguments_.files[entry->second]);
}

} // namespace corvane
