// Stream objects: where their data begins and ends.
#include "filters/token/token.h"
#include "objects/stack.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "runtime/memory.h"
#include "runtime/rules.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace corvane {

namespace {

constexpr std::string_view endMark = "endstream";

std::string_view readAt(Filter& file, std::int32_t position, std::span<char> buffer) {
    seekFilter(file, position);
    return {buffer.data(), readFilter(file, std::as_writable_bytes(buffer))};
}

/// Whether "endstream" stands at `end`, behind white space or none.
bool endsAt(Filter& file, std::int32_t end) {
    std::array<char, 24> buffer{};
    std::string_view bytes = readAt(file, end, buffer);
    bytes.remove_prefix(
        std::min(bytes.find_first_not_of(std::string_view("\0\t\n\f\r ", 6)), bytes.size()));
    return bytes.starts_with(endMark) || bytes.starts_with("endobj");
}

/// Position after the last data byte, by the first "endstream" from `start` on, less the end of
/// line before it; -1 where there is none.
std::int32_t searchEnd(DocumentCache& cache, std::int32_t start) {
    Filter& file = *cache.fileChain.top();
    std::array<char, 8192> buffer{};
    constexpr auto overlap = static_cast<std::int32_t>(endMark.size()) - 1;
    for (std::int32_t at = start; at < cache.fileLength;) {
        // A file made to be searched again and again is not worth the time.
        if (cache.work.searchedBytes > 16 * std::int64_t{cache.fileLength}) {
            failException(Exception::range);
        }
        const std::string_view bytes = readAt(file, at, buffer);
        const std::size_t found = std::min(bytes.find(endMark), bytes.find("endobj"));
        cache.work.searchedBytes += static_cast<std::int64_t>(std::min(found, bytes.size()));
        if (found != std::string_view::npos) {
            std::int32_t end = at + static_cast<std::int32_t>(found);
            std::array<char, 2> before{};
            const std::int32_t from = std::max(start, end - 2);
            const std::string_view tail =
                readAt(file, from, std::span(before).first(static_cast<std::size_t>(end - from)));
            if (tail.ends_with("\r\n")) {
                end -= 2;
            } else if (tail.ends_with('\n') || tail.ends_with('\r')) {
                end -= 1;
            }
            return end;
        }
        if (bytes.size() < buffer.size()) {
            break;
        }
        at += static_cast<std::int32_t>(bytes.size()) - overlap;
    }
    return -1;
}

/// The length that the dictionary gives, or -1 where it gives none that can be.
std::int32_t statedLength(DocumentCache& cache, const Object& dictionary) {
    ObjectOwner value;
    const Exception fault = tryResolveObject(cache, findEntry(cache, dictionary, "Length"), value);
    if (!rules().findsEndstream) {
        raiseException(fault);
        return integerObject(value.get());
    }
    const bool isStated =
        fault == Exception::none && typeObject(value.get()) == ObjectType::integer;
    return isStated ? integerObject(value.get()) : -1;
}

/// Number of the object whose dictionary is on top of the stack; 0 where it has no head.
std::int32_t numberOfObject() {
    const bool hasHead = countStack() > 2 && typeObject(indexStack(2)) == ObjectType::integer &&
                         typeObject(indexStack(1)) == ObjectType::integer;
    return hasHead ? integerObject(indexStack(2)) : 0;
}

} // namespace

OperatorResult streamOperator(DocumentCache& cache) {
    checkStack("d");
    callFilter(*cache.input, Operation::streamData);
    const std::int32_t start = markFilter(*cache.input);
    Filter& file = *cache.fileChain.top();
    const std::int32_t length = statedLength(cache, indexStack(0));
    const bool inside = length >= 0 && length <= cache.fileLength - start;
    std::int32_t end = inside ? start + length : -1;
    if (rules().findsEndstream && (!inside || !endsAt(file, end))) {
        cache.mends.note(Mend::streamLength, numberOfObject());
        const std::int32_t found = searchEnd(cache, start);
        end = found >= 0 ? found : inside ? end : cache.fileLength;
    }
    if (end < start) {
        failException(Exception::range);
    }
    seekFilter(*cache.input, end);

    const Ref<Object> parts = allocateRecord<Object>(3);
    parts[0] = popStack();
    shallowObject(parts[1], ObjectType::integer, start);
    shallowObject(parts[2], ObjectType::integer, end);
    Object stream;
    groupedObject(stream, ObjectType::stream, parts, 3);
    pushStack(stream);
    return 0;
}

OperatorResult endstreamOperator(DocumentCache&) {
    checkStack("s");
    return 0;
}

} // namespace corvane
