// Queries of composites and resources, on the operand stack.
#include "objects/real_object.h"
#include "objects/stack.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"

namespace corvane {

namespace {

/// Pushes a further owner of the object.
void pushShared(const Object& object) {
    retainObject(object);
    pushStack(object);
}

/// Pops the operand and pushes pieces of it.
ObjectOwner popOwner() {
    return ObjectOwner(popStack());
}

const Object& elementAt(const Object& composite, std::int64_t index) {
    const std::span<Object> elements = elementsObject(composite);
    if (index < 0 || index >= static_cast<std::int64_t>(elements.size())) {
        failException(Exception::type);
    }
    return elements[static_cast<std::size_t>(index)];
}

bool namesOccur(const Object& array, std::string_view name) {
    bool found = false;
    for (const Object& element : elementsObject(array)) {
        found = literalObject(element) == name || found;
    }
    return found;
}

} // namespace

double realNumber(const Object& number) {
    return realOfObject(number);
}

OperatorResult voidOperator(DocumentCache&) {
    return 0;
}

OperatorResult submergeOperator(DocumentCache&) {
    return 0;
}

OperatorResult surfaceOperator(DocumentCache&) {
    return 0;
}

OperatorResult duplicateOperator(DocumentCache&) {
    pushShared(indexStack(0));
    return 0;
}

OperatorResult copyOperator(DocumentCache&) {
    const ObjectOwner original = popOwner();
    Object copy;
    cloneObject(copy, original.get());
    pushStack(copy);
    return 0;
}

OperatorResult equalOperator(DocumentCache&) {
    checkStack("??");
    const ObjectOwner b = popOwner();
    const ObjectOwner a = popOwner();
    pushBoolean(equalObject(a.get(), b.get()) ? 1 : 0);
    return 0;
}

OperatorResult countOperator(DocumentCache&) {
    const ObjectOwner object = popOwner();
    switch (typeObject(object.get())) {
    case ObjectType::array:
        pushInteger(sizeObject(object.get()));
        break;
    case ObjectType::dictionary:
        pushInteger(sizeObject(object.get()) / 2);
        break;
    case ObjectType::stream: {
        const std::span<Object> parts = elementsObject(object.get());
        pushInteger(integerObject(parts[2]) - integerObject(parts[1]));
        break;
    }
    default:
        failException(Exception::range);
    }
    return 0;
}

OperatorResult indexOperator(DocumentCache&) {
    checkStack("ai");
    const std::int32_t index = popInteger();
    const ObjectOwner array = popOwner();
    pushShared(elementAt(array.get(), index));
    return 0;
}

OperatorResult entryOperator(DocumentCache&) {
    checkStack("di");
    const std::int64_t index = popInteger();
    const ObjectOwner dictionary = popOwner();
    pushShared(elementAt(dictionary.get(), 2 * index));
    pushShared(elementAt(dictionary.get(), 2 * index + 1));
    return 0;
}

OperatorResult lookupOperator(DocumentCache& cache) {
    checkStack("dl");
    const ObjectOwner name = popLiteral();
    const ObjectOwner dictionary = popOwner();
    pushShared(findEntry(cache, dictionary.get(), literalObject(name.get())));
    return 0;
}

OperatorResult resolveOperator(DocumentCache& cache) {
    const ObjectOwner object = popOwner();
    pushStack(resolveObject(cache, object.get()).release());
    return 0;
}

OperatorResult extentOperator(DocumentCache&) {
    checkStack("s");
    const ObjectOwner stream = popOwner();
    const std::span<Object> parts = elementsObject(stream.get());
    pushInteger(integerObject(parts[1]));
    pushInteger(integerObject(parts[2]));
    return 0;
}

OperatorResult tableOperator(DocumentCache&) {
    checkStack("df");
    const Fixed index = popFixed();
    if ((index & (fixedOne - 1)) != 0) {
        failException(Exception::range);
    }
    const ObjectOwner dictionary = popOwner();
    pushShared(elementAt(dictionary.get(), 2 * std::int64_t{index / fixedOne} + 1));
    return 0;
}

OperatorResult contextOperator(DocumentCache& cache) {
    ObjectOwner context = popOwner();
    const ObjectType type = typeObject(context.get());
    if (type != ObjectType::null && type != ObjectType::dictionary) {
        failException(Exception::range);
    }
    cache.resources = std::move(context);
    return 0;
}

OperatorResult listingOperator(DocumentCache& cache) {
    checkStack("l");
    const ObjectOwner name = popLiteral();
    const Object& context = cache.resources.get();
    if (typeObject(context) != ObjectType::dictionary) {
        return nullOperator(cache);
    }
    pushShared(findEntry(cache, context, literalObject(name.get())));
    return 0;
}

OperatorResult resourceOperator(DocumentCache& cache) {
    checkStack("ll");
    const ObjectOwner name = popLiteral();
    const ObjectOwner category = popLiteral();
    const Object& context = cache.resources.get();
    if (typeObject(context) == ObjectType::null || typeObject(context) == ObjectType::empty) {
        return nullOperator(cache);
    }
    const ObjectOwner entry = lookupObject(cache, context, literalObject(category.get()));
    switch (typeObject(entry.get())) {
    case ObjectType::array:
        cache.work.comparedKeys += sizeObject(entry.get());
        pushBoolean(namesOccur(entry.get(), literalObject(name.get())) ? 1 : 0);
        return 0;
    case ObjectType::null:
        return nullOperator(cache);
    case ObjectType::dictionary:
        pushStack(lookupObject(cache, entry.get(), literalObject(name.get())).release());
        return 0;
    default:
        failException(Exception::range);
    }
}

} // namespace corvane
