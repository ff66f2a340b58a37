#include "objects/queue.h"

#include "tests/runtime/zone_fixture.h"

#include <gtest/gtest.h>

#include <string>

namespace corvane {
namespace {

using QueueTest = ZoneTest;

Object text(std::string_view bytes) {
    Object object;
    textualObject(object, ObjectType::text, bytes);
    return object;
}

TEST_F(QueueTest, FirstInFirstOutAndTheFirstOfANameStays) {
    const Ref<Queue> queue = openQueue();
    std::string name;
    Object object;
    EXPECT_FALSE(deQueue(queue, name, object));
    for (const std::string word : {"one", "two", "one"}) {
        const ObjectOwner value(text(word + std::to_string(zoneBlocksInUse())));
        const Ref<QueueNode> node = enQueue(queue, word, *value);
        EXPECT_EQ(node->name, word);
    }
    ASSERT_TRUE(deQueue(queue, name, object));
    const ObjectOwner first(object);
    EXPECT_EQ(name, "one");
    EXPECT_EQ(textObject(*first), "one1");
    ASSERT_TRUE(deQueue(queue, name, object));
    const ObjectOwner second(object);
    EXPECT_EQ(name, "two");
    EXPECT_FALSE(deQueue(queue, name, object));
    enQueue(queue, "three", *second); // after it ran empty
    EXPECT_EQ(raisedBy([&] { enQueue(queue, std::string(256, 'n'), *second); }), Exception::range);
    enQueue(queue, std::string(255, 'n'), *second);
    closeQueue(queue); // with all that is in it
}

TEST_F(QueueTest, EveryFailingAllocationLeavesTheQueue) {
    const ObjectOwner value(text("value"));
    EXPECT_GE(failEachAllocation([&] {
                  const Ref<Queue> queue = openQueue();
                  const Exception code = guarded([&] {
                      enQueue(queue, "a", *value);
                      enQueue(queue, "b", *value);
                  });
                  closeQueue(queue);
                  raiseException(code);
              }),
              5);
}

} // namespace
} // namespace corvane
