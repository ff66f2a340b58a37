// What every decoder must do: the same bytes in whatever pieces they are read or arrive, and the
// filter below just after the last byte that was needed.
#pragma once

#include "filters/buffer.h"
#include "filters/filter.h"
#include "filters/memory_filter.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace corvane::test {

using SetupFilter = std::function<FilterOwner()>;

inline std::span<const std::byte> bytesOf(std::string_view text) {
    return std::as_bytes(std::span(text));
}

/// Everything from here on, read `chunk` bytes at a time.
inline std::string readAll(Filter& filter, std::size_t chunk = 8192) {
    std::string all;
    for (;;) {
        const std::size_t before = all.size();
        all.resize(before + chunk, '?');
        const std::size_t count =
            readFilter(filter, std::as_writable_bytes(std::span(all)).subspan(before));
        all.resize(before + count);
        if (count < chunk) {
            return all;
        }
    }
}

inline std::string readSome(Filter& filter, std::size_t count) {
    std::string some(count, '?');
    some.resize(readFilter(filter, std::as_writable_bytes(std::span(some))));
    return some;
}

inline constexpr std::size_t chunkSizes[] = {1, 2, 3, 7, 43, 8191, 8192, 8193};

/// All of `encoded`, and nothing of what stands behind it, decodes to `wanted`.
inline void expectDecodes(const SetupFilter& setup, std::string_view encoded,
                          std::string_view wanted) {
    const std::string data = std::string(encoded) + ">~> BEHIND" + std::string(9000, '#');
    const auto end = static_cast<std::int32_t>(encoded.size());
    for (const std::size_t chunk : chunkSizes) {
        for (const std::int32_t longestRead : {INT32_MAX, 1, 5}) {
            SCOPED_TRACE("chunks of " + std::to_string(chunk) + ", pieces of " +
                         std::to_string(longestRead));
            Chain chain;
            chain.link(std::make_unique<MemoryFilter>(bytesOf(data), longestRead));
            chain.link(setupBuffer(64));
            Filter& below = *chain.top();
            {
                Chain decoder(&below);
                decoder.link(setup());
                ASSERT_TRUE(readAll(*decoder.top(), chunk) == wanted);
                EXPECT_EQ(markFilter(below), end);
                EXPECT_EQ(markFilter(*decoder.top()), end);
                EXPECT_EQ(readSome(*decoder.top(), 5), "") << "nothing follows the end";
                EXPECT_EQ(seekFilter(*decoder.top(), 0), 0);
                ASSERT_TRUE(readAll(*decoder.top(), chunk) == wanted) << "again from the start";
                decoder.unlink();
            }
            EXPECT_EQ(markFilter(below), end);
        }
    }
}

/// The same, where `encoded` has no end but its own.
inline void expectDecodesToTheEnd(const SetupFilter& setup, std::string_view encoded,
                                  std::string_view wanted) {
    for (const std::size_t chunk : chunkSizes) {
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(bytesOf(encoded)));
        chain.link(setup());
        EXPECT_EQ(readAll(*chain.top(), chunk), wanted) << "chunks of " << chunk;
        EXPECT_EQ(readAll(*chain.top(), chunk), "");
        chain.unlink();
    }
}

/// The bottom of a chain that is written; it takes at most `room` bytes of a write.
class SinkFilter : public Filter {
public:
    explicit SinkFilter(std::string& store) : Filter(entry), store_(store) {}
    std::int32_t room = INT32_MAX;

private:
    static std::int32_t entry(Filter& filter, Operation operation, std::byte* buffer,
                              std::int32_t* argument) {
        auto& sink = static_cast<SinkFilter&>(filter);
        switch (operation) {
        case Operation::write:
            *argument = std::min(*argument, sink.room);
            for (std::int32_t i = 0; i < *argument; ++i) {
                sink.store_ += static_cast<char>(buffer[i]);
            }
            return *argument;
        case Operation::mark:
            return *argument = static_cast<std::int32_t>(sink.store_.size());
        case Operation::read:
            return *argument = 0;
        default:
            return 0;
        }
    }

    std::string& store_;
};

/// What an encoder writes for `bytes`, given to it `chunk` at a time, and unlinked.
inline std::string encoded(const SetupFilter& setup, std::string_view bytes, std::size_t chunk) {
    std::string store;
    Chain chain;
    chain.link(std::make_unique<SinkFilter>(store));
    chain.link(setup());
    for (std::string_view rest = bytes; !rest.empty();
         rest.remove_prefix(std::min(chunk, rest.size()))) {
        writeFilter(*chain.top(), bytesOf(rest.substr(0, chunk)));
    }
    chain.unlink();
    return store;
}

/// Bytes that repeat themselves, but never quite.
inline std::string someBytes(std::size_t count, std::uint32_t seed = 1, std::uint32_t kinds = 256) {
    std::string bytes;
    while (bytes.size() < count) {
        seed = seed * 1664525U + 1013904223U;
        if (bytes.size() > 20 && (seed >> 28) < 12) {
            bytes += bytes.substr(bytes.size() - 1 - (seed >> 20) % 20, 1 + (seed >> 12) % 9);
        } else {
            bytes += static_cast<char>((seed >> 16) % kinds);
        }
    }
    bytes.resize(count);
    return bytes;
}

} // namespace corvane::test
