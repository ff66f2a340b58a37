// When artwork was saved: the files of it are watched, and looked at when they have been still for
// a moment.
#pragma once

#include "toolbox/descriptor.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace corvane {

/// Watches an SVG and the folder of its images. Editors write a file in several pieces, or beside
/// it and rename it, so what counts is what the files are once nothing has happened for a moment.
class ArtWatch {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr Clock::duration moment = std::chrono::milliseconds(250);
    /// So long a file that cannot be read may be on its way.
    static constexpr Clock::duration patience = std::chrono::seconds(2);

    /// All that is there counts as looked at. `images` need not exist.
    ArtWatch(std::string artwork, std::string images);

    /// Waits until something happened to the files, the artwork is due, the person asked to stop,
    /// or `other` can be read from; -1: now and then, for there is something else that only a look
    /// shows.
    void wait(std::optional<int> other);

    /// Whether there is something to look at: changed, and still.
    bool isDue() const;
    /// Whether the files differ from what was looked at last, still or not.
    bool isChanged();

    /// What the files are at this moment.
    std::uint64_t state() const;
    /// A digest of the artwork's bytes, and of the state of its images.
    std::uint64_t digest() const;
    /// The artwork was looked at while it was in `state`.
    void settle(std::uint64_t state) { settled_ = state; }
    /// It could not be read in its present state. Looked at again when it changes, or once more
    /// when patience is over; true where it is.
    bool wasTried();

private:
    int timeout(std::optional<int> other) const;
    std::uint64_t imageState() const;
    void drain();
    void look();

    std::string artwork_;
    std::string images_;
    Descriptor events_; ///< none where the machine has no more: then files are looked at in turn
    std::uint64_t settled_ = 0;
    std::uint64_t seen_ = 0;
    Clock::time_point changedAt_;
    Clock::time_point dueAt_;
    bool isTried_ = false;
};

} // namespace corvane
