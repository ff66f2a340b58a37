#include "objects/real_object.h"

#include "runtime/fixed.h"
#include "tests/runtime/zone_fixture.h"

#include <cmath>

namespace corvane {
namespace {

using RealObjectTest = ZoneTest;

TEST_F(RealObjectTest, KeepsMoreThan16_16) {
    struct Row {
        double value;
        Fixed fixed; ///< of the same number as 16.16
    };
    for (const Row& row : {Row{0, 0}, Row{.00198, 130}, Row{-.00198, -130}, Row{1.0 / 3, 21845},
                           Row{32767.123456, 2147426203}, Row{-32767.123456, -2147426203},
                           Row{.5 / 65536, 1}, Row{-.5 / 65536, -1}, Row{1e-12, 0}}) {
        const Object object = objectOfReal(row.value);
        EXPECT_EQ(object.type, ObjectType::fixed) << row.value;
        EXPECT_EQ(fixedObject(object), row.fixed) << row.value;
        EXPECT_NEAR(realOfObject(object), row.value, 3.0 / 65536 / 65536);
        EXPECT_LT(sizeObject(object), 32767) << "it has no elements";
    }
}

TEST_F(RealObjectTest, WhatIsTooLargeLosesItsFraction) {
    for (const auto& [value, kept] : {std::pair(60000.75, 60000), std::pair(-1e6, -1000000),
                                      std::pair(1e300, INT32_MAX), std::pair(-1e300, INT32_MIN)}) {
        const Object object = objectOfReal(value);
        EXPECT_EQ(object.type, ObjectType::integer) << value;
        EXPECT_EQ(realOfObject(object), kept);
    }
}

TEST_F(RealObjectTest, OtherObjectsAreNoNumbers) {
    Object object;
    shallowObject(object, ObjectType::boolean, 1);
    EXPECT_EQ(raisedBy([&] { realOfObject(object); }), Exception::range);
}

} // namespace
} // namespace corvane
