// Where the DCT codec's bytes come from and go to.
#pragma once

#include <cstddef>
#include <span>

namespace corvane {

class DctSource {
public:
    virtual ~DctSource() = default;
    /// The bytes that come next: at least one, none at the end of the data. They stay where they
    /// are until the next call of `held`.
    virtual std::span<const std::byte> held() = 0;
    /// Goes past bytes held.
    virtual void take(std::size_t count) = 0;
};

class DctSink {
public:
    virtual ~DctSink() = default;
    /// Takes all of `bytes` or raises.
    virtual void write(std::span<const std::byte> bytes) = 0;
};

} // namespace corvane
