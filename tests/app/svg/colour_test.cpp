#include "app/svg/paint/colour.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <ostream>

namespace corvane {

void PrintTo(const ScreenColour& colour, std::ostream* out) {
    *out << int{colour.red} << ' ' << int{colour.green} << ' ' << int{colour.blue};
}

namespace {

Colour gray(Fixed black) {
    Colour colour;
    colour.component[0] = black;
    return colour;
}

Colour ink(double c, double m, double y, double k) {
    const auto amount = [](double value) { return static_cast<Fixed>(value * fixedOne); };
    return {ColourKind::process, {amount(c), amount(m), amount(y), amount(k)}, ColourOrigin::given};
}

TEST(Colour, GrayIsTheAmountOfBlackTurnedRound) {
    const struct {
        Fixed black;
        std::uint8_t level;
    } rows[] = {{0, 255},
                {fixedOne, 0},
                {fixedOne / 2, 128},
                {fixedOne / 5, 204},
                {-fixedOne, 255},
                {std::numeric_limits<Fixed>::max(), 0},
                {std::numeric_limits<Fixed>::min(), 255}};
    for (const auto& row : rows) {
        EXPECT_EQ(screenColour(gray(row.black)), (ScreenColour{row.level, row.level, row.level}));
    }
}

TEST(Colour, EveryScreenColourOfAnEditorComesBack) {
    for (int red = 0; red < 256; red += 5) {
        for (int green = 0; green < 256; green += 3) {
            for (int blue = 0; blue < 256; ++blue) {
                const ScreenColour screen{static_cast<std::uint8_t>(red),
                                          static_cast<std::uint8_t>(green),
                                          static_cast<std::uint8_t>(blue)};
                ASSERT_EQ(screenColour(plainColour(screen)), screen);
            }
        }
    }
    EXPECT_EQ(plainColour({9, 9, 9}).kind, ColourKind::gray);
    EXPECT_EQ(plainColour({9, 9, 8}).origin, ColourOrigin::fromRgb);
}

TEST(Colour, LevelsOfLightAreExactThroughProcessColour) {
    for (std::int64_t red = 0; red <= fixedOne; red += 1021) {
        for (std::int64_t blue = 0; blue <= fixedOne; blue += 4093) {
            const LightLevels levels = lightLevels(processColour({red, fixedOne - red / 3, blue}));
            ASSERT_EQ(levels.red, red);
            ASSERT_EQ(levels.green, fixedOne - red / 3);
            ASSERT_EQ(levels.blue, blue);
        }
    }
    const Colour black = processColour({0, 0, 0});
    EXPECT_EQ(black.component[0], fixedOne / 4);
    EXPECT_EQ(black.component[3], fixedOne / 4 * 3);
}

/// Colours that a widely used open-source PDF reader shows for the same amounts.
TEST(Colour, InkTakesAwayLight) {
    const struct {
        Colour colour;
        ScreenColour wanted;
    } rows[] = {
        {ink(0, 0, 0, 0), {255, 255, 255}},     {ink(1, 0, 0, 0), {0, 255, 255}},
        {ink(0, 1, 0, 0), {255, 0, 255}},       {ink(0, 0, 1, 0), {255, 255, 0}},
        {ink(0, 0, 0, 1), {0, 0, 0}},           {ink(0, 0, 0, .5), {128, 128, 128}},
        {ink(.25, .5, .75, 0), {191, 128, 64}}, {ink(.5, .25, 0, .25), {64, 128, 191}},
        {ink(.75, .75, 0, .5), {0, 0, 128}},    {ink(1.2, -3, 0, 0), {0, 255, 255}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(screenColour(row.colour), row.wanted);
    }
}

} // namespace
} // namespace corvane
