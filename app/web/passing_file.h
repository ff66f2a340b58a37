// A file that goes with its use.
#pragma once

#include <string>
#include <unistd.h>
#include <utility>

namespace corvane {

class PassingFile {
public:
    /// There need be none yet.
    explicit PassingFile(std::string path) : path_(std::move(path)) {}
    ~PassingFile() {
        if (!path_.empty()) {
            unlink(path_.c_str());
        }
    }
    PassingFile(PassingFile&& other) noexcept : path_(std::exchange(other.path_, {})) {}
    PassingFile& operator=(PassingFile&&) = delete;

    const std::string& path() const { return path_; }

    /// It stays; another has to take it away.
    void letGo() { path_.clear(); }

private:
    std::string path_;
};

} // namespace corvane
