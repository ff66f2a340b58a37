// Files that the server made and keeps for a while: the oldest go.
#pragma once

#include "toolbox/descriptor.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <string>

namespace corvane {

/// A file that has gone can be read to its end by who got it before.
class KeptFiles {
public:
    KeptFiles(std::size_t most, std::int64_t mostBytes) : most_(most), mostBytes_(mostBytes) {}

    using File = std::shared_ptr<const Descriptor>;

    /// Keeps the file at `path`; another of that name goes. Raises `Failure` where it is not there.
    File keep(const std::string& name, const std::string& path);

    /// Null where there is none of that name. The file is the newest then.
    File find(const std::string& name);

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
