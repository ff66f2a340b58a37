#include "output/xref.h"

#include "output/primitives.h"
#include "tests/runtime/zone_fixture.h"
#include "tests/support/keeper_filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace corvane {
namespace {

class XRefTest : public ZoneTest {
protected:
    void SetUp() override {
        ZoneTest::SetUp();
        openXRef();
    }
    void TearDown() override {
        closeXRef();
        ZoneTest::TearDown();
    }

    static std::vector<std::pair<int, int>> order() {
        std::vector<std::pair<int, int>> entries;
        forallXRef(
            [&](const XRefEntry& entry) { entries.emplace_back(entry.number, entry.generation); });
        return entries;
    }

    test::KeeperFilter keeper_;
};

using Entries = std::vector<std::pair<int, int>>;

TEST_F(XRefTest, PrimitivesWriteTheirForms) {
    stringOutput(keeper_, "xref\r");
    integerOutput(keeper_, -7);
    integerOutput(keeper_, INT32_MIN);
    paddedOutput(keeper_, 1234, 10);
    stringOutput(keeper_, "\r");
    paddedOutput(keeper_, 123456, 5);
    paddedOutput(keeper_, 0, 5);
    paddedOutput(keeper_, 9, 0);
    EXPECT_EQ(keeper_.text, "xref\n-7 -2147483648 0000001234\n2345600000");
    keeper_.text.clear();
    paddedOutput(keeper_, INT32_MAX, 255);
    EXPECT_EQ(keeper_.text, std::string(245, '0') + "2147483647");
    for (const auto& [value, width] : Entries{{1, -1}, {1, 256}, {-1, 5}}) {
        EXPECT_EQ(raisedBy([&, v = value, w = width] { paddedOutput(keeper_, v, w); }),
                  Exception::type);
    }
}

TEST_F(XRefTest, LongTextIsWrittenWholeAndShortWritesRaise) {
    std::string text;
    std::string wanted;
    for (int line = 0; line < 300; ++line) {
        text += "line " + std::to_string(line) + "\r";
        wanted += "line " + std::to_string(line) + "\n";
    }
    stringOutput(keeper_, text);
    EXPECT_EQ(keeper_.text, wanted);
    keeper_.room = static_cast<std::int32_t>(keeper_.text.size()) + 3;
    EXPECT_EQ(raisedBy([&] { stringOutput(keeper_, "four"); }), Exception::io);
    EXPECT_EQ(keeper_.text, wanted + "fou");
}

TEST_F(XRefTest, EntriesAscendAndRememberTheMark) {
    for (const int number : {7, 3, 9, 3, 8, 1}) {
        stringOutput(keeper_, "0123456789");
        touchXRef(keeper_, number, 0);
    }
    std::vector<std::pair<int, int>> offsets;
    forallXRef([&](const XRefEntry& entry) { offsets.emplace_back(entry.number, entry.offset); });
    EXPECT_EQ(offsets, (Entries{{1, 60}, {3, 20}, {3, 40}, {7, 10}, {8, 50}, {9, 30}}));
    hoistXRef(4711);
    EXPECT_EQ(weighXRef(), 4711);
    closeXRef();
    EXPECT_EQ(weighXRef(), 0);
    EXPECT_TRUE(order().empty());
    touchXRef(keeper_, 2, 0); // after a close nothing of the former list counts
    EXPECT_EQ(order(), (Entries{{2, 0}}));
}

TEST_F(XRefTest, GenerationsCountInTheOriginalProfileOnly) {
    const Entries touched{{5, 0}, {9, 2}, {4, 1}, {6, 3}, {7, 1}, {2, 0}};
    const auto touchAll = [&] {
        openXRef();
        for (const auto& [number, generation] : touched) {
            touchXRef(keeper_, number, generation);
        }
        return order();
    };
    // 4,1 passes 5,0 and stops at 9,2; 6,3 passes all; 7,1 stops at 9,2; 2,0 stops at once.
    EXPECT_EQ(touchAll(), (Entries{{2, 0}, {5, 0}, {4, 1}, {7, 1}, {9, 2}, {6, 3}}));
    selectRules(Profile::extended);
    EXPECT_EQ(touchAll(), (Entries{{2, 0}, {4, 1}, {5, 0}, {6, 3}, {7, 1}, {9, 2}}));
}

TEST_F(XRefTest, AnEntryIsASubsectionOfTwentyBytes) {
    entryXRef(keeper_, 12, 0x10003, 4567);
    EXPECT_EQ(keeper_.text, "12 1 \n0000004567 00003 n \n");
}

TEST_F(XRefTest, NoMemoryIsInputOutput) {
    const std::int64_t held = FreeMem();
    ASSERT_TRUE(chargeZone(held));
    EXPECT_EQ(raisedBy([&] { touchXRef(keeper_, 1, 0); }), Exception::io);
    dischargeZone(held);
    EXPECT_TRUE(order().empty());
}

} // namespace
} // namespace corvane
