// What programs that are started get from us.
#pragma once

#include <spawn.h>
#include <string>
#include <vector>

namespace corvane {

/// `words`, which stay where they are, as an argument list.
std::vector<char*> spawnWords(std::vector<std::string>& words);

/// Our environment but for CORVANE_PASSWORD.
std::vector<char*> environmentWithoutPassword();

/// Attributes of a process with the signals that it would have from a shell.
class SpawnAttributes {
public:
    /// `flags` as posix_spawnattr_setflags takes them.
    explicit SpawnAttributes(short flags);
    ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;

    const posix_spawnattr_t* get() const { return &attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

} // namespace corvane
