#include "host/memory.h"
#include "host/zone.h"
#include "toolbox/poison.h"
#include "toolbox/state.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <vector>

namespace corvane {
namespace {

constexpr std::int64_t mebibyte = 1 << 20;

std::span<std::byte> bytesOf(Ptr block) {
    return {block.get(), static_cast<std::size_t>(GetPtrSize(block))};
}

bool allZero(Ptr block) {
    const auto bytes = bytesOf(block);
    return std::all_of(bytes.begin(), bytes.end(), [](std::byte b) { return b == std::byte{0}; });
}

void fill(Ptr block, std::uint8_t value) {
    std::memset(block.get(), value, bytesOf(block).size());
}

TEST(Zone, BlocksOfEverySizeAreZeroedAlignedAndKnowTheirLength) {
    const ToolboxScope scope(64 * mebibyte);
    // The second round meets blocks that were used before.
    for (int round = 0; round < 2; ++round) {
        std::vector<Ptr> blocks;
        for (const std::int32_t size : {0, 1, 7, 8, 9, 255, 1015, 1016, 1017, 1272, 1273, 32'760,
                                        32'761, 65'528, 65'529, 100'000, 2'000'000}) {
            const Ptr block = NewPtrClear(size);
            ASSERT_TRUE(block) << size;
            EXPECT_EQ(GetPtrSize(block), size);
            EXPECT_EQ(block.address() % 8, 0U) << size;
            EXPECT_TRUE(allZero(block)) << size << " in round " << round;
            fill(block, 0xAA);
            blocks.push_back(block);
        }
        std::for_each(blocks.begin(), blocks.end(), DisposePtr);
    }
    EXPECT_EQ(zoneBlocksInUse(), 0);
    EXPECT_FALSE(NewPtrClear(-1));
}

TEST(Zone, RandomTrafficNeverMixesBlocksAndEverythingComesBack) {
    const ToolboxScope scope(64 * mebibyte);
    const std::int32_t atStart = FreeMem();
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same run every time
    std::vector<std::pair<Ptr, std::uint8_t>> live;
    std::int64_t wanted = 0;
    for (int step = 0; step < 100'000; ++step) {
        if (live.empty() || random() % 5 < 3) {
            const auto size =
                static_cast<std::int32_t>(random() % (random() % 200 == 0 ? 300'000 : 600));
            const Ptr block = NewPtrClear(size);
            if (!block) {
                continue;
            }
            ASSERT_TRUE(allZero(block));
            const auto mark = static_cast<std::uint8_t>(random());
            fill(block, mark);
            live.emplace_back(block, mark);
            wanted += size;
        } else {
            std::swap(live[random() % live.size()], live.back());
            const auto [block, mark] = live.back();
            const auto bytes = bytesOf(block);
            ASSERT_TRUE(std::all_of(bytes.begin(), bytes.end(),
                                    [value = std::byte{mark}](std::byte b) { return b == value; }));
            wanted -= GetPtrSize(block);
            DisposePtr(block);
            live.pop_back();
        }
    }
    EXPECT_EQ(zoneBytesInUse(), wanted);
    EXPECT_EQ(zoneBlocksInUse(), static_cast<std::int32_t>(live.size()));
    for (const auto& [block, mark] : live) {
        DisposePtr(block);
    }
    EXPECT_EQ(zoneBytesInUse(), 0);
    EXPECT_EQ(FreeMem(), atStart);
}

TEST(Zone, MemoryOfOneSizeServesAnyOtherOnceFreed) {
    const ToolboxScope scope(32 * mebibyte);
    for (const std::int32_t size : {16, 3'000, 40'000, 900'000, 24, 20'000'000, 100}) {
        std::vector<Ptr> blocks;
        std::int64_t total = 0;
        for (Ptr block = NewPtrClear(size); block; block = NewPtrClear(size)) {
            blocks.push_back(block);
            total += size;
        }
        EXPECT_GE(total, (poisons ? 12 : 19) * mebibyte) << size;
        // Every other one first, so that what is free is in pieces that must be joined again.
        for (std::size_t i = 0; i < blocks.size(); i += 2) {
            DisposePtr(blocks[i]);
        }
        for (std::size_t i = 1; i < blocks.size(); i += 2) {
            DisposePtr(blocks[i]);
        }
    }
    EXPECT_EQ(FreeMem(), 32 * mebibyte);
}

TEST(Zone, OwnersAreCountedAndTheLastOneIsTold) {
    const ToolboxScope scope(16 * mebibyte);
    const Ptr block = NewPtrClear(10);
    retainPtr(block);
    EXPECT_FALSE(releasePtr(block));
    EXPECT_TRUE(releasePtr(block));
    EXPECT_EQ(GetPtrSize(block), 10); // still there until it is disposed of
    EXPECT_FALSE(releasePtr(block));
    DisposePtr(block);
    DisposePtr(block); // a second time changes nothing
    EXPECT_EQ(zoneBlocksInUse(), 0);
    const Ptr first = NewPtrClear(10);
    const Ptr second = NewPtrClear(10);
    EXPECT_NE(first, second);
    for (const Ptr stray : {Ptr(), Ptr(first.address() + 4), Ptr(0x7FFF'FFF8)}) {
        DisposePtr(stray);
    }
    EXPECT_EQ(zoneBlocksInUse(), 2);
    EXPECT_FALSE(releasePtr({}));
    EXPECT_EQ(GetPtrSize({}), 0);
}

TEST(Zone, ChargesCountAgainstTheLimit) {
    const ToolboxScope scope(16 * mebibyte);
    ASSERT_EQ(FreeMem(), 16 * mebibyte);
    EXPECT_TRUE(chargeZone(15 * mebibyte));
    EXPECT_EQ(FreeMem(), mebibyte);
    EXPECT_FALSE(chargeZone(2 * mebibyte));
    EXPECT_FALSE(chargeZone(-1));
    EXPECT_FALSE(NewPtrClear(2 * mebibyte));
    EXPECT_EQ(zoneBytesCharged(), 15 * mebibyte);
    dischargeZone(20 * mebibyte); // more than was charged
    EXPECT_EQ(FreeMem(), 16 * mebibyte);
    EXPECT_TRUE(NewPtrClear(2 * mebibyte));
}

TEST(Zone, AllocationsFailWhereATestSaysSo) {
    ToolboxScope scope(16 * mebibyte);
    scope.state().zone.failAllocation(3);
    EXPECT_TRUE(NewPtrClear(1));
    EXPECT_FALSE(NewHandleClear(1) && NewHandleClear(1));
    EXPECT_TRUE(NewPtrClear(1));
    EXPECT_EQ(zoneBlocksInUse(), 2); // nothing of the failed handle is left
}

TEST(Zone, ScopesNestAndHaveTheirOwnZone) {
    const ToolboxScope outer(16 * mebibyte);
    const Ptr block = NewPtrClear(8);
    fill(block, 1);
    {
        const ToolboxScope inner(16 * mebibyte);
        EXPECT_EQ(zoneBlocksInUse(), 0);
        fill(NewPtrClear(8), 2);
    }
    EXPECT_EQ(bytesOf(block)[0], std::byte{1});
    EXPECT_EQ(zoneBlocksInUse(), 1);
}

TEST(Zone, TheEnvironmentSetsTheLimit) {
    for (const auto& [text, limit] : {std::pair("64", 64),
                                      {"0", 1024},
                                      {"-5", 1024},
                                      {"8x", 1024},
                                      {"", 1024},
                                      {"4000", 4000},
                                      {"99999999999999", 1024}}) {
        setenv("CORVANE_ZONE_MB", text, 1);
        EXPECT_EQ(defaultZoneLimit(), limit * mebibyte) << text;
    }
    unsetenv("CORVANE_ZONE_MB");
    // The largest zone there is can be used to its end.
    const ToolboxScope scope(4000 * mebibyte);
    const Ptr low = NewPtrClear(2000 * mebibyte);
    const Ptr high = NewPtrClear(1900 * mebibyte);
    if (!low || !high) {
        GTEST_SKIP() << "this machine does not promise so much memory";
    }
    EXPECT_EQ(bytesOf(high).back(), std::byte{0});
    EXPECT_EQ(GetPtrSize(high), 1900 * mebibyte);
}

TEST(Zone, TakesLessWhereAddressSpaceIsLimited) {
    if (poisons) {
        GTEST_SKIP() << "AddressSanitizer needs all the address space there is";
    }
    const auto run = [] {
        constexpr rlim_t limit = 640 << 20;
        const rlimit value = {limit, limit};
        setrlimit(RLIMIT_AS, &value);
        const ToolboxScope scope(1024 * mebibyte);
        const bool smaller = FreeMem() == 512 * mebibyte || FreeMem() == 256 * mebibyte;
        std::exit(smaller && NewPtrClear(100 * mebibyte) ? 0 : 1);
    };
    ASSERT_EXIT(run(), ::testing::ExitedWithCode(0), "");
}

TEST(ZoneDeathTest, FreedAndTrailingBytesAreWatched) {
    if (!poisons) {
        GTEST_SKIP() << "only AddressSanitizer watches";
    }
    const ToolboxScope scope(16 * mebibyte);
    const ZoneCall call;
    const Ptr block = NewPtrClear(13);
    volatile std::byte* bytes = block.get();
    EXPECT_DEATH(bytes[13] = std::byte{1}, "use-after-poison");
    DisposePtr(block);
    EXPECT_NE(NewPtrClear(13), block);
    EXPECT_DEATH(bytes[0] = std::byte{1}, "use-after-poison");
}

std::string textOf(Handle handle) {
    std::string text(static_cast<std::size_t>(GetHandleSize(handle)), ' ');
    std::memcpy(text.data(), (*handle).get(), text.size());
    return text;
}

TEST(Munger, SearchesReplacesInsertsAndDeletes) {
    struct Case {
        std::int32_t offset;
        const char* target; // null: by length alone
        std::int32_t targetLength;
        const char* replacement;
        std::int32_t result;
        std::string_view text;
    };
    const std::array cases{
        Case{0, "^0", 2, "12", 7, "image12.^0"},    Case{6, "^0", 2, "12", 10, "image^0.12"},
        Case{0, "^0", 2, nullptr, 5, "image^0.^0"}, Case{0, "none", 4, "x", -1, "image^0.^0"},
        Case{0, "image", 5, "", 0, "^0.^0"},        Case{5, nullptr, 2, "", 5, "image.^0"},
        Case{5, nullptr, -1, "!", 6, "image!"},     Case{5, "", 0, "s", 6, "images^0.^0"},
        Case{11, "^0", 2, "x", -1, "image^0.^0"},   Case{-1, "^0", 2, "x", -1, "image^0.^0"},
    };
    const ToolboxScope scope(16 * mebibyte);
    constexpr std::string_view text = "image^0.^0";
    for (const Case& one : cases) {
        Handle handle;
        ASSERT_EQ(PtrToHand(text.data(), &handle, text.size()), noErr);
        const std::int32_t length = one.replacement != nullptr
                                        ? static_cast<std::int32_t>(std::strlen(one.replacement))
                                        : 0;
        EXPECT_EQ(Munger(handle, one.offset, one.target, one.targetLength, one.replacement, length),
                  one.result)
            << one.text;
        EXPECT_EQ(textOf(handle), one.text);
        DisposeHandle(handle);
    }
    EXPECT_EQ(zoneBlocksInUse(), 0);
}

} // namespace
} // namespace corvane
