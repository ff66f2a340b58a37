#include "host/matrix.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

constexpr RealMatrix sheared{2, 1, -1, 3, 10, -20};

TEST(Matrix, ProductIsOneAfterTheOtherAndInverseUndoesIt) {
    const RealMatrix moved{0.1, 0, 0, 4, -1e6, 7};
    const RealPoint both = transform(multiply(moved, sheared), {3, 5});
    const RealPoint steps = transform(sheared, transform(moved, {3, 5}));
    EXPECT_NEAR(both.x, steps.x, 1e-6);
    EXPECT_NEAR(both.y, steps.y, 1e-6);
    EXPECT_EQ(multiply(RealMatrix{0.1, 0, 0, 0.1, 0, 0}, {1, 0, 0, 1, -1e9, 1e9}).a, 0.1);
    const RealPoint back = transform(*inverse(sheared), transform(sheared, {3, 5}));
    EXPECT_NEAR(back.x, 3, 1e-12);
    EXPECT_NEAR(back.y, 5, 1e-12);
    for (const RealMatrix& flat : {RealMatrix{1, 2, 2, 4, 0, 0}, RealMatrix{0, 0, 0, 0, 1, 1},
                                   RealMatrix{1e-300, 0, 0, 1e-300, 0, 0}}) {
        EXPECT_FALSE(inverse(flat).has_value());
    }
}

TEST(Matrix, Stretches) {
    EXPECT_NEAR(meanStretch(sheared), 2.6457513, 1e-6);
    EXPECT_NEAR(largestStretch({0, 3, -2, 0, 5, 5}), 3, 1e-12);
    EXPECT_NEAR(largestStretch({1, 0, 1, 1, 0, 0}), 1.6180340, 1e-6);
}

} // namespace
} // namespace corvane
