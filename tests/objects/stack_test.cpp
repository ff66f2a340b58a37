#include "objects/stack.h"

#include "runtime/memory.h"
#include "tests/runtime/zone_fixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace corvane {
namespace {

using StackTest = ZoneTest;

TEST_F(StackTest, FullAndEmpty) {
    EXPECT_EQ(raisedBy([] { popStack(); }), Exception::underflow);
    for (std::int32_t i = 1; i <= 1024; ++i) {
        ASSERT_EQ(pushStack({ObjectType::integer, 0, static_cast<std::uint32_t>(i)}), i);
    }
    EXPECT_EQ(raisedBy([] { pushText("freed"); }), Exception::overflow);
    EXPECT_EQ(countStack(), 1024);
    EXPECT_EQ(popInteger(), 1024);
    clearStack(3);
    EXPECT_EQ(popInteger(), 3);
}

TEST_F(StackTest, ExtendedProfileGrowsToItsOwnLimit) {
    selectRules(Profile::extended);
    const std::int32_t limit = rules().stackLimit;
    for (std::int32_t i = 0; i < limit; ++i) {
        pushExactInteger(i, i + 0.25);
    }
    EXPECT_EQ(raisedBy([] { pushInteger(0); }), Exception::overflow);
    for (std::int32_t i = limit; i-- > 0;) {
        ASSERT_EQ(popNumber(), i + 0.25);
    }
    selectRules(Profile::original);
    pushExactInteger(1, 1.25);
    EXPECT_EQ(popNumber(), 1.0);
    for (std::int32_t i = 0; i < 1024; ++i) {
        pushInteger(i);
    }
    EXPECT_EQ(raisedBy([] { pushInteger(0); }), Exception::overflow);
}

TEST_F(StackTest, NoRoomLeavesTheStackAsItWas) {
    selectRules(Profile::extended);
    const std::int32_t room = 60000;
    const std::int64_t held = FreeMem() - room;
    ASSERT_TRUE(chargeZone(held));
    EXPECT_EQ(raisedBy([] {
                  for (;;) {
                      pushFixed(5);
                  }
              }),
              Exception::memory);
    EXPECT_EQ(countStack(), 2048); // 16 bytes each
    EXPECT_EQ(raisedBy([] { pushText("freed"); }), Exception::memory);
    dischargeZone(held);
    pushFixed(6);
    EXPECT_EQ(popFixed(), 6);
    EXPECT_EQ(popFixed(), 5);
}

TEST_F(StackTest, PlacesBelowTheTop) {
    pushInteger(10);
    pushInteger(20);
    EXPECT_EQ(indexStack(0).data, 20U);
    EXPECT_EQ(indexStack(1).data, 10U);
    EXPECT_EQ(raisedBy([] { indexStack(2); }), Exception::underflow);
    EXPECT_EQ(raisedBy([] { indexStack(-1); }), Exception::overflow);
    EXPECT_EQ(countStack(), 2);
}

TEST_F(StackTest, NearestMarkMustBeOfTheKind) {
    EXPECT_EQ(raisedBy([] { countToMark(Mark::array); }), Exception::mark);
    pushMark(Mark::array);
    pushInteger(1);
    pushInteger(2);
    EXPECT_EQ(countToMark(Mark::array), 2);
    pushMark(Mark::dictionary);
    EXPECT_EQ(countToMark(Mark::dictionary), 0);
    EXPECT_EQ(raisedBy([] { countToMark(Mark::array); }), Exception::mark);
}

TEST_F(StackTest, SignatureLettersTakeTheirTypes) {
    struct Row {
        std::string_view letters;
        ObjectType type;
    };
    const std::vector<Row> rows{
        {"?z", ObjectType::empty},      {"?n", ObjectType::null},     {"?", ObjectType::mark},
        {"?b", ObjectType::boolean},    {"?xi", ObjectType::integer}, {"?xf", ObjectType::fixed},
        {"?r", ObjectType::reference},  {"?l", ObjectType::literal},  {"?t", ObjectType::text},
        {"?", ObjectType::block},       {"?a", ObjectType::array},    {"?p", ObjectType::procedure},
        {"?d", ObjectType::dictionary}, {"?s", ObjectType::stream},   {"?", ObjectType::reserved},
        {"?", ObjectType{15}},          {"?", ObjectType{-1}},
    };
    const std::string_view all = "?xnbifrltapdsz";
    for (const Row& row : rows) {
        pushStack({row.type, 0, 0});
        for (const char letter : all) {
            const bool taken = row.letters.find(letter) != std::string_view::npos;
            EXPECT_EQ(raisedBy([&] {
                          checkStack({&letter, 1});
                      }),
                      taken ? Exception::none : Exception::range)
                << letter << " for " << static_cast<int>(row.type);
        }
        emptyStack();
    }
    selectRules(Profile::extended);
    pushStack({ObjectType::block, 0, 0});
    EXPECT_EQ(raisedBy([] { checkStack("t"); }), Exception::none);
    emptyStack();
}

TEST_F(StackTest, SignaturesReadTheDeepestOperandFirst) {
    EXPECT_EQ(raisedBy([] { checkStack("?"); }), Exception::underflow);
    pushText("below");
    pushInteger(1);
    pushFixed(2);
    pushBoolean(1);
    EXPECT_EQ(raisedBy([] { checkStack("xxb"); }), Exception::none);
    EXPECT_EQ(raisedBy([] { checkStack("ifb"); }), Exception::none);
    EXPECT_EQ(raisedBy([] { checkStack("fib"); }), Exception::range);
    EXPECT_EQ(raisedBy([] { checkStack("?????"); }), Exception::underflow);
    EXPECT_EQ(countStack(), 4);
}

TEST_F(StackTest, RecordsComeBackFromTheirOrder) {
    const Matrix matrix{1, 2, 3, 4, 5, 6};
    pushMatrix(matrix);
    EXPECT_EQ(popMatrix(), matrix);
    pushPoint({7, 8});
    EXPECT_EQ(popPoint(), (Point{7, 8}));
    // Pushed in the record's order, popped in that of a PDF rectangle.
    pushRect({.left = 1, .top = 2, .right = 3, .bottom = 4});
    EXPECT_EQ(popRect(), (Rect{.left = 1, .top = 4, .right = 3, .bottom = 2}));
    pushInteger(3);
    EXPECT_EQ(popExtend(), 196608);
    EXPECT_EQ(raisedBy([] { pushBoolean(2); }), Exception::type);
    EXPECT_EQ(countStack(), 0);
}

TEST_F(StackTest, WrongTypesArePoppedAndFreed) {
    for (auto pop :
         {+[] { popInteger(); }, +[] { popFixed(); }, +[] { popExtend(); }, +[] { popBoolean(); },
          +[] { popMark(); }, +[] { popNumber(); }, +[] { popText(); }}) {
        pushLiteral("not that");
        EXPECT_EQ(raisedBy(pop), Exception::range);
        EXPECT_EQ(countStack(), 0);
    }
    EXPECT_EQ(zoneBlocksInUse(), 0);
    pushLiteral("name");
    EXPECT_EQ(literalObject(popLiteral().get()), "name");
    pushText("text");
    EXPECT_EQ(raisedBy([] { popLiteral(); }), Exception::range);
    std::int32_t number = 0;
    std::int32_t generation = 0;
    Object reference;
    indirectObject(reference, 12, 1);
    pushStack(reference);
    popReference(number, generation, false); // still ours
    pushStack(reference);
    popReference(number, generation);
    EXPECT_EQ(number, 12);
    EXPECT_EQ(generation, 1);
}

TEST_F(StackTest, ExactValuesFollowTheirPlace) {
    selectRules(Profile::extended);
    pushReal(0, 0.000001);
    pushReal(INT32_MAX, 61200.25);
    pushExactInteger(INT32_MAX, 5e9);
    EXPECT_EQ(popNumber(), 5e9);
    const RealPoint point = popRealPoint();
    EXPECT_EQ(point.x, 0.000001);
    EXPECT_EQ(point.y, 61200.25);

    pushReal(fixedOne, 1.00000001);
    popStack();
    pushInteger(70000); // nothing is left of the former value
    EXPECT_EQ(popNumber(), 70000.0);
}

TEST_F(StackTest, GuardRestoresTheDepth) {
    pushInteger(1);
    EXPECT_EQ(raisedBy([] {
                  const StackGuard guard;
                  pushText("a");
                  pushStack({ObjectType::reserved, 0, 0});
                  pushText("b");
                  raiseException(Exception::io);
              }),
              Exception::io);
    EXPECT_EQ(countStack(), 1);
    // Clearing goes on past what cannot be freed.
    pushText("a");
    pushStack({ObjectType::reserved, 0, 0});
    EXPECT_EQ(raisedBy([] { clearStack(); }), Exception::type);
    EXPECT_EQ(countStack(), 0);
}

TEST_F(StackTest, AFloorHidesWhatIsBelow) {
    for (const Profile profile : {Profile::original, Profile::extended}) {
        closeStack();
        selectRules(profile);
        pushInteger(7);
        pushText("below");
        {
            const StackFloor floor;
            EXPECT_EQ(countStack(), 0);
            EXPECT_EQ(raisedBy([] { popStack(); }), Exception::underflow);
            EXPECT_EQ(raisedBy([] { checkStack("t"); }), Exception::underflow);
            clearStack();
            for (std::int32_t i = 0; i < 3000 && profile == Profile::extended; ++i) {
                pushInteger(i); // the storage moves
            }
            const StackFloor inner;
            pushText("left behind");
        }
        EXPECT_EQ(countStack(), 2);
        EXPECT_EQ(textObject(popText().get()), "below");
        EXPECT_EQ(popInteger(), 7);
    }
}

} // namespace
} // namespace corvane
