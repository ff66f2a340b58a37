#include "writer/update/listed_objects.h"

#include "output/xref.h"

#include <algorithm>
#include <iterator>

namespace corvane {

namespace {

/// Where the bytes of an object begin that is in the table, or those of its object stream.
std::int32_t offsetOf(const DocumentCache& cache, const ListedObject& object) {
    if (!object.place.isInStream()) {
        return object.place.offset();
    }
    const Ref<ReferenceNode> stream = findReference(*cache.references, object.place.stream(), 0);
    return stream && !stream->place().isInStream() ? stream->place().offset() : 0;
}

/// The last one of the free list.
ListedObject freeObject(std::int32_t number, std::int32_t generation) {
    return {number, generation, ObjectPlace::atOffset(0), true};
}

/// Keeps one object for each number, the last.
void keepLast(std::vector<ListedObject>& objects) {
    const auto rest = std::unique(objects.rbegin(), objects.rend(),
                                  [](const ListedObject& later, const ListedObject& earlier) {
                                      return later.number == earlier.number;
                                  });
    objects.erase(objects.begin(), rest.base());
}

} // namespace

std::vector<ListedObject> updatedObjects() {
    std::vector<ListedObject> objects;
    forallXRef([&](const XRefEntry& entry) {
        objects.push_back({entry.number, entry.generation, ObjectPlace::atOffset(entry.offset)});
    });
    keepLast(objects);
    return objects;
}

std::vector<ListedObject> standingObjects(const DocumentCache& cache) {
    std::vector<ListedObject> objects;
    objects.reserve(static_cast<std::size_t>(countReference(*cache.references)));
    for (Ref<ReferenceNode> node = firstReference(*cache.references); node; node = node->next) {
        objects.push_back({node->number, node->generation(), node->place()});
    }
    std::ranges::sort(objects, [&](const ListedObject& one, const ListedObject& other) {
        return one.number != other.number ? one.number < other.number
                                          : offsetOf(cache, one) < offsetOf(cache, other);
    });
    keepLast(objects);
    return objects;
}

std::vector<ListedObject> wholeObjects(const DocumentCache& cache,
                                       const std::set<std::int32_t>& leftOut, std::int32_t size) {
    std::vector<ListedObject> standing = standingObjects(cache);
    std::erase_if(standing, [&](const ListedObject& object) {
        return object.number == 0 || leftOut.contains(object.number);
    });
    const std::vector<ListedObject> updated = updatedObjects();
    std::vector<ListedObject> whole{freeObject(0, 65535)};
    whole.reserve(2 + standing.size() + updated.size());
    // Of equal numbers, `set_union` takes the object of the update.
    std::ranges::set_union(updated, standing, std::back_inserter(whole), {}, &ListedObject::number,
                           &ListedObject::number);
    if (whole.back().number < size - 1) {
        whole.front().place = ObjectPlace::atOffset(size - 1);
        whole.push_back(freeObject(size - 1, 0));
    }
    return whole;
}

std::vector<NumberRun> numberRuns(std::span<const ListedObject> objects) {
    std::vector<NumberRun> runs;
    for (std::size_t first = 0, i = 0; i < objects.size(); ++i) {
        if (i + 1 == objects.size() || objects[i + 1].number != objects[i].number + 1) {
            runs.push_back({objects[first].number, objects.subspan(first, i + 1 - first)});
            first = i + 1;
        }
    }
    return runs;
}

} // namespace corvane
