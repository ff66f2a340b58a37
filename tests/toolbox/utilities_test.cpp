#include "host/extension.h"
#include "host/front.h"
#include "host/utilities.h"
#include "tests/toolbox/toolbox_fixture.h"

#include <cstdlib>
#include <cstring>
#include <ctime>

namespace corvane {
namespace {

TEST(Utilities, QuotientsAreRoundedAndSaturate) {
    EXPECT_EQ(FixDiv(1, 2), 0x8000);
    EXPECT_EQ(FixDiv(-1, 2), -0x8000);
    EXPECT_EQ(FixDiv(2, 3), 0xAAAB);
    EXPECT_EQ(FixDiv(-2, 3), -0xAAAB);
    EXPECT_EQ(FixDiv(INT32_MIN, INT32_MIN), fixedOne);
    EXPECT_EQ(FixDiv(0x8000, 1), INT32_MAX);
    EXPECT_EQ(FixDiv(INT32_MIN, 1), INT32_MIN);
    EXPECT_EQ(FixDiv(1, 0), INT32_MAX);
    EXPECT_EQ(FixDiv(-1, 0), INT32_MIN);
}

TEST(Utilities, StringsChangeTheirFormInPlace) {
    std::array<std::uint8_t, 256> text{};
    NumToString(INT32_MIN, text.data());
    EXPECT_EQ(plain(text.data()), "-2147483648");
    P2CStr(text.data());
    EXPECT_EQ(std::memcmp(text.data(), "-2147483648", 12), 0);
    C2PStr(text.data());
    EXPECT_EQ(plain(text.data()), "-2147483648");
    text.fill('x'); // no end in sight
    C2PStr(text.data());
    EXPECT_EQ(text[0], 255);
    P2CStr(text.data());
    EXPECT_EQ(text[254], 'x');
    EXPECT_EQ(text[255], 0);
}

TEST(Utilities, DatesAreFixedByTheEnvironment) {
    const auto printed = [](std::int64_t seconds) {
        std::array<std::uint8_t, 256> date{};
        std::array<std::uint8_t, 256> time{};
        IUDateString(seconds, date.data());
        IUTimeString(seconds, time.data());
        return plain(date.data()) + " " + plain(time.data());
    };
    std::int64_t now = 0;
    setenv("TZ", "QRS-14", 1);
    setenv("SOURCE_DATE_EPOCH", "951784560", 1); // 2000-02-29 00:36 UTC
    GetDateTime(&now);
    EXPECT_EQ(now, std::int64_t{951'784'560} + 2'082'844'800);
    EXPECT_EQ(printed(now), "2/29/2000 0:36");
    setenv("SOURCE_DATE_EPOCH", "2500000000", 1); // past what 32 bits from 1904 hold
    GetDateTime(&now);
    EXPECT_EQ(printed(now), "3/22/2049 4:26");
    setenv("SOURCE_DATE_EPOCH", "noon", 1);
    GetDateTime(&now);
    EXPECT_NEAR(static_cast<double>(now), static_cast<double>(std::time(nullptr)) + 2'082'844'800.0,
                10.0);
    EXPECT_EQ(printed(2'082'844'800), "1/1/1970 14:00"); // local
    unsetenv("SOURCE_DATE_EPOCH");
    unsetenv("TZ");
}

TEST(Registration, BelongsToTheScope) {
    const HostExtension extension;
    const ToolboxScope outer(std::int64_t{16} << 20);
    setHostExtension(&extension);
    {
        const ToolboxScope inner(std::int64_t{16} << 20);
        EXPECT_EQ(hostExtension(), nullptr);
        EXPECT_EQ(dialogFront(), nullptr);
    }
    EXPECT_EQ(hostExtension(), &extension);
    setHostExtension(nullptr);
    EXPECT_EQ(hostExtension(), nullptr);
}

} // namespace
} // namespace corvane
