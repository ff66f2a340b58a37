#include "objects/symbol.h"

#include "tests/runtime/zone_fixture.h"

#include <gtest/gtest.h>

#include <vector>

namespace corvane {
namespace {

using SymbolTest = ZoneTest;

TEST_F(SymbolTest, NewerEntriesHideOlderOnesAndAnagramsDoNot) {
    const Ref<SymbolTable> table = openSymbol();
    appendSymbol(table, "re", 1);
    appendSymbol(table, "er", 2);
    appendSymbol(table, "\xE4", 4); // a byte above 127
    std::int32_t value = 9;
    EXPECT_TRUE(lookupSymbol(table, "re", value));
    EXPECT_EQ(value, 1);
    appendSymbol(table, "re", 3);
    EXPECT_TRUE(lookupSymbol(table, "re", value));
    EXPECT_EQ(value, 3);
    EXPECT_TRUE(lookupSymbol(table, "\xE4", value));
    EXPECT_EQ(value, 4);
    EXPECT_FALSE(lookupSymbol(table, "r", value));
    EXPECT_EQ(value, 0);
    closeSymbol(table);
    EXPECT_GE(failEachAllocation([] {
                  const Ref<SymbolTable> made = openSymbol();
                  const Exception code = guarded([&] { appendSymbol(made, "a", 1); });
                  closeSymbol(made);
                  raiseException(code);
              }),
              2);
}

TEST_F(SymbolTest, TokensAsNumbers) {
    struct Row {
        std::string_view token;
        bool isInteger;
        std::int32_t integer;
        bool isFixed;
        Fixed fixed; // where it is one
    };
    const std::vector<Row> rows{
        {"", true, 0, false, 0},
        {"-", true, 0, false, 0},
        {"+", true, 0, false, 0},
        {"--1", false, 0, false, 0},
        {"12a", false, 12, false, 0},
        {"007", true, 7, true, 7 * fixedOne},
        {".5", false, 0, true, 32768},
        {"-.5", false, 0, true, -32768},
        {"+1.5", false, 1, true, 98304},
        {"4.", false, 4, true, 4 * fixedOne},
        {".", false, 0, false, 0},
        {"1.5x", false, 1, false, 0},
        {"1.2.3", false, 1, false, 0},
        {"0.3", false, 0, true, 19660},         // cut, not rounded
        {"0.1234567891", false, 0, true, 8090}, // as many digits as count
        {"0.12345678919999999999", false, 0, true, 8090},
        {"2147483648", true, INT32_MIN, true, INT32_MAX}, // one wraps, one saturates
        {"-32768.5", false, -32768, true, INT32_MIN},
        {"99999999999999999999", true, 1661992959, true, INT32_MAX},
    };
    for (const Row& row : rows) {
        std::int32_t integer = 99;
        EXPECT_EQ(integerSymbol(row.token, integer), row.isInteger) << row.token;
        EXPECT_EQ(integer, row.integer) << row.token;
        Fixed fixed = 0;
        EXPECT_EQ(fixedSymbol(row.token, fixed), row.isFixed) << row.token;
        EXPECT_EQ(fixed, row.fixed) << row.token;
    }
}

} // namespace
} // namespace corvane
