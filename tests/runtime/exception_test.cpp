#include "runtime/exception.h"

#include "host/zone.h"
#include "tests/runtime/zone_fixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace corvane {
namespace {

using ExceptionTest = ZoneTest;

TEST_F(ExceptionTest, NothingPendingRaisesNothing) {
    EXPECT_EQ(guarded([] {
                  EXPECT_EQ(raiseException(Exception::none), 0);
                  EXPECT_EQ(againException(), 0);
              }),
              Exception::none);
}

TEST_F(ExceptionTest, OutsideGuardedBlocksTheRaiserCarriesOn) {
    EXPECT_EQ(raiseException(Exception::io), 10);
    EXPECT_EQ(againException(), 10);
    EXPECT_EQ(valueException(), Exception::io);
    EXPECT_EQ(raiseException(Exception::none), 0); // leaves the code pending
    EXPECT_EQ(resetException(), Exception::io);
    EXPECT_EQ(valueException(), Exception::none);
}

TEST_F(ExceptionTest, CodePassesOutwardThroughCleanUp) {
    std::vector<std::string> steps;
    const Exception code = guarded([&] {
        guarded([&] {
            raiseException(Exception::structure);
            steps.emplace_back("unreached");
        });
        steps.emplace_back("clean-up at depth " + std::to_string(handlerDepth()));
        againException();
        steps.emplace_back("unreached");
    });
    EXPECT_EQ(code, Exception::structure);
    EXPECT_EQ(steps, std::vector<std::string>{"clean-up at depth 1"});
    EXPECT_EQ(handlerDepth(), 0);
    EXPECT_EQ(resetException(), Exception::structure);
}

TEST_F(ExceptionTest, LibraryFailuresAreMemory) {
    EXPECT_EQ(raisedBy([] { throw std::bad_alloc(); }), Exception::memory);
    EXPECT_EQ(raisedBy([] { std::string().resize(std::string::npos); }), Exception::memory);
}

/// Opens blocks inside one another down to `wanted`; the depth of the block that caught.
int nestTo(int wanted) {
    int caught = 0;
    const Exception code = guarded([&] {
        if (handlerDepth() < wanted) {
            caught = nestTo(wanted);
        }
    });
    if (code != Exception::none) {
        EXPECT_EQ(resetException(), Exception::limit);
        return handlerDepth() + 1;
    }
    return caught;
}

TEST_F(ExceptionTest, ThirtyThirdBlockRaisesInTheOneAround) {
    EXPECT_EQ(nestTo(handlerLimit), 0);
    EXPECT_EQ(nestTo(handlerLimit + 1), handlerLimit);
    EXPECT_EQ(handlerDepth(), 0);
    EXPECT_EQ(nestTo(handlerLimit), 0);
}

TEST_F(ExceptionTest, ReserveOfTheZoneIsWatched) {
    const std::int64_t held = FreeMem() - 16384;
    ASSERT_TRUE(chargeZone(held));
    EXPECT_EQ(raisedBy([] { EXPECT_EQ(memoryException(), 0); }), Exception::none);
    ASSERT_TRUE(chargeZone(1));
    EXPECT_EQ(raisedBy([] { memoryException(); }), Exception::memory);
    dischargeZone(held + 1);
}

} // namespace
} // namespace corvane
