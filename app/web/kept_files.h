// Files that the server made and keeps for a while: the oldest go.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <string>

namespace corvane {

/// Who opened a file before it went can read it to its end.
class KeptFiles {
public:
    KeptFiles(std::size_t most, std::int64_t mostBytes) : most_(most), mostBytes_(mostBytes) {}

    /// Keeps the file at `path`; another of that name goes.
    void keep(const std::string& name, const std::string& path);

    /// The path; the file is the newest then.
    std::optional<std::string> find(const std::string& name);

private:
    struct Row {
        std::string name;
        std::string path;
        std::int64_t bytes;
    };

    void remove(std::list<Row>::iterator row);

    const std::size_t most_;
    const std::int64_t mostBytes_;
    std::mutex mutex_;    ///< of all below
    std::list<Row> rows_; ///< newest first
    std::int64_t bytes_ = 0;
};

} // namespace corvane
