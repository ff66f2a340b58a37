#include "filters/coding/flate.h"

#include "tests/filters/decode_check.h"
#include "tests/runtime/zone_fixture.h"

#include <zlib.h>

namespace corvane {
namespace {

using namespace test;

class InflateTest : public ZoneTest {};

std::string deflated(std::string_view plain, int level = 6) {
    std::vector<Bytef> data(compressBound(plain.size()));
    uLongf size = data.size();
    const std::vector<Bytef> copy(plain.begin(), plain.end());
    EXPECT_EQ(compress2(data.data(), &size, copy.data(), copy.size(), level), Z_OK);
    return {data.begin(), data.begin() + static_cast<std::ptrdiff_t>(size)};
}

TEST_F(InflateTest, InflatesEveryKindOfBlock) {
    const std::string plain = someBytes(100'000);
    for (const int level : {0, 1, 9}) {
        expectDecodes(setupInflate, deflated(plain, level), plain);
    }
    expectDecodes(setupInflate, deflated(""), "");
    expectDecodes(setupInflate, deflated(std::string(100'000, 'x')), std::string(100'000, 'x'));
}

TEST_F(InflateTest, DeliversWhatCanBeHadOfDamagedData) {
    const std::string plain = someBytes(30'000);
    const std::string data = deflated(plain);
    const auto inflated = [](std::string_view bytes) {
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(bytesOf(bytes)));
        chain.link(setupInflate());
        std::string all = readAll(*chain.top(), 997);
        EXPECT_EQ(readAll(*chain.top()), "");
        chain.unlink();
        return all;
    };
    for (const std::size_t cut : {0U, 1U, 2U, 3U, 100U, 5000U}) {
        const std::string part = inflated(data.substr(0, cut));
        EXPECT_TRUE(plain.starts_with(part)) << cut;
        EXPECT_TRUE(cut < 5000 || part.size() > 4000) << part.size();
    }
    std::string damaged = data;
    damaged.back() = static_cast<char>(damaged.back() ^ 1); // the checksum
    EXPECT_TRUE(inflated(damaged) == plain);
    EXPECT_TRUE(inflated(data.substr(0, data.size() - 4)) == plain) << "no checksum";
    damaged[0] = '?';
    damaged[1] = '?';
    EXPECT_TRUE(inflated(damaged) == plain) << "no header";
    const std::size_t middle = data.size() / 2;
    damaged.replace(middle, 40, std::string(40, '\xFF'));
    const std::string part = inflated(damaged);
    EXPECT_TRUE(part.substr(0, 10'000) == plain.substr(0, 10'000)) << part.size();
}

TEST_F(InflateTest, ReadsOnlyAndIsCharged) {
    Chain chain;
    chain.link(std::make_unique<MemoryFilter>(bytesOf("")));
    chain.link(setupInflate());
    EXPECT_GE(zoneBytesCharged(), 32 << 10);
    EXPECT_EQ(raisedBy([&] { writeFilter(*chain.top(), bytesOf("x")); }), Exception::io);
}

} // namespace
} // namespace corvane
