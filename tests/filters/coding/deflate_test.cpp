#include "filters/coding/deflate.h"

#include "filters/coding/flate.h"
#include "tests/filters/decode_check.h"
#include "tests/runtime/zone_fixture.h"

namespace corvane {
namespace {

using namespace test;

class DeflateTest : public ZoneTest {};

TEST_F(DeflateTest, InflatesToWhatWasWritten) {
    for (const std::string& plain : {std::string(), std::string("x"), std::string(3, '\0'),
                                     std::string(200'000, 'x'), someBytes(100'001)}) {
        const std::string whole = encoded(setupDeflate, plain, plain.size());
        expectDecodes(setupInflate, whole, plain);
        for (const std::size_t chunk : {1U, 4099U, 16384U}) {
            EXPECT_TRUE(encoded(setupDeflate, plain, chunk) == whole) << chunk;
        }
    }
    EXPECT_LT(encoded(setupDeflate, std::string(1'000'000, 'x'), 8192).size(), 2000U);
}

TEST_F(DeflateTest, WritesOnlyAndIsCharged) {
    std::string store;
    Chain chain;
    chain.link(std::make_unique<SinkFilter>(store));
    auto& sink = static_cast<SinkFilter&>(*chain.top());
    chain.link(setupDeflate());
    EXPECT_GE(zoneBytesCharged(), 256 << 10);
    std::array<std::byte, 1> byte{};
    EXPECT_EQ(raisedBy([&] { readFilter(*chain.top(), byte); }), Exception::io);
    EXPECT_EQ(raisedBy([&] { seekFilter(*chain.top(), 0); }), Exception::io);
    const std::string plain = someBytes(100'000);
    writeFilter(*chain.top(), bytesOf(plain));
    sink.room = 0;
    EXPECT_EQ(raisedBy([&] { writeFilter(*chain.top(), bytesOf(plain)); }), Exception::io);
    EXPECT_EQ(raisedBy([&] { chain.unlink(); }), Exception::io) << "the end is missing";
}

TEST_F(DeflateTest, WritesNothingMoreWhereItIsAbandoned) {
    std::string store;
    {
        Chain chain;
        chain.link(std::make_unique<SinkFilter>(store));
        chain.link(setupDeflate());
        writeFilter(*chain.top(), bytesOf("some bytes"));
        store.clear();
    }
    EXPECT_EQ(store, "");
}

} // namespace
} // namespace corvane
