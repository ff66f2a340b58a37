// A fresh zone for each test, which must be empty again at the end of it.
#pragma once

#include "host/memory.h"
#include "host/zone.h"
#include "objects/stack.h"
#include "runtime/exception.h"
#include "runtime/rules.h"
#include "runtime/warning.h"
#include "toolbox/state.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>

namespace corvane {

/// The code that `body` raises, or `none`; nothing is left pending.
template <class Body>
Exception raisedBy(Body&& body) {
    guarded(std::forward<Body>(body));
    return resetException();
}

class ZoneTest : public ::testing::Test {
protected:
    void SetUp() override { selectRules(Profile::original); }

    void TearDown() override {
        clearStack();
        closeStack();
        resetWarning();
        selectRules(Profile::original);
        EXPECT_EQ(resetException(), Exception::none);
        EXPECT_EQ(zoneBlocksInUse(), 0);
        EXPECT_EQ(zoneBytesCharged(), 0);
    }

    /// Runs `body` with its first, then only its second, ... allocation failing, until it succeeds.
    /// Each failure must be `memory` and leave the blocks that were there. How many there were.
    template <class Body>
    int failEachAllocation(Body body) {
        const std::int32_t blocks = zoneBlocksInUse();
        for (int nth = 1;; ++nth) {
            scope_.state().zone.failAllocation(nth);
            const Exception code = raisedBy(body);
            scope_.state().zone.failAllocation(0);
            if (code == Exception::none) {
                return nth - 1;
            }
            EXPECT_EQ(code, Exception::memory) << "allocation " << nth;
            EXPECT_EQ(zoneBlocksInUse(), blocks) << "allocation " << nth;
        }
    }

private:
    ToolboxScope scope_{std::int64_t{256} << 20};
};

} // namespace corvane
