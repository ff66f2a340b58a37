// A digest of objects as they are written, for which it does not matter what numbers new objects
// get: what is written again under other numbers has the same digest.
#pragma once

#include "runtime/digest.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace corvane {

class WrittenDigest {
public:
    /// Objects from the number `firstNew` on are new, and so count those of `alsoNew`, which the
    /// save before made.
    WrittenDigest(std::int32_t firstNew, std::span<const std::int32_t> alsoNew);

    /// In any chunking. "12 0 R" and "12 0 obj" name objects, wherever they stand.
    void feed(std::span<const std::byte> bytes);
    /// Of the bytes that were fed until it was asked for the first time; what follows does not
    /// count.
    std::uint64_t value();

private:
    void take(char c);
    void release(std::size_t count);
    void feedName();

    std::int32_t firstNew_;
    std::unordered_set<std::int32_t> alsoNew_;
    std::unordered_map<std::int32_t, std::size_t> order_; ///< of new objects, by number
    std::string held_;                                    ///< what may become a name
    char last_ = ' ';                                     ///< in front of that
    Digest digest_;
    std::optional<std::uint64_t> value_;
};

} // namespace corvane
