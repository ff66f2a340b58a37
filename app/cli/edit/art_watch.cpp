#include "app/cli/edit/art_watch.h"

#include "app/cli/files/hidden_file.h"
#include "app/cli/interrupt.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <string_view>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace corvane {

namespace {

constexpr std::chrono::milliseconds turn(300); ///< between two looks where nothing tells of events

/// FNV-1a over words.
class Digest {
public:
    void add(std::uint64_t word) { value_ = (value_ ^ word) * 0x100000001B3; }
    void add(const std::string& path) {
        struct stat facts {};
        if (stat(path.c_str(), &facts) != 0) {
            add(0U);
            return;
        }
        for (const auto number :
             {static_cast<std::uint64_t>(facts.st_ino), static_cast<std::uint64_t>(facts.st_size),
              static_cast<std::uint64_t>(facts.st_mtim.tv_sec),
              static_cast<std::uint64_t>(facts.st_mtim.tv_nsec)}) {
            add(number);
        }
    }
    std::uint64_t value() const { return value_; }

private:
    std::uint64_t value_ = 0xCBF29CE484222325;
};

} // namespace

ArtWatch::ArtWatch(std::string artwork, std::string images)
    : artwork_(std::move(artwork)), images_(std::move(images)),
      events_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    constexpr std::uint32_t wanted = IN_CLOSE_WRITE | IN_MOVED_TO;
    if (events_ && inotify_add_watch(events_.number(), folderOf(artwork_).c_str(), wanted) < 0) {
        events_ = Descriptor();
    }
    if (events_ && !images_.empty()) {
        inotify_add_watch(events_.number(), images_.c_str(), wanted);
    }
    seen_ = settled_ = state();
}

std::uint64_t ArtWatch::state() const {
    Digest state;
    state.add(artwork_);
    state.add(imageState());
    return state.value();
}

std::uint64_t ArtWatch::digest() const {
    Digest all;
    std::ifstream file(artwork_, std::ios::binary);
    std::array<char, 65536> block{};
    while (file.read(block.data(), block.size()) || file.gcount() > 0) {
        const std::string_view bytes(block.data(), static_cast<std::size_t>(file.gcount()));
        for (const char byte : bytes) {
            all.add(static_cast<std::uint64_t>(static_cast<unsigned char>(byte)));
        }
    }
    all.add(imageState());
    return all.value();
}

std::uint64_t ArtWatch::imageState() const {
    namespace fs = std::filesystem;
    std::error_code error;
    std::uint64_t images = 0; // a sum: folders have no order
    for (fs::directory_iterator entry(images_, error), end; !error && entry != end;
         entry.increment(error)) {
        Digest image;
        image.add(entry->path().string());
        images += image.value();
    }
    return images;
}

bool ArtWatch::isDue() const {
    return seen_ != settled_ && Clock::now() >= dueAt_;
}

bool ArtWatch::isChanged() {
    look();
    return seen_ != settled_;
}

bool ArtWatch::wasTried() {
    if (std::exchange(isTried_, true) && Clock::now() >= changedAt_ + patience) {
        return true;
    }
    dueAt_ = changedAt_ + patience;
    return false;
}

/// Milliseconds; -1: for ever.
int ArtWatch::timeout(std::optional<int> other) const {
    using std::chrono::milliseconds;
    milliseconds most(-1);
    if (!events_ || other == -1) {
        most = turn;
    }
    if (seen_ != settled_) {
        const auto left =
            std::chrono::ceil<milliseconds>(std::max(dueAt_ - Clock::now(), Clock::duration(0)));
        most = most.count() < 0 ? left : std::min(most, left);
    }
    return static_cast<int>(most.count());
}

void ArtWatch::look() {
    const std::uint64_t now = state();
    if (now != seen_) {
        seen_ = now;
        changedAt_ = Clock::now();
        dueAt_ = changedAt_ + moment;
        isTried_ = false;
    }
}

/// What happened does not matter, only that something did.
void ArtWatch::drain() {
    alignas(inotify_event) std::array<char, 4096> block{};
    bool isAny = false;
    while (events_ && read(events_.number(), block.data(), block.size()) > 0) {
        isAny = true;
    }
    look();
    if (isAny) {
        changedAt_ = Clock::now();
        dueAt_ = changedAt_ + moment;
    }
}

void ArtWatch::wait(std::optional<int> other) {
    // Signals come only within the wait: none slips in between the look at the flag and the wait.
    sigset_t all;
    sigset_t former;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &former);
    std::array<pollfd, 2> polled{pollfd{events_ ? events_.number() : -1, POLLIN, 0},
                                 pollfd{other.value_or(-1), POLLIN, 0}};
    if (!interrupted()) {
        const int milliseconds = timeout(other);
        const timespec limit{milliseconds / 1000, (milliseconds % 1000) * 1'000'000L};
        ppoll(polled.data(), polled.size(), milliseconds < 0 ? nullptr : &limit, &former);
    }
    sigprocmask(SIG_SETMASK, &former, nullptr);
    drain();
}

} // namespace corvane
