#include "output/primitives.h"

#include "host/utilities.h"
#include "output/number_text.h"
#include "tests/runtime/zone_fixture.h"
#include "tests/support/keeper_filter.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace corvane {
namespace {

class PrimitivesTest : public ZoneTest {
protected:
    /// What `body` writes to a stream.
    template <class Body>
    static std::string written(Body body) {
        test::KeeperFilter keeper;
        body(keeper);
        return keeper.text;
    }
    static std::string fixedText(Fixed value) {
        return written([&](Filter& stream) { fixedOutput(stream, value); });
    }
    static std::string realText(double value) {
        return written([&](Filter& stream) { realOutput(stream, value); });
    }
    static std::string nameText(std::string_view name) {
        return written([&](Filter& stream) { nameOutput(stream, name); });
    }
    static std::string bodyText(std::string_view bytes) {
        const std::vector<std::uint8_t> body(bytes.begin(), bytes.end());
        return written([&](Filter& stream) { bufferOutput(stream, body); });
    }
    static std::string colourText(const Colour& colour) {
        return written([&](Filter& stream) { colorOutput(stream, colour); });
    }
};

TEST_F(PrimitivesTest, FixedNumbers) {
    struct Row {
        Fixed value;
        const char* original;
        const char* extended;
    };
    for (const Row& row : {Row{0, "0 ", "0 "},
                           {0x18000, "1.5000 ", "1.5 "},
                           {-0x4000, "-0.2500 ", "-.25 "},
                           {0x8000, "0.5000 ", ".5 "},
                           {612 * fixedOne, "612 ", "612 "},
                           {1, "0.0000 ", ".00002 "},
                           {-1, "-0.0000 ", "-.00002 "},
                           {0xFFFF, "0.9999 ", ".99998 "},
                           {6554, "0.1000 ", ".1 "},
                           {INT32_MAX, "32767.9999 ", "32767.99998 "},
                           {INT32_MIN, "-32768 ", "-32768 "}}) {
        selectRules(Profile::original);
        EXPECT_EQ(fixedText(row.value), row.original);
        selectRules(Profile::extended);
        EXPECT_EQ(fixedText(row.value), row.extended);
    }
}

TEST_F(PrimitivesTest, RealNumbersReadBackTheSame) {
    selectRules(Profile::extended);
    EXPECT_EQ(realText(0), "0 ");
    EXPECT_EQ(realText(-0.0), "0 ");
    EXPECT_EQ(realText(1.0 / 3), ".3333333333333333 ");
    EXPECT_EQ(realText(-0.1), "-.1 ");
    EXPECT_EQ(realText(1e-7), ".0000001 ");
    EXPECT_EQ(realText(14400), "14400 ");
    EXPECT_EQ(realText(1e21), "1000000000000000000000 ");
    std::mt19937_64 random(1);
    for (int i = 0; i < 10'000; ++i) {
        const auto value = std::bit_cast<double>(random());
        if (std::isfinite(value)) {
            ASSERT_EQ(std::strtod(realText(value).c_str(), nullptr), value);
        }
    }
    using Limits = std::numeric_limits<double>;
    for (const double value : {Limits::max(), -Limits::max(), Limits::denorm_min(),
                               -Limits::denorm_min(), -2.2250738585072011e-308}) {
        const std::string text = realText(value);
        EXPECT_LE(text.size(), realRoom);
        EXPECT_EQ(std::strtod(text.c_str(), nullptr), value);
    }
    for (const Profile profile : {Profile::extended, Profile::original}) {
        selectRules(profile);
        if (profile == Profile::original) {
            EXPECT_EQ(realText(1.0 / 3), "0.3333 ");
            continue;
        }
        for (const double value : {Limits::infinity(), Limits::quiet_NaN()}) {
            EXPECT_EQ(raisedBy([&] { realText(value); }), Exception::type);
        }
    }
}

TEST_F(PrimitivesTest, PointsRectanglesMatrices) {
    const auto text = [] {
        return written([](Filter& stream) {
            pointOutput(stream, {fixedOne / 2, -fixedOne});
            stringOutput(stream, "\r");
            rectOutput(stream, {0, 792 * fixedOne, 612 * fixedOne, 0});
            stringOutput(stream, "\r");
            matrixOutput(stream, Matrix{fixedOne, 0, -fixedOne / 4, fixedOne, 1, 2 * fixedOne});
            stringOutput(stream, "\r");
            matrixOutput(stream, RealMatrix{.1, 0, 0, 1, -2.5, 1e-6});
        });
    };
    EXPECT_EQ(text(), "0.5000 -1 \n0 0 612 792 \n1 0 -0.2500 1 0.0000 2 \n0.1000 0 0 1 -2.5000 0 ");
    selectRules(Profile::extended);
    EXPECT_EQ(text(), ".5 -1 \n0 0 612 792 \n1 0 -.25 1 .00002 2 \n.1 0 0 1 -2.5 .000001 ");
}

TEST_F(PrimitivesTest, ReferencesAndObjects) {
    EXPECT_EQ(written([](Filter& stream) {
                  referenceOutput(stream, 12, 0);
                  objectOutput(stream, 3, 0);
                  referenceOutput(stream, 8388607, 0x1FFFF);
              }),
              "12 0 R\n3 0 obj\n8388607 65535 R\n");
}

TEST_F(PrimitivesTest, Names) {
    const std::string_view irregular("a b#c/(\x1f\x7f\xe9\r\0", 12);
    EXPECT_EQ(nameText("F1"), "/F1 ");
    EXPECT_EQ(nameText(std::string_view("\x04Time", 5)), "/\x04Time ");
    EXPECT_EQ(nameText(""), "/ ");
    selectRules(Profile::extended);
    EXPECT_EQ(nameText("F1"), "/F1 ");
    EXPECT_EQ(nameText(irregular), "/a#20b#23c#2F#28#1F#7F#E9#0D#00 ");
    const std::string longName(1000, '#');
    EXPECT_EQ(nameText(longName).size(), 3002U);
}

TEST_F(PrimitivesTest, StringBodies) {
    for (const Profile profile : {Profile::original, Profile::extended}) {
        selectRules(profile);
        EXPECT_EQ(bodyText("a(b)\\"), "a\\(b\\)\\\\");
        EXPECT_EQ(bodyText("\xc8\t~\x7f"), "\\310\\011~\x7f");
        EXPECT_EQ(bodyText("1\r2\n3\f4\b5"), "12345");
        EXPECT_EQ(bodyText(std::string_view("\0\x1f\x80\xff", 4)), "\\000\\037\\200\\377");
        EXPECT_EQ(bodyText(""), "");
        // However long: no buffer is overrun.
        std::string wanted;
        for (int i = 0; i < 5000; ++i) {
            wanted += "\\377";
        }
        EXPECT_EQ(bodyText(std::string(5000, '\xff')), wanted);
    }
}

TEST_F(PrimitivesTest, PostScriptColours) {
    EXPECT_EQ(colourText({.component = {fixedOne / 4}}), "0.7500  setgray\n");
    EXPECT_EQ(colourText({.kind = ColourKind::process, .component = {0, fixedOne, 0x8000, 0}}),
              "0 1 0.5000 0  setcmykcolor\n");
    for (const int kind : {2, 3, 4, 5, -1}) {
        test::KeeperFilter keeper;
        const Colour colour{.kind = ColourKind{kind}};
        EXPECT_EQ(raisedBy([&] { colorOutput(keeper, colour); }), Exception::type);
        EXPECT_EQ(keeper.text, "");
    }
}

TEST_F(PrimitivesTest, DateAndTime) {
    setenv("SOURCE_DATE_EPOCH", "1795249560", 1); // 2026-11-21 09:26 UTC
    EXPECT_EQ(written(dateOutput), "11/21/2026");
    EXPECT_EQ(written(timeOutput), "8:26");
    unsetenv("SOURCE_DATE_EPOCH");
}

TEST_F(PrimitivesTest, AStreamThatIsFull) {
    for (const std::int32_t room : {0, 1, 3}) {
        test::KeeperFilter keeper(room);
        EXPECT_EQ(raisedBy([&] { fixedOutput(keeper, 0x18000); }), Exception::io);
        EXPECT_EQ(std::ssize(keeper.text), room) << "what was taken stays";
    }
}

} // namespace
} // namespace corvane
