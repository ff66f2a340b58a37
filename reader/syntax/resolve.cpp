// Following references to the objects themselves.
#include "objects/identity.h"
#include "objects/stack.h"
#include "reader/document/lost_object.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

namespace corvane {

namespace {

Object nullObject() {
    Object object;
    shallowObject(object, ObjectType::null, 0);
    return object;
}

// What a node holds besides the object itself: null where it was not read yet, a mark while it is
// read and after it could not be read.

constexpr std::int32_t beingRead = 0;

/// Null that was read: it need not be read again.
Object knownNull() {
    Object object = nullObject();
    object.size = 1;
    return object;
}

/// Counts one more object that is being read for another, and marks its node, so that a loop is
/// noticed.
class ReadingMark {
public:
    ReadingMark(DocumentCache& cache, Ref<ReferenceNode> node) : cache_(cache), node_(node) {
        ++cache.work.depth;
        shallowObject(node->value, ObjectType::mark, beingRead);
    }
    ~ReadingMark() {
        --cache_.work.depth;
        if (node_->value.type == ObjectType::mark && node_->value.data == beingRead) {
            node_->value = nullObject();
        }
    }
    ReadingMark(const ReadingMark&) = delete;
    ReadingMark& operator=(const ReadingMark&) = delete;

private:
    DocumentCache& cache_;
    Ref<ReferenceNode> node_;
};

/// Reads the object at the node's place; a fault of the file is returned.
Exception readPlace(DocumentCache& cache, Ref<ReferenceNode> node) {
    const Exception code = guarded([&] {
        ObjectOwner value = objectCache(cache, node->number, node->generation(), node->place());
        if (typeObject(value.get()) == ObjectType::null) {
            value = ObjectOwner(knownNull());
        }
        putReference(*cache.references, node->number, node->generation(), value.release());
    });
    if (!isFileFault(code)) {
        raiseException(code);
        return Exception::none;
    }
    resetException();
    return code;
}

/// Reads an object that is not at its place where a search finds it. What cannot be read there
/// either, such as words in a stream that look like an object, leaves the node where it was.
Exception readFound(DocumentCache& cache, Ref<ReferenceNode> node, Exception fault) {
    const ObjectPlace place = node->place();
    if (!moveToFound(cache, node)) {
        return fault;
    }
    const Exception code = readPlace(cache, node);
    if (code == Exception::none) {
        noteFound(cache);
    } else {
        node->move(place);
    }
    return code;
}

/// Reads the node's object, at another place where it is not at its own. A fault of the file is
/// returned, remembered and not tried again.
Exception readNode(DocumentCache& cache, Ref<ReferenceNode> node) {
    if (cache.work.depth == budget::referenceDepth) {
        return Exception::structure;
    }
    const ReadingMark reading(cache, node);
    Exception code = readPlace(cache, node);
    if (code != Exception::none && rules().mendsObjects) {
        code = readFound(cache, node, code);
    }
    if (code != Exception::none) {
        shallowObject(node->value, ObjectType::mark, static_cast<std::int32_t>(code));
    }
    return code;
}

/// The value of one node, shared with it; a fault of the file is returned.
Exception nodeValue(DocumentCache& cache, std::int32_t number, std::int32_t generation,
                    ObjectOwner& value) {
    value = ObjectOwner(nullObject());
    if (number < 0 || number > budget::objectNumber) {
        return Exception::structure;
    }
    const Ref<ReferenceNode> node = findReference(*cache.references, number, generation);
    if (!node && rules().missingObjectIsNull) {
        namedIdentity(number);
        return Exception::none;
    }
    if (!node) {
        return Exception::underflow;
    }
    if (node->value.type == ObjectType::mark) {
        return node->value.data == beingRead ? Exception::structure
                                             : static_cast<Exception>(node->value.data);
    }
    if (node->value.type == ObjectType::null && node->value.size == 0) {
        if (const Exception fault = readNode(cache, node); fault != Exception::none) {
            return fault;
        }
    }
    if (node->value.type != ObjectType::null) {
        value = sharedObject(node->value);
    }
    return Exception::none;
}

} // namespace

Exception tryResolveObject(DocumentCache& cache, const Object& object, ObjectOwner& value) {
    value = sharedObject(object);
    for (std::int32_t i = 0; typeObject(value.get()) == ObjectType::reference; ++i) {
        if (i == budget::referenceDepth) {
            return Exception::structure;
        }
        std::int32_t number = 0;
        std::int32_t generation = 0;
        referenceObject(value.get(), number, generation);
        if (const Exception fault = nodeValue(cache, number, generation, value);
            fault != Exception::none) {
            return fault;
        }
    }
    return Exception::none;
}

ObjectOwner readableObject(DocumentCache& cache, const Object& object) {
    ObjectOwner value;
    if (const Exception fault = tryResolveObject(cache, object, value); fault != Exception::none) {
        failException(fault);
    }
    return value;
}

ObjectOwner resolveObject(DocumentCache& cache, const Object& object) {
    ObjectOwner value;
    const Exception fault = tryResolveObject(cache, object, value);
    if (fault == Exception::none) {
        return value;
    }
    if (!rules().mendsObjects || !(cache.isOpened || cache.repaired)) {
        failException(fault);
    }
    if (typeObject(object) == ObjectType::reference) {
        std::int32_t number = 0;
        std::int32_t generation = 0;
        referenceObject(object, number, generation);
        cache.mends.note(Mend::lostObject, number);
    }
    return ObjectOwner(nullObject());
}

void forgetObject(DocumentCache& cache, std::int32_t number, std::int32_t generation) {
    const Ref<ReferenceNode> node = findReference(*cache.references, number, generation);
    if (node && node->value.type != ObjectType::mark) {
        freeObject(node->value);
        node->value = nullObject();
    }
}

Object findEntry(DocumentCache& cache, const Object& dictionary, std::string_view key) {
    const Object& pairs =
        typeObject(dictionary) == ObjectType::stream ? elementsObject(dictionary)[0] : dictionary;
    if (typeObject(pairs) != ObjectType::dictionary) {
        failException(Exception::range);
    }
    const Object* const value = cache.keyIndexes.find(pairs, key, cache.work.comparedKeys);
    if (cache.work.comparedKeys > budget::comparedKeys) {
        failException(Exception::limit);
    }
    return value != nullptr ? *value : nullObject();
}

ObjectOwner lookupObject(DocumentCache& cache, const Object& dictionary, std::string_view key) {
    return resolveObject(cache, findEntry(cache, dictionary, key));
}

} // namespace corvane
