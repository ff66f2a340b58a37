#include "filters/coding/fax.h"

#include "filters/buffer.h"
#include "filters/coding/hex.h"
#include "filters/memory_filter.h"
#include "filters/range.h"
#include "tests/runtime/zone_fixture.h"
#include "tests/support/fax_images.h"
#include "tests/support/fax_run.h"

#include <algorithm>
#include <vector>

namespace corvane {
namespace {

using Data = std::vector<std::byte>;

/// The bottom of a chain that takes bytes, up to a number of them.
struct SinkFilter : Filter {
    explicit SinkFilter(Data& bytes, std::size_t most = SIZE_MAX)
        : Filter(take), data(bytes), room(most) {}
    static std::int32_t take(Filter& filter, Operation operation, std::byte* buffer,
                             std::int32_t* argument) {
        auto& self = static_cast<SinkFilter&>(filter);
        if (operation == Operation::write) {
            const auto count =
                std::min(static_cast<std::size_t>(*argument), self.room - self.data.size());
            self.data.insert(self.data.end(), buffer, buffer + count);
            return *argument = static_cast<std::int32_t>(count);
        }
        return 0;
    }
    Data& data;
    std::size_t room;
};

class FaxFilterTest : public ZoneTest {
protected:
    /// `image` through an encoding filter, in pieces of `piece` bytes.
    static Data encoded(FaxParameters parameters, const Data& pixels, std::size_t piece) {
        parameters.direction = 1;
        Data data;
        Chain chain;
        chain.link(std::make_unique<SinkFilter>(data));
        chain.link(setupFax(parameters));
        for (std::size_t at = 0; at < pixels.size(); at += piece) {
            writeFilter(*chain.top(),
                        std::span(pixels).subspan(at, std::min(piece, pixels.size() - at)));
        }
        chain.unlink();
        return data;
    }
    std::mt19937 random_{17};
};

TEST_F(FaxFilterTest, AnyPiecesGoThroughAndTheFilterBelowStandsBehindTheData) {
    for (const std::int32_t k : {0, 4, -1}) {
        const auto image = test::randomImage(random_, 1721, 40, 9, 12);
        FaxParameters parameters{.k = k, .columns = 1721 + 65536, .blackIs1 = 1};
        const Data data = encoded(parameters, image.pixels, 216 * 3 + 1);
        EXPECT_EQ(data, encoded(parameters, image.pixels, 1));
        const std::size_t end = 100 + data.size();
        const auto behind = static_cast<std::int32_t>(end);
        Data file(end + 3000, std::byte{0xC3});
        std::copy(data.begin(), data.end(), file.begin() + 100);
        for (const std::int32_t buffer : {0, 1, 43, 8192}) {
            for (const std::size_t piece : {std::size_t{1}, std::size_t{41}, std::size_t{100000}}) {
                Chain base;
                base.link(std::make_unique<MemoryFilter>(file));
                if (buffer > 0) {
                    base.link(setupBuffer(buffer));
                }
                seekFilter(*base.top(), 100);
                Chain chain(base.top());
                chain.link(setupFax(parameters));
                Data out(image.pixels.size());
                std::size_t read = 0;
                while (read < out.size()) {
                    const std::size_t count = readFilter(
                        *chain.top(),
                        std::span(out).subspan(read, std::min(piece, out.size() - read)));
                    ASSERT_GT(count, 0U);
                    read += count;
                }
                EXPECT_TRUE(out == image.pixels);
                EXPECT_EQ(readFilter(*chain.top(), out), 0U);
                EXPECT_EQ(markFilter(*base.top()), behind);
                chain.unlink();
                EXPECT_EQ(markFilter(*base.top()), behind);
                std::byte next{};
                EXPECT_EQ(readFilter(*base.top(), {&next, 1}), 1U);
                EXPECT_EQ(next, std::byte{0xC3});
                base.unlink();
            }
        }
    }
}

TEST_F(FaxFilterTest, RowsEndTheDataAndUnlinkingInTheMiddleGivesBackWhatWasNotUsed) {
    const auto image = test::randomImage(random_, 800, 60, 9, 12);
    FaxParameters parameters{.k = 0, .encodedByteAlign = 1, .columns = 800, .blackIs1 = 1};
    const Data data = encoded(parameters, image.pixels, 100);
    const Data first =
        encoded(parameters, Data(image.pixels.begin(), image.pixels.begin() + 700), 100);
    parameters.rows = 7;
    Chain chain;
    chain.link(std::make_unique<MemoryFilter>(data));
    chain.link(setupFax(parameters));
    Data out(image.pixels.size());
    EXPECT_EQ(readFilter(*chain.top(), out), 700U);
    // Rows of their own bytes each: the RTC of six ends of line is nine bytes.
    EXPECT_EQ(markFilter(*chain.top()), static_cast<std::int32_t>(first.size()) - 9);
    chain.unlink();
    parameters.rows = 0;
    Chain half;
    half.link(std::make_unique<MemoryFilter>(data));
    Filter& memory = *half.top();
    Chain upper(&memory);
    upper.link(setupFax(parameters));
    EXPECT_EQ(readFilter(*upper.top(), std::span(out).first(650)), 650U);
    upper.unlink();
    EXPECT_EQ(markFilter(memory), static_cast<std::int32_t>(first.size()) - 9);
}

TEST_F(FaxFilterTest, DefaultsAndRefusals) {
    const Data empty;
    const auto linked = [&](FaxParameters parameters, auto&& body) {
        return raisedBy([&] {
            Chain chain;
            chain.link(std::make_unique<MemoryFilter>(empty));
            chain.link(setupFax(parameters));
            body(*chain.top());
            chain.unlink();
        });
    };
    std::byte byte{};
    const auto read = [&](Filter& top) { readFilter(top, {&byte, 1}); };
    const auto write = [&](Filter& top) { writeFilter(top, {&byte, 1}); };
    const auto nothing = [](Filter&) {};
    EXPECT_EQ(linked({}, read), Exception::none);
    EXPECT_EQ(linked({}, write), Exception::io);
    EXPECT_EQ(linked({.direction = 2}, nothing), Exception::codec);
    EXPECT_EQ(linked({.columns = 65536}, nothing), Exception::codec);
    EXPECT_EQ(linked({.columns = 0}, nothing), Exception::codec);
    EXPECT_EQ(linked({.columns = -65536}, nothing), Exception::codec);
    EXPECT_EQ(encoded({}, Data(216), 216).size(), 13U); // 31 bits of a black row, RTC
}

TEST_F(FaxFilterTest, AnEncoderThatCannotFinishSaysSo) {
    const auto unlinked = [](std::size_t room, std::size_t pixels) {
        Data data;
        return raisedBy([&] {
            Chain chain;
            chain.link(std::make_unique<SinkFilter>(data, room));
            chain.link(setupFax({.direction = 1, .columns = 64}));
            writeFilter(*chain.top(), Data(pixels));
            chain.unlink();
        });
    };
    EXPECT_EQ(unlinked(SIZE_MAX, 16), Exception::none);
    EXPECT_EQ(unlinked(SIZE_MAX, 17), Exception::codec);
    EXPECT_EQ(unlinked(3, 16), Exception::io);
    EXPECT_EQ(unlinked(1024, 64000), Exception::io);
}

/// Where the filter below is a decoder itself, what was read ahead comes out of it again.
TEST_F(FaxFilterTest, ADecoderBelowGoesOnBehindTheData) {
    const auto image = test::randomImage(random_, 300, 30, 9, 12);
    const FaxParameters parameters{.k = -1, .columns = 300, .blackIs1 = 1};
    Data data = encoded(parameters, image.pixels, 100);
    data.insert(data.end(), 20, std::byte{0x5A});
    Data digits;
    for (const std::byte byte : data) {
        for (const int digit : {std::to_integer<int>(byte) >> 4, std::to_integer<int>(byte) & 15}) {
            digits.push_back(static_cast<std::byte>("0123456789abcdef"[digit]));
        }
    }
    for (const std::size_t rows : {std::size_t{0}, std::size_t{7}, std::size_t{31}}) {
        Chain base;
        base.link(std::make_unique<MemoryFilter>(digits));
        base.link(setupHex(AsciiMode::both));
        Chain chain(base.top());
        chain.link(setupFax(parameters));
        Data out(rows * image.rowBytes());
        EXPECT_EQ(readFilter(*chain.top(), out), std::min(out.size(), image.pixels.size()));
        chain.unlink();
        Data rest(data.size());
        const std::size_t left = readFilter(*base.top(), rest);
        ASSERT_GE(left, 20U);
        EXPECT_TRUE(
            std::equal(data.end() - static_cast<std::ptrdiff_t>(left), data.end(), rest.begin()));
        EXPECT_EQ(left == 20, rows == 31) << left;
    }
}

TEST_F(FaxFilterTest, SeekingBeginsTheImageAgain) {
    const auto image = test::randomImage(random_, 300, 30, 9, 12);
    const FaxParameters parameters{.k = 4, .columns = 300, .blackIs1 = 1};
    Data file(50);
    const Data data = encoded(parameters, image.pixels, 100);
    file.insert(file.end(), data.begin(), data.end());
    Chain chain;
    chain.link(std::make_unique<MemoryFilter>(file));
    chain.link(setupFax(parameters));
    Data out(image.pixels.size() + 1);
    for (const std::size_t count : {std::size_t{77}, out.size(), std::size_t{1}, out.size()}) {
        EXPECT_EQ(seekFilter(*chain.top(), 50), 50);
        EXPECT_EQ(readFilter(*chain.top(), std::span(out).first(count)),
                  std::min(count, image.pixels.size()));
        EXPECT_TRUE(std::equal(image.pixels.begin(),
                               image.pixels.begin() +
                                   static_cast<std::ptrdiff_t>(std::min(count, out.size() - 1)),
                               out.begin()));
    }
    EXPECT_EQ(markFilter(*chain.top()), static_cast<std::int32_t>(file.size()));
}

/// One bit of Group 4 repeats the widest row.
TEST_F(FaxFilterTest, NoMoreIsDeliveredThanPositionsCanSay) {
    const Data data(33000, std::byte{0xFF});
    Chain chain;
    chain.link(std::make_unique<MemoryFilter>(data));
    chain.link(setupFax({.k = -1, .columns = 65535}));
    Data out(std::size_t{16} << 20);
    std::int64_t delivered = 0;
    EXPECT_EQ(raisedBy([&] {
                  while (const std::size_t count = readFilter(*chain.top(), out)) {
                      delivered += static_cast<std::int64_t>(count);
                  }
              }),
              Exception::limit);
    EXPECT_LE(delivered, INT32_MAX);
    EXPECT_GT(delivered, INT32_MAX - (std::int64_t{17} << 20));
}

TEST_F(FaxFilterTest, AnEncoderPassesOnWhatItDoesNotTransform) {
    const Data file(10);
    Chain chain;
    chain.link(std::make_unique<MemoryFilter>(file));
    chain.link(setupFax({.direction = 1, .columns = 8}));
    EXPECT_EQ(seekFilter(*chain.top(), 4), 4);
    EXPECT_EQ(markFilter(*chain.top()), 4);
    std::byte byte{};
    EXPECT_EQ(raisedBy([&] { readFilter(*chain.top(), {&byte, 1}); }), Exception::io);
    std::int32_t count = 1;
    EXPECT_EQ(callFilter(*chain.top(), Operation::nextToken, &byte, &count), 0);
    chain.abandon();
}

} // namespace
} // namespace corvane
