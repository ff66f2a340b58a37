#include "app/cli/programs/spawning.h"

#include <csignal>
#include <string_view>
#include <unistd.h>

namespace corvane {

std::vector<char*> spawnWords(std::vector<std::string>& words) {
    std::vector<char*> result;
    result.reserve(words.size() + 1);
    for (std::string& word : words) {
        result.push_back(word.data());
    }
    result.push_back(nullptr);
    return result;
}

std::vector<char*> environmentWithoutPassword() {
    std::vector<char*> result;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (!std::string_view(*entry).starts_with("CORVANE_PASSWORD=")) {
            result.push_back(*entry);
        }
    }
    result.push_back(nullptr);
    return result;
}

SpawnAttributes::SpawnAttributes(short flags) {
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setflags(
        &attributes_, static_cast<short>(flags | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK));
    // What we ignore or block would stay so; what we handle becomes the default of itself.
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    sigaddset(&signals, SIGPIPE);
    sigaddset(&signals, SIGXFSZ);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
}

} // namespace corvane
