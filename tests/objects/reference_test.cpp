#include "objects/reference.h"

#include "runtime/budget.h"
#include "tests/runtime/zone_fixture.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace corvane {
namespace {

using ReferenceTest = ZoneTest;

ObjectPlace at(std::int32_t offset) {
    return ObjectPlace::atOffset(offset);
}

Object text(std::string_view bytes) {
    Object object;
    textualObject(object, ObjectType::text, bytes);
    return object;
}

TEST_F(ReferenceTest, AnswersWhatALinearListWould) {
    struct Entry {
        std::int32_t number;
        std::int32_t generation;
        std::int32_t tag;
    };
    std::mt19937 random(3); // NOLINT(cert-msc51-cpp): the same run each time
    const auto table = openReference();
    std::vector<Entry> list;
    const auto find = [&](std::int32_t number, std::int32_t generation) {
        return std::find_if(list.rbegin(), list.rend(), [&](const Entry& entry) {
            return entry.number == number && entry.generation == generation;
        });
    };
    for (std::int32_t tag = 0; tag < 6000; ++tag) {
        const auto number = static_cast<std::int32_t>(random() % 3000);
        const auto generation = static_cast<std::int32_t>(random() % 4 == 0 ? random() % 3 : 0);
        if (find(number, generation) == list.rend()) {
            list.push_back({number, generation, tag});
        }
        nodeReference(*table, number, generation, at(tag));
    }
    ASSERT_EQ(countReference(*table), static_cast<std::int32_t>(list.size()));
    for (std::int32_t number = -1; number <= 3000; ++number) {
        for (const std::int32_t generation : {-1, 0, 1, 2, 3}) {
            const auto node = findReference(*table, number, generation);
            const auto wanted = find(number, generation);
            ASSERT_EQ(static_cast<bool>(node), wanted != list.rend());
            if (node) {
                EXPECT_EQ(node->place(), at(wanted->tag));
                EXPECT_EQ(node->value.type, ObjectType::null);
            }
        }
    }
    auto wanted = list.rbegin();
    for (auto node = findReference(*table, wanted->number, wanted->generation); node;
         node = node->next, ++wanted) {
        ASSERT_EQ(node->place(), at(wanted->tag)); // newest first
    }
    EXPECT_EQ(wanted, list.rend());
}

TEST_F(ReferenceTest, ValuesAreOwnedAndReplaced) {
    auto table = openReference();
    nodeReference(*table, 3, 0, at(30));
    nodeReference(*table, 3, 1, at(31));
    nodeReference(*table, 4, 0, at(40));
    freeReference(*table, 5, 0, at(50));
    Object value;
    EXPECT_EQ(raisedBy([&] { getReference(*table, 5, 0, value); }), Exception::underflow);
    EXPECT_EQ(raisedBy([&] { putReference(*table, 5, 0, text("lost")); }), Exception::underflow);
    putReference(*table, 3, 0, text("same"));
    putReference(*table, 3, 1, text("first"));
    putReference(*table, 3, 1, text("second"));
    putReference(*table, 4, 0, text("same"));
    EXPECT_EQ(getReference(*table, 3, 1, value), at(31));
    EXPECT_EQ(textObject(value), "second");

    // A value put back by one who holds it too.
    retainObject(value);
    putReference(*table, 3, 1, value);
    EXPECT_EQ(textObject(value), "second");

    std::int32_t number = 0;
    std::int32_t generation = 9;
    ObjectOwner wanted(text("same"));
    disolveReference(*table, *wanted, number, generation);
    EXPECT_EQ(number, 4); // the newest
    EXPECT_EQ(generation, 0);
    wanted = ObjectOwner(text("lost"));
    EXPECT_EQ(raisedBy([&] { disolveReference(*table, *wanted, number, generation); }),
              Exception::underflow);

    flushReference(*table);
    EXPECT_EQ(getReference(*table, 4, 0, value), at(40));
    EXPECT_EQ(value.type, ObjectType::null);
    putReference(*table, 4, 0, text("freed with the table"));
}

TEST_F(ReferenceTest, PlacesOfBothKinds) {
    const auto table = openReference();
    const std::vector<ObjectPlace> places = {
        at(0), at(INT32_MAX), ObjectPlace::inStream(1, 0),
        ObjectPlace::inStream(budget::objectNumber, INT32_MAX)};
    for (std::int32_t i = 0; i < std::ssize(places); ++i) {
        const ObjectPlace place = places[static_cast<std::size_t>(i)];
        nodeReference(*table, i, 0, place);
        const auto node = findReference(*table, i, 0);
        EXPECT_EQ(node->place(), place);
        EXPECT_EQ(node->generation(), 0);
        for (const ObjectPlace other : places) {
            node->move(other);
            EXPECT_EQ(node->place(), other);
            EXPECT_EQ(node->generation(), 0);
        }
    }
    EXPECT_EQ(at(-1), at(INT32_MAX)); // outside of every file
    EXPECT_EQ(raisedBy([] { ObjectPlace::inStream(7, 1).offset(); }), Exception::structure);

    // Only objects of generation 0 stand in streams.
    const std::int32_t held = countReference(*table);
    nodeReference(*table, 9, 3, at(90));
    const auto later = findReference(*table, 9, 3);
    for (const Exception code :
         {raisedBy([] { ObjectPlace::inStream(0, 0); }),
          raisedBy([] { ObjectPlace::inStream(budget::objectNumber + 1, 0); }),
          raisedBy([] { ObjectPlace::inStream(1, -1); }),
          raisedBy([&] { later->move(ObjectPlace::inStream(1, 1)); }),
          raisedBy([&] { nodeReference(*table, 9, 4, ObjectPlace::inStream(1, 1)); })}) {
        EXPECT_EQ(code, Exception::structure);
    }
    EXPECT_EQ(later->generation(), 3);
    EXPECT_EQ(later->place(), at(90));
    EXPECT_EQ(countReference(*table), held + 1);
}

TEST_F(ReferenceTest, HostileNumbersCostLittle) {
    const std::int32_t before = FreeMem();
    const auto table = openReference();
    for (const std::int32_t number : {-1, INT32_MIN, budget::objectNumber + 1, INT32_MAX}) {
        EXPECT_EQ(raisedBy([&] { nodeReference(*table, number, 0, at(1)); }), Exception::structure);
    }
    nodeReference(*table, budget::objectNumber, 0, at(1));
    EXPECT_LT(before - FreeMem(), 100000);
    for (std::int32_t generation = 1; generation < 65536; ++generation) {
        nodeReference(*table, 7, generation, at(generation)); // one number, all generations
    }
    EXPECT_EQ(findReference(*table, 7, 65535)->place(), at(65535));
    EXPECT_EQ(countReference(*table), 65536);
}

TEST_F(ReferenceTest, EveryFailingAllocationLeavesAUsableTable) {
    EXPECT_GE(failEachAllocation([] {
                  const auto table = openReference();
                  Exception code = Exception::none;
                  for (std::int32_t number = 0; number < 3000; number += 100) {
                      const Exception failed = guarded([&] {
                          nodeReference(*table, number, 0, at(number));
                          nodeReference(*table, number, 1, at(number));
                      });
                      code = failed == Exception::none ? code : failed;
                  }
                  Object value;
                  EXPECT_EQ(getReference(*table, 2900, 1, value), at(2900));
                  raiseException(code);
              }),
              8);
    const std::int64_t held = FreeMem();
    ASSERT_TRUE(chargeZone(held));
    EXPECT_EQ(raisedBy([] { openReference(); }), Exception::io);
    dischargeZone(held);
}

} // namespace
} // namespace corvane
