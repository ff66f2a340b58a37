// What becomes of the standard streams of a program that is started.
#pragma once

#include <spawn.h>

namespace corvane {

class StreamActions {
public:
    StreamActions() { posix_spawn_file_actions_init(&actions_); }
    ~StreamActions() { posix_spawn_file_actions_destroy(&actions_); }
    StreamActions(const StreamActions&) = delete;
    StreamActions& operator=(const StreamActions&) = delete;

    /// `flags` as open(2) takes them.
    void open(int stream, const char* path, int flags) {
        posix_spawn_file_actions_addopen(&actions_, stream, path, flags, 0);
    }
    /// The stream is what the descriptor `from` of ours is, or the one that was made before.
    void duplicate(int from, int stream) {
        posix_spawn_file_actions_adddup2(&actions_, from, stream);
    }
    /// The program gets no other descriptor of ours from `first` on, whoever opened it.
    void closeFrom(int first) { posix_spawn_file_actions_addclosefrom_np(&actions_, first); }
    const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

} // namespace corvane
