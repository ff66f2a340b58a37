// Chains, and the filters at their bottom: stream, buffer, range and the byte stream on top.
#include "filters/buffer.h"
#include "filters/byte_stream.h"
#include "filters/memory_filter.h"
#include "filters/range.h"
#include "filters/stream.h"
#include "tests/runtime/zone_fixture.h"
#include "tests/toolbox/toolbox_fixture.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <gmock/gmock.h>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {
namespace {

using ::testing::ElementsAre;

std::string readText(Filter& filter, std::size_t count) {
    std::string text(count, '?');
    text.resize(readFilter(filter, std::as_writable_bytes(std::span(text))));
    return text;
}

/// A filter over bytes of memory that can be written, and that notes every call.
struct Recorder : Filter {
    explicit Recorder(std::vector<std::string>& calls, std::string bytes = {})
        : Filter(procedure), log(calls), store(std::move(bytes)) {}
    ~Recorder() override { log.emplace_back("gone"); }

    static std::int32_t procedure(Filter& filter, Operation operation, std::byte* buffer,
                                  std::int32_t* argument) {
        auto& self = static_cast<Recorder&>(filter);
        const auto at = static_cast<std::size_t>(self.position);
        switch (operation) {
        case Operation::read: {
            const std::size_t count =
                std::min<std::size_t>(self.store.size() - at, static_cast<std::size_t>(*argument));
            self.log.push_back("read " + std::to_string(*argument));
            std::memcpy(buffer, self.store.data() + at, count);
            self.position += static_cast<std::int32_t>(count);
            return *argument = static_cast<std::int32_t>(count);
        }
        case Operation::write:
            *argument = std::min(*argument, self.room);
            self.log.push_back("write " + std::to_string(*argument));
            self.store.resize(at);
            for (std::int32_t i = 0; i < *argument; ++i) {
                self.store += static_cast<char>(buffer[i]);
            }
            self.position += *argument;
            return *argument;
        case Operation::seek:
            self.log.push_back("seek " + std::to_string(*argument));
            return self.position = *argument;
        case Operation::mark:
            return *argument = self.position;
        case Operation::link:
            self.log.emplace_back("link");
            break;
        case Operation::unlink:
            self.log.emplace_back("unlink");
            break;
        default:
            self.log.emplace_back("other");
        }
        raiseException(self.failure);
        return 0;
    }

    std::vector<std::string>& log;
    std::string store;
    std::int32_t position = 0;
    std::int32_t room = INT32_MAX; ///< bytes that a write accepts
    Exception failure = Exception::none;
};

class ChainTest : public ZoneTest {
protected:
    /// Links a recorder that raises `failure` whenever it is linked or unlinked.
    Recorder& record(Chain& chain, std::string bytes = {}) {
        auto owner = std::make_unique<Recorder>(log_, std::move(bytes));
        Recorder& recorder = *owner;
        chain.link(std::move(owner));
        return recorder;
    }
    std::vector<std::string> taken() { return std::exchange(log_, {}); }

    std::vector<std::string> log_;
};

TEST_F(ChainTest, LinksUnlinksAndFindsTheBottom) {
    EXPECT_EQ(baseFilter(nullptr), nullptr);
    Filter* const bottom = linkFilter(nullptr, std::make_unique<Recorder>(log_));
    EXPECT_EQ(baseFilter(bottom), bottom);
    Filter* const top = linkFilter(bottom, std::make_unique<Recorder>(log_));
    EXPECT_EQ(baseFilter(top), bottom);
    EXPECT_EQ(unlinkFilter(top), bottom);
    EXPECT_EQ(unlinkFilter(bottom), nullptr);
    EXPECT_THAT(log_, ElementsAre("link", "link", "unlink", "gone", "unlink", "gone"));

    Recorder nameless(log_);
    nameless.entry = nullptr;
    EXPECT_EQ(raisedBy([&] { callFilter(nameless, Operation::mark); }), Exception::structure);
}

/// Runs `body` within `blocks` guarded blocks; the code it raises.
Exception raisedWithin(int blocks, const std::function<void()>& body) {
    return blocks == 1 ? guarded(body)
                       : guarded([&] { raiseException(raisedWithin(blocks - 1, body)); });
}

TEST_F(ChainTest, WhereNoMoreBlocksCanBeGuardedFiltersGoAllTheSame) {
    const Exception code = raisedWithin(handlerLimit, [&] {
        Chain chain;
        record(chain);
        taken();
        chain.unlink();
    });
    EXPECT_EQ(code, Exception::limit);
    EXPECT_THAT(taken(), ElementsAre("gone"));
    resetException();
}

TEST_F(ChainTest, FailuresLeaveNoFilterBehind) {
    {
        auto owner = std::make_unique<Recorder>(log_);
        owner->failure = Exception::io;
        Chain chain;
        EXPECT_EQ(raisedBy([&] { chain.link(std::move(owner)); }), Exception::io);
        EXPECT_EQ(chain.top(), nullptr);
        EXPECT_THAT(taken(), ElementsAre("link", "gone"));
    }
    {
        // Every filter is unlinked, and the first code is the one that travels on.
        Chain chain;
        record(chain).failure = Exception::access;
        record(chain).failure = Exception::io;
        taken();
        EXPECT_EQ(raisedBy([&] { chain.unlink(); }), Exception::io);
        EXPECT_EQ(chain.top(), nullptr);
        EXPECT_THAT(taken(), ElementsAre("unlink", "gone", "unlink", "gone"));
    }
    {
        // What is abandoned is not finished; what stands below the base is not touched.
        Chain below;
        Recorder& base = record(below);
        {
            Chain above(&base);
            record(above);
            taken();
        }
        EXPECT_THAT(taken(), ElementsAre("gone"));
        EXPECT_EQ(below.top(), &base);
    }
}

TEST_F(ChainTest, AWriteThatIsNotTakenWholeIsAFault) {
    Chain chain;
    record(chain).room = 3;
    const std::string four = "four";
    EXPECT_EQ(raisedBy([&] { writeFilter(*chain.top(), std::as_bytes(std::span(four))); }),
              Exception::io);
}

// The buffer

TEST_F(ChainTest, BufferReadsInBlocksAndSeeksWithoutTouchingTheFile) {
    Chain chain;
    Recorder& file = record(chain, "0123456789abcdefghij");
    chain.link(setupBuffer(8));
    Filter& buffer = *chain.top();
    taken();
    EXPECT_EQ(readText(buffer, 3), "012");
    EXPECT_EQ(markFilter(buffer), 3);
    EXPECT_EQ(file.position, 8);
    EXPECT_EQ(seekFilter(buffer, 1), 1);
    EXPECT_EQ(readText(buffer, 4), "1234");
    EXPECT_EQ(seekFilter(buffer, 8), 8); // just behind the bytes held: still inside
    EXPECT_EQ(seekFilter(buffer, 0), 0);
    EXPECT_EQ(readText(buffer, 7), "0123456");
    EXPECT_THAT(taken(), ElementsAre("read 8"));

    EXPECT_EQ(seekFilter(buffer, 9), 9);
    EXPECT_EQ(readText(buffer, 100), "9abcdefghij");
    EXPECT_EQ(readText(buffer, 100), "");
    EXPECT_EQ(markFilter(buffer), 20);
    EXPECT_EQ(readText(buffer, 0), "");

    seekFilter(buffer, 2);
    EXPECT_EQ(readText(buffer, 1), "2");
    chain.unlink(); // gives the read-ahead back first
    EXPECT_THAT(log_, ::testing::Contains("seek 3"));
}

TEST_F(ChainTest, BufferReadsOnWhereTheFilterBelowGivesLess) {
    const std::string bytes = "0123456789abcdefghij";
    for (const std::int32_t atOnce : {1, 3, 7}) {
        MemoryFilter bottom(std::as_bytes(std::span(bytes)), atOnce);
        Chain chain(&bottom);
        chain.link(setupBuffer(4));
        EXPECT_EQ(readText(*chain.top(), 18), bytes.substr(0, 18)) << atOnce;
        EXPECT_EQ(readText(*chain.top(), 18), "ij") << atOnce;
    }
}

TEST_F(ChainTest, BufferWritesWhenFullAndWhenItMust) {
    Chain chain;
    Recorder& file = record(chain, "abcdefghij");
    chain.link(setupBuffer(4));
    Filter& buffer = *chain.top();
    const auto write = [&](std::string_view text) {
        writeFilter(buffer, std::as_bytes(std::span(text)));
    };
    EXPECT_EQ(readText(buffer, 2), "ab");
    taken();
    write("X");
    EXPECT_EQ(markFilter(buffer), 3);
    write("YZ1234");
    EXPECT_EQ(markFilter(buffer), 9);
    EXPECT_EQ(file.store, "abXYZ1"); // written behind what was read, not behind the read-ahead
    seekFilter(buffer, 4);
    EXPECT_EQ(file.store, "abXYZ1234");
    EXPECT_EQ(readText(buffer, 2), "Z1");
    write("!");
    {
        const std::vector<std::string> before = taken();
        EXPECT_THAT(before,
                    ElementsAre("seek 2", "write 4", "write 3", "seek 4", "read 4", "seek 6"));
    }
    chain.unlink();
    EXPECT_THAT(log_, ElementsAre("write 1", "unlink", "gone"));
}

TEST_F(ChainTest, BuffersAreChargedAndAnAbandonedOneWritesNothing) {
    EXPECT_EQ(raisedBy([] { setupBuffer(-1); }), Exception::type);
    {
        Chain chain;
        record(chain);
        chain.link(setupBuffer());
        EXPECT_EQ(zoneBytesCharged(), usualBufferSize);
        const std::string text = "lost";
        writeFilter(*chain.top(), std::as_bytes(std::span(text)));
        taken();
    }
    EXPECT_THAT(log_, ElementsAre("gone"));
    EXPECT_EQ(zoneBytesCharged(), 0);
}

// The range

TEST_F(ChainTest, RangeShowsItsBytesOnly) {
    Chain chain;
    record(chain, "0123456789");
    chain.link(setupRange(3, 7));
    Filter& range = *chain.top();
    EXPECT_EQ(markFilter(range), 3);
    EXPECT_EQ(readText(range, 2), "34");
    EXPECT_EQ(markFilter(range), 5);
    EXPECT_EQ(readText(range, 9), "56");
    EXPECT_EQ(readText(range, 9), "");
    struct Row {
        std::int32_t target;
        std::int32_t wanted;
    };
    for (const Row& row : {Row{5, 5}, {0, 3}, {99, 7}, {-1, 3}}) {
        EXPECT_EQ(seekFilter(range, row.target), row.wanted) << row.target;
        EXPECT_EQ(markFilter(range), row.wanted) << row.target;
    }
    EXPECT_EQ(raisedBy([] { setupRange(-1, 2); }), Exception::range);
    EXPECT_EQ(raisedBy([] { setupRange(3, 2); }), Exception::range);
}

TEST_F(ChainTest, RangesOverOneFileAreReadInTurn) {
    Chain file;
    record(file, "0123456789");
    file.link(setupBuffer(4));
    Chain low(file.top());
    low.link(setupRange(0, 6));
    Chain high(file.top());
    high.link(setupRange(3, 10));
    std::string lows;
    std::string highs;
    for (int i = 0; i < 4; ++i) {
        lows += readText(*low.top(), 2);
        highs += readText(*high.top(), 2);
    }
    EXPECT_EQ(lows, "012345");
    EXPECT_EQ(highs, "3456789");
}

TEST_F(ChainTest, RangeThatDoesNotReachItsStartIsAFault) {
    const std::string bytes = "short";
    Chain chain;
    chain.link(std::make_unique<MemoryFilter>(std::as_bytes(std::span(bytes))));
    EXPECT_EQ(raisedBy([&] { chain.link(setupRange(9, 12)); }), Exception::io);
}

// The byte stream

TEST_F(ChainTest, ByteStreamPushesOneByteBack) {
    Chain chain;
    Recorder& file = record(chain, "abcde");
    ByteStream stream(file);
    EXPECT_EQ(dct_getc(stream), 'a');
    dct_ungetc('Z', stream);
    EXPECT_EQ(raisedBy([&] { dct_ungetc('Y', stream); }), Exception::codec);
    std::string three(3, ' ');
    EXPECT_EQ(dct_read(std::as_writable_bytes(std::span(three)), stream), 2); // one was pushed back
    EXPECT_EQ(three, "Zbc");
    EXPECT_EQ(dct_getc(stream), 'd');
    dct_ungetc('d', stream);
    EXPECT_EQ(dct_getc(stream), 'd');
    EXPECT_FALSE(stream.filter_eof);
    EXPECT_EQ(raisedBy([&] { dct_read(std::as_writable_bytes(std::span(three)), stream); }),
              Exception::io);
    EXPECT_EQ(dct_getc(stream), -1);
    EXPECT_TRUE(stream.filter_eof);
    file.position = 0;
    EXPECT_EQ(dct_getc(stream), 'a');
    EXPECT_TRUE(stream.filter_eof) << "the flag is sticky";

    dct_ungetc('x', stream);
    EXPECT_EQ(dct_putc(0xFF, stream), 0xFF);
    EXPECT_EQ(dct_getc(stream), -1) << "writing forgets the byte";
    file.room = 0;
    EXPECT_FALSE(stream.filter_error);
    EXPECT_EQ(dct_putc(1, stream), -1);
    EXPECT_TRUE(stream.filter_error);
    EXPECT_EQ(raisedBy([&] { dct_write(std::as_bytes(std::span(three)), stream); }), Exception::io);
}

// The stream

class StreamTest : public ToolboxTest {};

TEST_F(StreamTest, OpensWhenLinkedAndClosesWhenUnlinked) {
    add("in", "0123456789");
    EXPECT_EQ(raisedBy([&] { setupStream(volume_, "missing", "read"); }), Exception::none);
    EXPECT_EQ(raisedBy([&] { linkFilter(nullptr, setupStream(volume_, "missing", "read")); }),
              Exception::io);
    EXPECT_EQ(raisedBy([&] { linkFilter(nullptr, setupStream(volume_, "in", "Read")); }),
              Exception::type);
    Chain chain;
    chain.link(setupStream(volume_, "in", "read"));
    Filter& stream = *chain.top();
    EXPECT_EQ(readText(stream, 4), "0123");
    EXPECT_EQ(readText(stream, 0), "");
    EXPECT_EQ(markFilter(stream), 4);
    EXPECT_EQ(seekFilter(stream, -3), 7);
    EXPECT_EQ(readText(stream, 9), "789");
    EXPECT_EQ(raisedBy([&] { writeFilter(stream, std::as_bytes(std::span("x", 1))); }),
              Exception::access);
    chain.unlink();
}

TEST_F(StreamTest, AnAbandonedStreamGivesItsFileBackAndHidesNoCode) {
    add("in", "0123456789");
    // Far more than files that may be open at once.
    for (int i = 0; i < 2000; ++i) {
        const Exception code = raisedBy([&] {
            Chain chain;
            chain.link(setupStream(volume_, "in", "read"));
            failException(Exception::context);
        });
        ASSERT_EQ(code, Exception::context) << i;
    }
    EXPECT_EQ(raisedWithin(handlerLimit,
                           [&] {
                               Chain chain;
                               chain.link(setupStream(volume_, "in", "read"));
                           }),
              Exception::none);
}

} // namespace
} // namespace corvane
