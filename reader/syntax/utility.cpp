#include "reader/syntax/utility.h"

#include "objects/stack.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "runtime/fixed.h"

#include <algorithm>

namespace corvane {

namespace {

std::int16_t wholePoints(Fixed value) {
    return static_cast<std::int16_t>(std::clamp(fixed2long(value), INT16_MIN, INT16_MAX));
}

} // namespace

void indexUtility(DocumentCache& cache, std::int32_t index, bool resolve) {
    resolveOperator(cache);
    pushInteger(index);
    indexOperator(cache);
    if (resolve) {
        resolveOperator(cache);
    }
}

void entryUtility(DocumentCache& cache, std::int32_t index, bool resolve) {
    resolveOperator(cache);
    pushInteger(index);
    entryOperator(cache);
    if (resolve) {
        resolveOperator(cache);
    }
}

void lookupUtility(DocumentCache& cache, std::string_view key, bool resolve) {
    resolveOperator(cache);
    pushLiteral(key);
    lookupOperator(cache);
    if (resolve) {
        resolveOperator(cache);
    }
}

void abbrevUtility(DocumentCache& cache, std::string_view longKey, std::string_view shortKey) {
    duplicateOperator(cache);
    lookupUtility(cache, longKey, true);
    if (typeObject(indexStack(0)) != ObjectType::null) {
        const ObjectOwner value(popStack());
        const ObjectOwner dictionary(popStack());
        retainObject(value.get());
        pushStack(value.get());
        return;
    }
    const ObjectOwner missing(popStack());
    lookupUtility(cache, shortKey, true);
}

PixelRect rectUtility(DocumentCache& cache) {
    resolveOperator(cache);
    checkStack("a");
    const ObjectOwner array(popStack());
    const std::span<Object> values = elementsObject(array.get());
    if (values.size() < 4) {
        failException(Exception::type);
    }
    const auto value = [&](std::size_t i) {
        return wholePoints(extendObject(resolveObject(cache, values[i]).get()));
    };
    return {.top = value(3), .left = value(0), .bottom = value(1), .right = value(2)};
}

bool readToLine(std::span<char, 256> line, Filter& stream) {
    const std::span<char> room = line.first(line.size() - 1);
    const std::size_t count = readFilter(stream, std::as_writable_bytes(room));
    const auto end = std::find_if(room.begin(), room.begin() + static_cast<std::ptrdiff_t>(count),
                                  [](char c) { return c == '\n' || c == '\r'; });
    const auto length = static_cast<std::size_t>(end - room.begin());
    line[length] = '\0';
    if (length < count) {
        seekFilter(stream, markFilter(stream) - static_cast<std::int32_t>(count - length - 1));
    }
    return count > 0;
}

} // namespace corvane
