#include "filters/range.h"

#include "runtime/exception.h"

#include <algorithm>

namespace corvane {

namespace {

std::int32_t transferRange(RangeFilter& filter, Operation operation, std::byte* buffer,
                           std::int32_t count) {
    count = std::clamp(count, 0, filter.end - filter.position);
    if (count == 0) {
        return 0;
    }
    if (markFilter(*filter.next) != filter.position) {
        seekFilter(*filter.next, filter.position);
    }
    callFilter(*filter.next, operation, buffer, &count);
    filter.position += count;
    return count;
}

std::int32_t entryRange(Filter& filter, Operation operation, std::byte* buffer,
                        std::int32_t* argument) {
    auto& range = static_cast<RangeFilter&>(filter);
    switch (operation) {
    case Operation::read:
    case Operation::write:
        return *argument = transferRange(range, operation, buffer, *argument);
    case Operation::seek:
        range.position = seekFilter(*range.next, std::clamp(*argument, range.start, range.end));
        return *argument = range.position;
    case Operation::mark:
        return *argument = range.position;
    case Operation::link:
        range.position = range.start;
        if (seekFilter(*range.next, range.start) != range.start) {
            failException(Exception::io);
        }
        return 0;
    default:
        return 0;
    }
}

} // namespace

RangeFilter::RangeFilter(std::int32_t first, std::int32_t last)
    : Filter(entryRange), start(first), end(last), position(first) {}

FilterOwner setupRange(std::int32_t start, std::int32_t end) {
    if (start < 0 || end < start) {
        failException(Exception::range);
    }
    return std::make_unique<RangeFilter>(start, end);
}

} // namespace corvane
