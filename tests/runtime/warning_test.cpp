#include "runtime/warning.h"

#include "tests/runtime/zone_fixture.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using WarningTest = ZoneTest;

TEST_F(WarningTest, EachCodeIsKeptOnceAndPoppedNewestFirst) {
    EXPECT_EQ(raiseWarning(Warning::type3Font), Warning::type3Font);
    EXPECT_EQ(raiseWarning(Warning::tracking), Warning::tracking);
    EXPECT_EQ(raiseWarning(Warning::type3Font), Warning::none);
    EXPECT_EQ(valueWarning(), Warning::tracking);
    EXPECT_EQ(popWarning(), Warning::tracking);
    EXPECT_EQ(valueWarning(), Warning::type3Font);
    EXPECT_FALSE(duplicateWarning(Warning::tracking));
    EXPECT_EQ(popWarning(), Warning::type3Font);
    EXPECT_EQ(valueWarning(), Warning::none);
    EXPECT_EQ(popWarning(), Warning::none);
}

TEST_F(WarningTest, ReadingEndsAtOneThousand) {
    raiseWarning(Warning{1000});
    EXPECT_TRUE(isImportWarning());
    raiseWarning(Warning::unknownArt);
    EXPECT_FALSE(isImportWarning());
    EXPECT_EQ(resetWarning(), Warning::unknownArt);
    EXPECT_TRUE(isImportWarning());
    EXPECT_EQ(popWarning(), Warning::none);
}

TEST_F(WarningTest, SixtyFifthIsCurrentAndRaisesButIsNotCounted) {
    for (std::int16_t code = 1; code <= 64; ++code) {
        EXPECT_EQ(raisedBy([code] { raiseWarning(Warning{code}); }), Exception::none);
    }
    for (std::int16_t code = 65; code <= 66; ++code) {
        EXPECT_EQ(raisedBy([code] { raiseWarning(Warning{code}); }), Exception::limit);
        EXPECT_EQ(valueWarning(), Warning{code});
        EXPECT_FALSE(duplicateWarning(Warning{code}));
    }
    EXPECT_EQ(popWarning(), Warning{64});
    EXPECT_EQ(valueWarning(), Warning{63});
}

} // namespace
} // namespace corvane
