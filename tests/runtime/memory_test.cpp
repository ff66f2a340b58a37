#include "runtime/memory.h"

#include "runtime/digest.h"
#include "tests/runtime/zone_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <vector>

namespace corvane {
namespace {

using MemoryTest = ZoneTest;

TEST_F(MemoryTest, SizesThatCannotBeAreMemory) {
    for (const std::int64_t size : {std::int64_t{-1}, std::int64_t{1} << 31, std::int64_t{1} << 40,
                                    std::int64_t{300} << 20}) {
        EXPECT_EQ(raisedBy([size] { allocateMemory(size); }), Exception::memory) << size;
    }
    EXPECT_EQ(raisedBy([] { allocateRecord<std::uint64_t>(INT64_MAX / 4); }), Exception::memory);
    EXPECT_EQ(raisedBy([] { allocateRecord<std::uint64_t>(-1); }), Exception::memory);
}

TEST_F(MemoryTest, BytesAreComparedUnsignedCopiedAndSet) {
    const std::vector<std::byte> low{std::byte{1}, std::byte{2}};
    const std::vector<std::byte> high{std::byte{1}, std::byte{200}};
    EXPECT_LT(compareMemory(low, high), 0);
    EXPECT_GT(compareMemory(high, low), 0);
    EXPECT_LT(compareMemory(std::span(low).first(1), low), 0);
    EXPECT_EQ(compareMemory({}, {}), 0);
    std::vector<std::byte> to(3);
    copyMemory(to, high);
    EXPECT_LT(compareMemory(low, to), 0);
    EXPECT_EQ(raisedBy([&] { copyMemory(std::span(to).first(1), high); }), Exception::range);
    setMemory(std::span(to).first(1), 0xFF);
    clearMemory(std::span(to).subspan(1, 1));
    frameMemory({});
    EXPECT_EQ(to, (std::vector{std::byte{0xFF}, std::byte{0}, std::byte{0}}));
}

TEST_F(MemoryTest, ChargesFollowTheirOwner) {
    const std::int32_t before = FreeMem();
    {
        ZoneCharge charge(1000);
        charge.resize(5000);
        ZoneCharge moved(std::move(charge));
        EXPECT_EQ(raisedBy([&] { moved.resize(std::int64_t{1} << 40); }), Exception::memory);
        EXPECT_EQ(before - FreeMem(), 5000);
        moved.resize(10);
        EXPECT_EQ(before - FreeMem(), 10);
    }
    EXPECT_EQ(FreeMem(), before);
}

std::uint64_t digestOf(std::span<const std::byte> bytes) {
    Digest digest;
    digest.feed(bytes);
    return digest.value();
}

TEST(DigestTest, AnyChunkingGivesTheSameAnswer) {
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same bytes each time
    std::vector<std::byte> bytes(1000);
    for (std::byte& byte : bytes) {
        byte = static_cast<std::byte>(random());
    }
    const std::uint64_t whole = digestOf(bytes);
    for (const std::size_t longest : {1U, 7U, 16U, 43U, 200U}) {
        Digest digest;
        for (std::span<const std::byte> rest(bytes); !rest.empty();) {
            const std::size_t chunk = std::min<std::size_t>(rest.size(), random() % (longest + 1));
            digest.feed(rest.first(chunk));
            rest = rest.subspan(chunk);
        }
        EXPECT_EQ(digest.value(), whole) << longest;
    }
}

TEST(DigestTest, EveryBitAndEveryLengthCounts) {
    std::vector<std::byte> bytes(70);
    std::set<std::uint64_t> seen;
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        seen.insert(digestOf(std::span(bytes).first(length)));
    }
    for (std::byte& byte : bytes) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            byte = std::byte{1} << bit;
            seen.insert(digestOf(bytes));
        }
        byte = std::byte{0};
    }
    EXPECT_EQ(seen.size(), 71U + 70 * 8);
}

TEST(DigestTest, ValuesStayAcrossReleases) {
    // Artwork keeps the digest of its page from one session to the next.
    EXPECT_EQ(digestOf({}), 4212181348744405979U);
    EXPECT_EQ(digestOf(std::as_bytes(std::span("corvane", 7))), 1315153308592710419U);
}

} // namespace
} // namespace corvane
