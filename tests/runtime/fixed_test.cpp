#include "runtime/fixed.h"

#include <gtest/gtest.h>

#include <limits>

namespace corvane {
namespace {

constexpr Fixed least = INT32_MIN;
constexpr Fixed most = INT32_MAX;

TEST(FixedTest, RoundsAsItsNamesSay) {
    struct Row {
        Fixed value;
        std::int32_t nearest, floor, ceiling;
    };
    for (const Row& row : {Row{0, 0, 0, 0},
                           {32768, 1, 0, 1},
                           {-32768, 0, -1, 0},
                           {163840, 3, 2, 3},
                           {-163840, -2, -3, -2},
                           {65536, 1, 1, 1},
                           {65537, 1, 1, 2},
                           {-1, 0, -1, 0},
                           {most, 32768, 32767, 32768},
                           {least, -32768, -32768, -32768}}) {
        EXPECT_EQ(fixed2long(row.value), row.nearest) << row.value;
        EXPECT_EQ(floorFixed(row.value), row.floor) << row.value;
        EXPECT_EQ(ceilingFixed(row.value), row.ceiling) << row.value;
    }
}

TEST(FixedTest, ProductsAndQuotientsHave24BitsAndSaturate) {
    struct Row {
        Fixed a, b, product, quotient;
    };
    for (const Row& row : {Row{65536, 65536, 65536, 65536},
                           {-98304, 65536, -98304, -98304},
                           {16777217, 65536, 16777216, 16777216}, // the 25th bit is lost
                           {1, 3, 0, 21845},
                           {-1, 3, 0, -21845},
                           {most, most, most, 65536},
                           {most, 1, 32768, most},
                           {least, 1, -32768, least},
                           {least, most, least, -65536},
                           {5, 0, 0, most},
                           {-5, 0, 0, least},
                           {0, 0, 0, 0}}) {
        EXPECT_EQ(multiplyFixed(row.a, row.b), row.product) << row.a << " " << row.b;
        EXPECT_EQ(divideFixed(row.a, row.b), row.quotient) << row.a << " " << row.b;
    }
}

TEST(FixedTest, EndsOfTheRange) {
    EXPECT_EQ(long2fixed(-2), -131072);
    EXPECT_EQ(long2fixed(40000), most);
    EXPECT_EQ(long2fixed(-40000), least);
    EXPECT_EQ(absoluteFixed(-65536), 65536);
    EXPECT_EQ(absoluteFixed(least), most);
    EXPECT_EQ(minimumFixed(least, most), least);
    EXPECT_EQ(maximumFixed(least, most), most);
    EXPECT_EQ(fixedFromReal(-0.5 / 65536), -1);
    EXPECT_EQ(fixedFromReal(1e9), most);
    EXPECT_EQ(fixedFromReal(std::numeric_limits<double>::quiet_NaN()), 0);
}

} // namespace
} // namespace corvane
