// The memory of one document's artwork: its limit, and what is in use.
#pragma once

#include <cstdint>

namespace corvane {

/// Groups inside one another, a layer's own group being the first: renderers and editors recurse
/// over them.
inline constexpr std::int32_t artworkNesting = 4096;

/// Bytes that artwork may take: `CORVANE_ART_MB` mebibytes where the environment says so with a
/// whole number of 1 or more, otherwise 2 GiB.
std::int64_t artworkLimit();

/// Counts every block that a document allocates. Not thread-safe.
class ArtworkBudget {
public:
    explicit ArtworkBudget(std::int64_t limit) : limit_(limit) {}

    /// Throws `ArtworkError`, nothing charged, where the limit would be passed.
    void charge(std::int64_t bytes);
    void discharge(std::int64_t bytes) { used_ -= bytes; }

    std::int64_t used() const { return used_; }
    std::int64_t limit() const { return limit_; }

private:
    std::int64_t limit_;
    std::int64_t used_ = 0;
};

} // namespace corvane
