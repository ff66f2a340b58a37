#include "runtime/string.h"

#include "host/parameters.h"
#include "host/resources.h"
#include "tests/runtime/zone_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace corvane {
namespace {

using StringTest = ZoneTest;
using Prefixed = std::array<std::uint8_t, 256>;

Prefixed prefixed(const std::string& text) {
    Prefixed result{};
    result[0] = static_cast<std::uint8_t>(text.size());
    std::copy(text.begin(), text.end(), result.begin() + 1);
    return result;
}

std::string plain(const Prefixed& text) {
    const auto bytes = prefixedBytes(text);
    return {bytes.begin(), bytes.end()};
}

TEST_F(StringTest, ComparesSignedBytesAndTheEndIsZero) {
    EXPECT_EQ(compareString("ab", "ab"), 0);
    EXPECT_EQ(compareString("ab", "abc"), -1);
    EXPECT_EQ(compareString("b", "a"), 1);
    EXPECT_EQ(compareString("a\x80", "a"), -1); // -128 is below the end
    EXPECT_EQ(compareString("a\x80", "az"), -1);
}

TEST_F(StringTest, TextUpToAByteOrAQuote) {
    EXPECT_EQ(advanceString('b', "abcb"), "cb");
    EXPECT_EQ(advanceString('x', "abcb"), std::nullopt);
    EXPECT_TRUE(leftString("", "abc") && leftString("ab", "abc"));
    EXPECT_FALSE(leftString("abcd", "abc"));
    struct Row {
        std::string_view text, quoted;
        std::optional<std::string_view> rest;
    };
    for (const Row& row : {Row{"x \"one\" rest", "one", " rest"},
                           {"x \"two", "two", std::nullopt},
                           {"none", "", std::nullopt}}) {
        EXPECT_EQ(quotedString(row.text).text, row.quoted);
        EXPECT_EQ(quotedString(row.text).rest, row.rest);
    }
}

TEST_F(StringTest, CopiesEndInATerminatorWithinTheirBounds) {
    std::array<char, 4> to{};
    copyString(to, "aba");
    EXPECT_EQ(countString(to), 3U);
    mapString(to, 'a', 'o');
    EXPECT_EQ(viewString(to), "obo");
    EXPECT_EQ(viewString(std::span(to).first(2)), "ob");
    EXPECT_EQ(raisedBy([&] { copyString(to, "1234"); }), Exception::range);
}

TEST_F(StringTest, NumbersReportWhereTheyEnd) {
    struct Row {
        std::string_view text;
        std::optional<std::string_view> integerRest;
        std::int32_t integer;
        std::optional<std::string_view> fixedRest;
        Fixed fixed;
    };
    const std::vector<Row> rows{
        {"  -12x", "x", -12, "x", -12 * fixedOne},
        {"+", std::nullopt, 0, std::nullopt, 0},
        {"x", std::nullopt, 0, std::nullopt, 0},
        {"\t7", "", 7, "", 7 * fixedOne},
        {"5.", ".", 5, "", 5 * fixedOne},
        {".", std::nullopt, 0, std::nullopt, 0},
        {"1.5 2", ".5 2", 1, " 2", 98304},
        {"-.25", std::nullopt, 0, "", -16384},
        {"0.50000000000000000000000000000001", ".50000000000000000000000000000001", 0, "", 32768},
        {"4294967297", "", 1, "", INT32_MAX},
        {"-99999", "", -99999, "", INT32_MIN},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(integerString(row.text).rest, row.integerRest) << row.text;
        EXPECT_EQ(integerString(row.text).value, row.integer) << row.text;
        EXPECT_EQ(fixedString(row.text).rest, row.fixedRest) << row.text;
        EXPECT_EQ(fixedString(row.text).value, row.fixed) << row.text;
    }
}

TEST_F(StringTest, ListEntriesAndTheEmptyStringWhereThereIsNone) {
    const std::string_view list("\0\2\5first\6second", 15);
    const StaticResource table[] = {
        {fourCharacters("STR#"), 16000, {}, std::as_bytes(std::span(list))}};
    const ResourceSource source(table);
    Prefixed text = prefixed("former");
    getString(text, 16000, 2);
    EXPECT_EQ(plain(text), "second");
    for (const auto& [id, index] : {std::pair(16000, 0), std::pair(16000, 3), std::pair(1, 1)}) {
        text = prefixed("former");
        getString(text, static_cast<std::int16_t>(id), static_cast<std::int16_t>(index));
        EXPECT_EQ(plain(text), "");
    }
}

TEST_F(StringTest, PrefixedStringsGrowToTheirBoundsAndNoFurther) {
    Prefixed text = prefixed("bc");
    pstrcat(text, prefixed("de"));
    pstrinsert(text, prefixed("a"));
    EXPECT_EQ(plain(text), "abcde");

    const std::string whole(200, 'w');
    pstrcpy(text, prefixed(whole));
    pstrcat(text, prefixed(std::string(55, 'x')));
    EXPECT_EQ(plain(text), whole + std::string(55, 'x'));
    EXPECT_EQ(raisedBy([&] { pstrcat(text, prefixed("y")); }), Exception::range);
    EXPECT_EQ(raisedBy([&] { pstrinsert(text, prefixed("y")); }), Exception::range);
    EXPECT_EQ(plain(text).size(), 255U);

    std::array<std::uint8_t, 4> small{};
    pstrcpy(small, prefixed("abc"));
    EXPECT_EQ(raisedBy([&] { pstrcpy(small, prefixed("abcd")); }), Exception::range);
    small[0] = 4; // claims more than it has
    EXPECT_EQ(raisedBy([&] { pstrcat(text, small); }), Exception::range);
}

} // namespace
} // namespace corvane
