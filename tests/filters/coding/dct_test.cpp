#include "filters/coding/dct.h"

#include "filters/buffer.h"
#include "filters/memory_filter.h"
#include "runtime/warning.h"
#include "tests/runtime/zone_fixture.h"
#include "tests/support/picture.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::Picture;

/// A bottom that keeps what is written.
struct Keeper : Filter {
    Keeper() : Filter(entry) {}
    static std::int32_t entry(Filter& filter, Operation operation, std::byte* buffer,
                              std::int32_t* argument) {
        auto& self = static_cast<Keeper&>(filter);
        if (operation == Operation::write) {
            self.data.insert(self.data.end(), buffer, buffer + *argument);
        }
        return argument == nullptr ? 0 : *argument;
    }
    std::vector<std::byte> data{};
};

/// Of pictures 64 pixels wide, in three components.
constexpr std::size_t rowBytes = 192;

class Discrete : public ZoneTest {
protected:
    /// Through the filter, `piece` bytes at a time.
    static std::vector<std::byte> written(const Picture& picture, std::size_t piece) {
        Keeper keeper;
        Chain chain(&keeper);
        chain.link(setupDiscrete(static_cast<std::int32_t>(picture.width),
                                 static_cast<std::int32_t>(picture.height),
                                 static_cast<std::int32_t>(picture.components)));
        auto left = std::as_bytes(std::span(picture.samples));
        while (!left.empty()) {
            const auto now = left.first(std::min(piece, left.size()));
            writeFilter(*chain.top(), now);
            left = left.subspan(now.size());
        }
        chain.unlink();
        return std::move(keeper.data);
    }
};

TEST_F(Discrete, RowsGoThereAndBackInAnyPieces) {
    for (std::size_t components = 1; components <= 4; ++components) {
        const Picture picture = test::photograph(37, 21, components);
        const auto data = written(picture, picture.samples.size());
        EXPECT_EQ(written(picture, 1), data);
        EXPECT_EQ(written(picture, 43), data);
        Picture back = picture;
        for (const std::size_t piece : {std::size_t{1}, std::size_t{41}, picture.samples.size()}) {
            Chain chain;
            chain.link(std::make_unique<MemoryFilter>(data));
            chain.link(setupDiscrete(0, 0, 0));
            auto left = std::as_writable_bytes(std::span(back.samples));
            while (!left.empty()) {
                const auto now = left.first(std::min(piece, left.size()));
                ASSERT_EQ(readFilter(*chain.top(), now), now.size());
                left = left.subspan(now.size());
            }
            std::byte more{};
            EXPECT_EQ(readFilter(*chain.top(), {&more, 1}), 0U);
            EXPECT_GT(test::signalToNoise(back, picture), 25);
            chain.unlink();
        }
    }
}

/// However much was read, the filter below stands behind the image.
TEST_F(Discrete, LeavesTheFilterBelowBehindTheImage) {
    auto data = written(test::photograph(64, 64, 3), 1000);
    const auto end = static_cast<std::int32_t>(data.size());
    data.insert(data.end(), 300, std::byte{'x'});
    for (const std::size_t count :
         {std::size_t{0}, std::size_t{1}, 20 * rowBytes, 64 * rowBytes, std::size_t{20000}}) {
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(data));
        Filter* const below = chain.top();
        std::vector<std::byte> rows(count);
        Filter* const top = linkFilter(below, setupDiscrete(0, 0, 0));
        readFilter(*top, rows);
        EXPECT_EQ(unlinkFilter(top), below);
        EXPECT_EQ(markFilter(*below), end) << count;
        chain.unlink();
    }
}

TEST_F(Discrete, RefusesTheOtherDirectionAndSizesThatAreNone) {
    Keeper keeper;
    Chain chain(&keeper);
    for (const auto& [width, height, components] :
         {std::array{0, 8, 1}, {8, 8, 5}, {-8, 8, 3}, {8, -8, 1}, {8, 8, -1}}) {
        EXPECT_EQ(raisedBy([&, width = width, height = height, components = components] {
                      chain.link(setupDiscrete(width, height, components));
                  }),
                  Exception::codec);
    }
    std::byte byte{};
    chain.link(setupDiscrete(8, 8, 1));
    EXPECT_EQ(raisedBy([&] { readFilter(*chain.top(), {&byte, 1}); }), Exception::io);
    chain.abandon();
    for (const auto& [width, height, components] : {std::array{0, 0, 0}, {8, 0, 1}, {8, 8, 0}}) {
        Chain reading;
        reading.link(std::make_unique<MemoryFilter>(std::span<const std::byte>()));
        reading.link(setupDiscrete(width, height, components));
        EXPECT_EQ(raisedBy([&] { writeFilter(*reading.top(), {&byte, 1}); }), Exception::io);
        EXPECT_EQ(raisedBy([&] { readFilter(*reading.top(), {&byte, 1}); }), Exception::codec);
        EXPECT_EQ(readFilter(*reading.top(), {&byte, 1}), 0U);
    }
}

TEST_F(Discrete, AnEncoderPassesOnWhatItDoesNotTransform) {
    Keeper keeper;
    Chain chain(&keeper);
    chain.link(setupDiscrete(8, 8, 1));
    EXPECT_EQ(seekFilter(*chain.top(), 4), 4);
    EXPECT_EQ(markFilter(*chain.top()), 0);
    std::byte byte{};
    std::int32_t count = 1;
    EXPECT_EQ(callFilter(*chain.top(), Operation::nextToken, &byte, &count), 0);
    chain.abandon();
}

/// Damage that raises ends the rows; the filter can be unlinked, or sought back and read again.
TEST_F(Discrete, AfterAFailureNothingMoreIsRead) {
    const auto data = written(test::photograph(64, 64, 3), 1000);
    const auto cut = std::span(data).first(data.size() - 100);
    Chain chain;
    chain.link(std::make_unique<MemoryFilter>(cut));
    chain.link(setupDiscrete(0, 0, 0));
    std::vector<std::byte> rows(64 * rowBytes);
    EXPECT_EQ(raisedBy([&] { readFilter(*chain.top(), rows); }), Exception::codec);
    EXPECT_EQ(readFilter(*chain.top(), rows), 0U);
    seekFilter(*chain.top(), 0);
    EXPECT_EQ(readFilter(*chain.top(), std::span(rows).first(8 * rowBytes)), 8 * rowBytes);
    EXPECT_EQ(raisedBy([&] { readFilter(*chain.top(), rows); }), Exception::codec);
    chain.unlink();
}

} // namespace
} // namespace corvane
