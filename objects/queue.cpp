#include "objects/queue.h"

#include "objects/storage.h"
#include "runtime/exception.h"
#include "runtime/memory.h"
#include "runtime/string.h"

#include <utility>

namespace corvane {

Ref<Queue> openQueue() {
    return allocateRecord<Queue>();
}

Ref<QueueNode> enQueue(Ref<Queue> queue, std::string_view name, const Object& object) {
    name = viewString(name);
    Ref<QueueNode>* link = &queue->first;
    for (; *link; link = &(*link)->next) {
        const QueueNode& node = **link;
        if (name == viewString(node.name)) {
            return *link;
        }
    }
    if (name.size() > queueNameLimit) {
        failException(Exception::range);
    }
    ObjectOwner clone;
    cloneObject(*clone, object);
    QueueNode made;
    name.copy(made.name, queueNameLimit);
    const auto node = allocateRecord<QueueNode>();
    made.object = clone.release();
    *node = made;
    *link = node;
    queue->last = node;
    return node;
}

bool deQueue(Ref<Queue> queue, std::string& name, Object& object) {
    const Ref<QueueNode> node = queue->first;
    if (!node) {
        return false;
    }
    name = node->name;
    object = node->object;
    queue->first = node->next;
    if (!queue->first) {
        queue->last = {};
    }
    freeRecord(node);
    return true;
}

void closeQueue(Ref<Queue> queue) {
    if (!queue) {
        return;
    }
    Ref<QueueNode> node = queue->first;
    while (node) {
        detail::dropObject(node->object);
        freeRecord(std::exchange(node, node->next));
    }
    freeRecord(queue);
}

} // namespace corvane
