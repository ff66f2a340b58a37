// Following references to the objects themselves.
#include "objects/stack.h"
#include "reader/syntax.h"
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

/// Counts one more object that is being read for another, and marks its node, so that a loop is
/// noticed.
class ReadingMark {
public:
    ReadingMark(DocumentCache& cache, Ref<ReferenceNode> node) : cache_(cache), node_(node) {
        if (cache.readDepth == budget::referenceDepth) {
            failException(Exception::structure);
        }
        ++cache.readDepth;
        shallowObject(node->value, ObjectType::mark, 0);
    }
    ~ReadingMark() {
        --cache_.readDepth;
        if (node_->value.type == ObjectType::mark) {
            node_->value = nullObject();
        }
    }
    ReadingMark(const ReadingMark&) = delete;
    ReadingMark& operator=(const ReadingMark&) = delete;

private:
    DocumentCache& cache_;
    Ref<ReferenceNode> node_;
};

/// The value of one node; shared with it.
ObjectOwner nodeValue(DocumentCache& cache, std::int32_t number, std::int32_t generation) {
    if (number < 0 || number > budget::objectNumber) {
        failException(Exception::structure);
    }
    const Ref<ReferenceNode> node = findReference(*cache.references, number, generation);
    if (!node) {
        if (rules().missingObjectIsNull) {
            return ObjectOwner(nullObject());
        }
        failException(Exception::underflow);
    }
    if (node->value.type == ObjectType::mark) {
        failException(Exception::structure);
    }
    if (node->value.type == ObjectType::null) {
        const ReadingMark reading(cache, node);
        ObjectOwner value = objectCache(cache, number, generation, node->tag);
        putReference(*cache.references, number, generation, value.release());
    }
    retainObject(node->value);
    return ObjectOwner(node->value);
}

} // namespace

ObjectOwner resolveObject(DocumentCache& cache, const Object& object) {
    retainObject(object);
    ObjectOwner value(object);
    for (std::int32_t i = 0; typeObject(value.get()) == ObjectType::reference; ++i) {
        if (i == budget::referenceDepth) {
            failException(Exception::structure);
        }
        std::int32_t number = 0;
        std::int32_t generation = 0;
        referenceObject(value.get(), number, generation);
        value = nodeValue(cache, number, generation);
    }
    return value;
}

void forgetObject(DocumentCache& cache, std::int32_t number, std::int32_t generation) {
    const Ref<ReferenceNode> node = findReference(*cache.references, number, generation);
    if (node && node->value.type != ObjectType::mark) {
        freeObject(node->value);
        node->value = nullObject();
    }
}

Object findEntry(const Object& dictionary, std::string_view key) {
    const Object& pairs =
        typeObject(dictionary) == ObjectType::stream ? elementsObject(dictionary)[0] : dictionary;
    if (typeObject(pairs) != ObjectType::dictionary) {
        failException(Exception::range);
    }
    const std::span<Object> elements = elementsObject(pairs);
    for (std::size_t i = 0; i + 1 < elements.size(); i += 2) {
        if (typeObject(elements[i]) == ObjectType::literal && literalObject(elements[i]) == key) {
            return elements[i + 1];
        }
    }
    return nullObject();
}

ObjectOwner lookupObject(DocumentCache& cache, const Object& dictionary, std::string_view key) {
    return resolveObject(cache, findEntry(dictionary, key));
}

} // namespace corvane
