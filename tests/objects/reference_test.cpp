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
        nodeReference(*table, number, generation, tag);
    }
    ASSERT_EQ(countReference(*table), static_cast<std::int32_t>(list.size()));
    for (std::int32_t number = -1; number <= 3000; ++number) {
        for (const std::int32_t generation : {-1, 0, 1, 2, 3}) {
            const auto node = findReference(*table, number, generation);
            const auto wanted = find(number, generation);
            ASSERT_EQ(static_cast<bool>(node), wanted != list.rend());
            if (node) {
                EXPECT_EQ(node->tag, wanted->tag);
                EXPECT_EQ(node->value.type, ObjectType::null);
            }
        }
    }
    auto wanted = list.rbegin();
    for (auto node = findReference(*table, wanted->number, wanted->generation); node;
         node = node->next, ++wanted) {
        ASSERT_EQ(node->tag, wanted->tag); // newest first
    }
    EXPECT_EQ(wanted, list.rend());
}

TEST_F(ReferenceTest, ValuesAreOwnedAndReplaced) {
    auto table = openReference();
    nodeReference(*table, 3, 0, 30);
    nodeReference(*table, 3, 1, 31);
    nodeReference(*table, 4, 0, 40);
    freeReference(*table, 5, 0, 50);
    Object value;
    EXPECT_EQ(raisedBy([&] { getReference(*table, 5, 0, value); }), Exception::underflow);
    EXPECT_EQ(raisedBy([&] { putReference(*table, 5, 0, text("lost")); }), Exception::underflow);
    putReference(*table, 3, 0, text("same"));
    putReference(*table, 3, 1, text("first"));
    putReference(*table, 3, 1, text("second"));
    putReference(*table, 4, 0, text("same"));
    EXPECT_EQ(getReference(*table, 3, 1, value), 31);
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
    EXPECT_EQ(getReference(*table, 4, 0, value), 40);
    EXPECT_EQ(value.type, ObjectType::null);
    putReference(*table, 4, 0, text("freed with the table"));
}

TEST_F(ReferenceTest, HostileNumbersCostLittle) {
    const std::int32_t before = FreeMem();
    const auto table = openReference();
    for (const std::int32_t number : {-1, INT32_MIN, budget::objectNumber + 1, INT32_MAX}) {
        EXPECT_EQ(raisedBy([&] { nodeReference(*table, number, 0, 1); }), Exception::structure);
    }
    nodeReference(*table, budget::objectNumber, 0, 1);
    EXPECT_LT(before - FreeMem(), 100000);
    for (std::int32_t generation = 1; generation < 65536; ++generation) {
        nodeReference(*table, 7, generation, generation); // one number, all generations
    }
    EXPECT_EQ(findReference(*table, 7, 65535)->tag, 65535);
    EXPECT_EQ(countReference(*table), 65536);
}

TEST_F(ReferenceTest, EveryFailingAllocationLeavesAUsableTable) {
    EXPECT_GE(failEachAllocation([] {
                  const auto table = openReference();
                  Exception code = Exception::none;
                  for (std::int32_t number = 0; number < 3000; number += 100) {
                      const Exception failed = guarded([&] {
                          nodeReference(*table, number, 0, number);
                          nodeReference(*table, number, 1, number);
                      });
                      code = failed == Exception::none ? code : failed;
                  }
                  Object value;
                  EXPECT_EQ(getReference(*table, 2900, 1, value), 2900);
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
