// Queues of named objects, first in, first out. Names are few: they are searched one by one.
#pragma once

#include "objects/object.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace corvane {

/// Longest name, in bytes.
inline constexpr std::size_t queueNameLimit = 255;

struct QueueNode {
    Ref<QueueNode> next;
    char name[queueNameLimit + 1] = {}; ///< zero-terminated
    Object object;
};
static_assert(sizeof(QueueNode) == 268);

struct Queue {
    Ref<QueueNode> first;
    Ref<QueueNode> last;
};
static_assert(sizeof(Queue) == 8);

Ref<Queue> openQueue();
/// Appends a clone of `object`, unless there is one of this name: that node is returned then, as it
/// is. A longer name raises `range`, a full zone `memory`; the queue is then as it was.
Ref<QueueNode> enQueue(Ref<Queue> queue, std::string_view name, const Object& object);
/// Takes the first node off and hands its name and object to the caller. False where there is none.
bool deQueue(Ref<Queue> queue, std::string& name, Object& object);
/// Frees nodes, objects and queue; null is ignored.
void closeQueue(Ref<Queue> queue);

} // namespace corvane
