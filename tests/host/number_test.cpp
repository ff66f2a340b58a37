#include "host/number.h"

#include "host/artwork.h"

#include <gtest/gtest.h>

#include <limits>

namespace corvane {
namespace {

/// digits / 10^places.
struct Decimal {
    std::int64_t digits = 0;
    int places = 0;
    bool plain = true; ///< nothing but a sign, digits and one point, no blank end
};

Decimal parse(const std::string& text) {
    Decimal decimal;
    bool point = false;
    for (const char c : text.starts_with('-') ? text.substr(1) : text) {
        if (c == '.') {
            decimal.plain = decimal.plain && !point;
            point = true;
        } else if (c >= '0' && c <= '9') {
            decimal.digits = decimal.digits * 10 + (c - '0');
            decimal.places += point ? 1 : 0;
        } else {
            decimal.plain = false;
        }
    }
    if (text.starts_with('-')) {
        decimal.digits = -decimal.digits;
    }
    decimal.plain = decimal.plain && !text.empty() && !(point && decimal.places == 0);
    return decimal;
}

/// 2 x 10^5 parts of a 16.16 unit lie between a decimal and a number that it rounds to, or less.
bool readsBackAs(Decimal decimal, std::int64_t value) {
    std::int64_t scale = 1;
    for (int i = decimal.places; i < 5; ++i) {
        scale *= 10;
    }
    const std::int64_t exact = decimal.digits * scale * 65536; // in 10^-5 of a unit
    const std::int64_t apart = exact - value * 100000;
    return 2 * (apart < 0 ? -apart : apart) < 100000;
}

bool shorterExists(Decimal decimal, std::int64_t value) {
    if (decimal.places == 0) {
        return false;
    }
    const Decimal shorter{decimal.digits / 10, decimal.places - 1};
    return readsBackAs({shorter.digits - 1, shorter.places}, value) ||
           readsBackAs(shorter, value) || readsBackAs({shorter.digits + 1, shorter.places}, value);
}

TEST(Number, EveryFractionReadsBackAndNoShorterDoes) {
    for (const std::int64_t whole : {-32768, -10, -1, 0, 7, 99, 100, 32767, 65535}) {
        for (std::int64_t fraction = 0; fraction < 65536; ++fraction) {
            const std::int64_t value = whole * 65536 + fraction;
            const std::string text = numberText(value);
            const Decimal decimal = parse(text);
            ASSERT_TRUE(decimal.plain && decimal.places <= 5) << value << ' ' << text;
            ASSERT_TRUE(readsBackAs(decimal, value)) << value << ' ' << text;
            ASSERT_FALSE(shorterExists(decimal, value)) << value << ' ' << text;
        }
    }
}

TEST(Number, TextIsWhatAPersonWouldWrite) {
    const struct {
        std::int64_t value;
        const char* text;
    } rows[] = {
        {0, "0"},
        {fixedOne, "1"},
        {-fixedOne / 2, "-.5"},
        {612 * fixedOne + 6554, "612.1"},
        {1, ".00002"},
        {-1, "-.00002"},
        {fixedOne - 1, ".99998"},
        {std::numeric_limits<Fixed>::min(), "-32768"},
        {std::numeric_limits<Fixed>::max(), "32767.99998"},
        {std::int64_t{4'294'967'295} << 16 | 0xFFFF, "4294967295.99998"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(numberText(row.value), row.text);
    }
}

} // namespace
} // namespace corvane
