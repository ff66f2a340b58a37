// What the server grants, with a reason beside each number.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace corvane::limits {

using namespace std::chrono_literals;

/// At a time. A browser opens six for one host, however many tabs show the page; the rest is room
/// for a second browser and for what is just being closed. Each has a thread.
inline constexpr int connections = 64;

/// Request line and headers. Browsers send 2 KiB; cookies of this machine's other servers come
/// along.
inline constexpr std::size_t head = std::size_t{32} << 10;
/// From the connection to the end of the head. A browser needs milliseconds, also where it connects
/// before it knows what to ask.
inline constexpr auto headTime = 10s;

/// Artwork in a request: a browser's text has 2^29 characters at most, nearly all of one byte.
inline constexpr std::int64_t body = std::int64_t{1} << 30;
/// For all of a body: the longest one at 20 MB/s, which loopback does a hundred times over.
inline constexpr auto bodyTime = 60s;

/// Without progress, for an answer: a browser reads at once, a tab that sleeps does not for good.
inline constexpr auto writeTime = 30s;

/// After an answer, for what the client still sends: where a connection is closed before, the
/// system throws the answer away.
inline constexpr auto lingerTime = 500ms;
inline constexpr std::size_t linger = std::size_t{256} << 10;

/// Between two looks whether the server ends, or a client has gone.
inline constexpr auto turn = 200ms;

/// Files of a folder; more than a person looks through.
inline constexpr std::size_t files = 10'000;

/// What a child prints: the facts of 500,000 pages.
inline constexpr std::size_t output = std::size_t{64} << 20;
/// Address space of a child: the plug-in's zone and the artwork, at their own limits, and the
/// libraries.
inline constexpr std::uint64_t memory = std::uint64_t{4} << 30;
/// For a child to end by itself once it was told to.
inline constexpr auto graceTime = 3s;

/// For a child. A page of 60,000 objects is drawn in a second.
inline constexpr auto pictureTime = 20s;
inline constexpr auto openTime = 60s;
inline constexpr auto lookTime = 60s;
/// A save of a large page on a slow disk; nothing ends it sooner, since people want it done.
inline constexpr auto saveTime = 300s;

/// Openings that are kept for the page to fetch. It does so at once.
inline constexpr std::size_t artworks = 32;

/// Of a file as it was before an update: a copy of it lies in the folder for temporary files, which
/// may be memory, while the page of then is drawn.
inline constexpr std::int64_t formerBytes = std::int64_t{512} << 20;
/// Such copies at a time: the page compares two.
inline constexpr int formerFiles = 2;

/// Pictures that are kept, and their bytes: those of a few thousand usual pages.
inline constexpr std::size_t pictures = 4'000;
inline constexpr std::int64_t pictureBytes = std::int64_t{256} << 20;

} // namespace corvane::limits
