#include "runtime/callbacks.h"
#include "runtime/rules.h"
#include "tests/runtime/zone_fixture.h"

#include <gtest/gtest.h>

#include <vector>

namespace corvane {
namespace {

class CallbackTest : public ZoneTest {
protected:
    void SetUp() override {
        ZoneTest::SetUp();
        callbacks = table_.data();
    }
    void TearDown() override {
        callbacks = nullptr;
        ZoneTest::TearDown();
    }

    std::vector<HostProcedure> table_ = std::vector<HostProcedure>(slotCount);
};

TEST_F(CallbackTest, FailuresAndEmptySlotsRaiseHost) {
    fillSlot(table_, slot::disposeArt,
             [](Art art) { return art == Art::null ? HostError::failed : HostError::none; });
    EXPECT_EQ(raisedBy([] { callHost(slot::disposeArt, Art{1}); }), Exception::none);
    EXPECT_EQ(raisedBy([] { callHost(slot::disposeArt, Art::null); }), Exception::host);
    EXPECT_EQ(raisedBy([] { callHost(slot::redrawDocument); }), Exception::host);
    callbacks = nullptr;
    EXPECT_EQ(raisedBy([] { callHost(slot::disposeArt, Art{1}); }), Exception::host);
}

TEST_F(CallbackTest, OnlyTheLowByteOfAnAnswerCounts) {
    fillSlot(table_, slot::checkUserAbort, [] { return HostBoolean{0x100}; });
    EXPECT_FALSE(callHost(slot::checkUserAbort));
    fillSlot(table_, slot::checkUserAbort, [] { return HostBoolean{0x180}; });
    EXPECT_TRUE(callHost(slot::checkUserAbort));
}

TEST_F(CallbackTest, ProfileIsOriginalUntilToldOtherwise) {
    EXPECT_EQ(rules().stackLimit, 1024);
    selectRules(Profile::extended);
    EXPECT_EQ(rules().stackLimit, 1 << 20);
    EXPECT_EQ(rules().profile, Profile::extended);
}

} // namespace
} // namespace corvane
