// Fixed-point, matrix and rectangle slots.
#include "app/artwork/geometry/arithmetic.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace corvane {
namespace {

constexpr Fixed most = std::numeric_limits<Fixed>::max();
constexpr Fixed least = std::numeric_limits<Fixed>::min();

constexpr Fixed whole(int number) {
    return number * fixedOne;
}

TEST(Arithmetic, productsAndQuotientsAreTheNearest) {
    struct Row {
        Fixed left;
        Fixed right;
        Fixed product;
        Fixed quotient;
    };
    constexpr Row rows[] = {
        {whole(3), whole(2), whole(6), 0x18000},
        {whole(-3), whole(2), whole(-6), -0x18000},
        {1, 0x8000, 1, 2},
        {-1, 0x8000, -1, -2},
        {1, 0x7FFF, 0, 2},
        {1, whole(3), 3, 0},
        {2, whole(3), 6, 1},
        {-2, whole(3), -6, -1},
        {whole(1), 0, 0, most},
        {whole(-1), 0, 0, least},
        {0, whole(-5), 0, 0},
        {most, most, most, fixedOne},
        {least, least, most, fixedOne},
        {least, most, least, -fixedOne},
        {least, 1, -32768, least},
        {least, -1, 32768, most},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(answer::fixedMultiply(row.left, row.right), row.product)
            << row.left << " x " << row.right;
        EXPECT_EQ(answer::fixedDivide(row.left, row.right), row.quotient)
            << row.left << " / " << row.right;
    }
    std::mt19937 random(5);
    for (int i = 0; i < 100'000; ++i) {
        const auto left = static_cast<Fixed>(random());
        const auto right = static_cast<Fixed>(random() >> random() % 32);
        // A product of two 32-bit numbers is exact in a long double of 64 bits.
        const long double product = static_cast<long double>(left) * right / fixedOne;
        if (std::abs(product) < most) {
            ASSERT_EQ(answer::fixedMultiply(left, right), std::round(product));
        }
        const long double quotient = static_cast<long double>(left) * fixedOne / right;
        if (right != 0 && std::abs(quotient) < most) {
            ASSERT_EQ(answer::fixedDivide(left, right), std::round(quotient));
        }
    }
}

TEST(Matrices, rightAnglesTurnExactlyAndCounterClockwise) {
    struct Row {
        int degrees;
        Matrix matrix;
    };
    constexpr Fixed one = fixedOne;
    constexpr Row rows[] = {
        {0, {one, 0, 0, one, 0, 0}},      {90, {0, one, -one, 0, 0, 0}},
        {180, {-one, 0, 0, -one, 0, 0}},  {270, {0, -one, one, 0, 0, 0}},
        {360, {one, 0, 0, one, 0, 0}},    {-90, {0, -one, one, 0, 0, 0}},
        {-180, {-one, 0, 0, -one, 0, 0}}, {450, {0, one, -one, 0, 0, 0}},
        {32400, {one, 0, 0, one, 0, 0}},  {-32670, {0, one, -one, 0, 0, 0}},
    };
    for (const Row& row : rows) {
        Matrix matrix;
        answer::rotateMatrix(&matrix, answer::degreesToAngle(whole(row.degrees)));
        EXPECT_EQ(matrix, row.matrix) << row.degrees;
    }
    Matrix matrix;
    answer::rotateMatrix(&matrix, answer::degreesToAngle(whole(30)));
    EXPECT_EQ(matrix, (Matrix{56756, 32768, -32768, 56756, 0, 0}));
}

TEST(Matrices, stepsApplyAfterWhatIsThere) {
    // A page of 200 by 100 points, turned about its centre.
    Matrix page;
    answer::translateMatrix(&page, whole(-100), whole(-50));
    answer::rotateMatrix(&page, answer::degreesToAngle(whole(-90)));
    answer::translateMatrix(&page, whole(100), whole(50));
    const Point corner{0, 0};
    Point turned;
    answer::transformPoint(&page, &corner, &turned);
    EXPECT_EQ(turned, (Point{whole(50), whole(150)}));
    Point centre{whole(100), whole(50)};
    answer::transformPoint(&page, &centre, &centre);
    EXPECT_EQ(centre, (Point{whole(100), whole(50)}));

    Matrix moved;
    answer::setMatrixTranslation(&moved, whole(3), whole(4));
    answer::scaleMatrix(&moved, whole(2), whole(-1));
    EXPECT_EQ(moved, (Matrix{whole(2), 0, 0, whole(-1), whole(6), whole(-4)}));
}

TEST(Matrices, productsFollowTheOrderOfTheirFactors) {
    const Matrix first{whole(1), whole(2), whole(3), whole(4), whole(5), whole(6)};
    const Matrix second{whole(7), whole(8), whole(9), whole(10), whole(11), whole(12)};
    const Matrix wanted{whole(25), whole(28), whole(57), whole(64), whole(100), whole(112)};
    Matrix result;
    answer::multiplyMatrix(&first, &second, &result);
    EXPECT_EQ(result, wanted);
    result = first;
    answer::multiplyMatrix(&result, &second, &result);
    EXPECT_EQ(result, wanted);
    result = second;
    answer::multiplyMatrix(&first, &result, &result);
    EXPECT_EQ(result, wanted);
}

TEST(Matrices, whatIsTooLargeSaturates) {
    const Matrix huge{least, most, least, most, least, most};
    const Point far{least, least};
    Point result;
    answer::transformPoint(&huge, &far, &result);
    EXPECT_EQ(result, (Point{most, least}));
    Matrix matrix = huge;
    answer::translateMatrix(&matrix, whole(-1), whole(1));
    EXPECT_EQ(matrix, huge);
    // Large terms that cancel do not saturate on the way.
    const Matrix skew{whole(30000), 0, whole(-30000), 0, 7, 0};
    const Point equal{whole(30000), whole(30000)};
    answer::transformPoint(&skew, &equal, &result);
    EXPECT_EQ(result, (Point{7, 0}));
}

TEST(Rectangles, meetOrAreEmpty) {
    Rect big;
    answer::setRect(&big, 0, 100, 200, 0);
    EXPECT_EQ(big, (Rect{.left = 0, .top = 100, .right = 200, .bottom = 0}));
    const Rect other{150, 300, 400, 50};
    Rect shared;
    answer::sectRect(&big, &other, &shared);
    EXPECT_EQ(shared, (Rect{150, 100, 200, 50}));
    const Rect beside{200, 100, 300, 0};
    answer::sectRect(&big, &beside, &big);
    EXPECT_EQ(big, Rect{});
    EXPECT_EQ(answer::rectEmpty(&big), HostBoolean::yes);
    EXPECT_EQ(answer::rectEmpty(&other), HostBoolean::no);
    const Rect upsideDown{0, 0, 10, 10};
    EXPECT_EQ(answer::rectEmpty(&upsideDown), HostBoolean::yes);
}

} // namespace
} // namespace corvane
