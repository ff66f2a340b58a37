#include "reader/syntax/stream/stream_filters.h"

#include "objects/stack.h"
#include "reader/syntax/stream/decode_filters.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"

namespace corvane {

namespace {

/// The operand itself, or the element at `index` where it is an array, resolved.
ObjectOwner operandAt(DocumentCache& cache, const Object& operand, std::int32_t index) {
    if (typeObject(operand) != ObjectType::array) {
        return resolveObject(cache, operand);
    }
    const std::span<Object> elements = elementsObject(operand);
    if (index < 0 || static_cast<std::size_t>(index) >= elements.size()) {
        Object null;
        shallowObject(null, ObjectType::null, 0);
        return ObjectOwner(null);
    }
    return resolveObject(cache, elements[static_cast<std::size_t>(index)]);
}

} // namespace

void filterUtility(DocumentCache& cache, Chain& chain, std::int32_t index) {
    checkStack("??");
    const ObjectOwner parameters(popStack());
    const ObjectOwner filters(popStack());
    const ObjectOwner name = operandAt(cache, *filters, index);
    const ObjectOwner filterParameters = operandAt(cache, *parameters, index);
    linkDecodeFilter(cache, chain, literalObject(*name), *filterParameters);
}

std::int32_t countFilters(DocumentCache& cache, const Object& stream) {
    const ObjectOwner filters = lookupObject(cache, stream, "Filter");
    std::int32_t count = 1;
    if (typeObject(filters.get()) == ObjectType::null) {
        count = 0;
    } else if (typeObject(filters.get()) == ObjectType::array) {
        count = sizeObject(filters.get());
    }
    if (count > budget::streamFilters) {
        failException(Exception::structure);
    }
    return count;
}

void linkFilters(DocumentCache& cache, Chain& chain, const Object& stream) {
    const std::int32_t count = countFilters(cache, stream);
    for (std::int32_t i = 0; i < count; ++i) {
        pushStack(lookupObject(cache, stream, "Filter").release());
        pushStack(lookupObject(cache, stream, "DecodeParms").release());
        filterUtility(cache, chain, i);
    }
}

} // namespace corvane
