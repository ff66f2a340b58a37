#include "filters/buffer.h"

#include "runtime/exception.h"

#include <algorithm>
#include <cstring>

namespace corvane {

namespace {

std::byte* at(BufferFilter& filter, std::int32_t position) {
    return filter.buffer.data() + position;
}

void switchDirection(BufferFilter& filter, Direction direction) {
    if (filter.direction == direction) {
        return;
    }
    switch (filter.direction) {
    case Direction::idle:
        break;
    case Direction::reading:
        seekFilter(*filter.next, markFilter(*filter.next) - filter.fill + filter.position);
        break;
    case Direction::writing:
        writeFilter(*filter.next,
                    std::span(filter.buffer).first(static_cast<std::size_t>(filter.fill)));
        break;
    default:
        failException(Exception::type);
    }
    filter.direction = direction;
    filter.fill = 0;
    filter.position = 0;
}

std::int32_t readBuffer(BufferFilter& filter, std::byte* to, std::int32_t wanted) {
    switchDirection(filter, Direction::reading);
    std::int32_t done = 0;
    while (done < wanted) {
        if (filter.position == filter.fill) {
            filter.position = 0;
            filter.fill = 0;
            if (wanted - done >= filter.size) {
                // What fills the buffer anyway need not pass through it.
                const std::span<std::byte> rest(to + done, static_cast<std::size_t>(wanted - done));
                const auto count = static_cast<std::int32_t>(readFilter(*filter.next, rest));
                if (count == 0) {
                    break;
                }
                done += count;
                continue;
            }
            filter.fill = static_cast<std::int32_t>(readFilter(*filter.next, filter.buffer));
            if (filter.fill == 0) {
                break;
            }
        }
        const std::int32_t piece = std::min(wanted - done, filter.fill - filter.position);
        std::memcpy(to + done, at(filter, filter.position), static_cast<std::size_t>(piece));
        filter.position += piece;
        done += piece;
    }
    return done;
}

std::int32_t writeBuffer(BufferFilter& filter, const std::byte* from, std::int32_t count) {
    switchDirection(filter, Direction::writing);
    std::int32_t done = 0;
    while (done < count) {
        const std::int32_t piece = std::min(count - done, filter.size - filter.fill);
        std::memcpy(at(filter, filter.fill), from + done, static_cast<std::size_t>(piece));
        filter.fill += piece;
        done += piece;
        if (filter.fill == filter.size) {
            switchDirection(filter, Direction::idle);
            switchDirection(filter, Direction::writing);
        }
    }
    return count;
}

std::int32_t seekBuffer(BufferFilter& filter, std::int32_t target) {
    if (filter.direction == Direction::reading && target >= 0) {
        const std::int32_t mark = markFilter(*filter.next);
        if (mark - filter.fill <= target && target <= mark) {
            filter.position = filter.fill - (mark - target);
            return target;
        }
    }
    if (filter.direction == Direction::reading) {
        // The target is absolute or counts from the end, so the read-ahead need not be given back.
        filter.direction = Direction::idle;
        filter.fill = 0;
        filter.position = 0;
    } else {
        switchDirection(filter, Direction::idle);
    }
    return seekFilter(*filter.next, target);
}

std::int32_t markBuffer(BufferFilter& filter) {
    const std::int32_t mark = markFilter(*filter.next);
    switch (filter.direction) {
    case Direction::idle:
        return mark;
    case Direction::reading:
        return mark - filter.fill + filter.position;
    case Direction::writing:
        return mark + filter.fill;
    default:
        failException(Exception::type);
    }
}

std::int32_t entryBuffer(Filter& filter, Operation operation, std::byte* buffer,
                         std::int32_t* argument) {
    auto& self = static_cast<BufferFilter&>(filter);
    switch (operation) {
    case Operation::read:
        return *argument = readBuffer(self, buffer, *argument);
    case Operation::write:
        return *argument = writeBuffer(self, buffer, *argument);
    case Operation::seek:
        return *argument = seekBuffer(self, *argument);
    case Operation::mark:
        return *argument = markBuffer(self);
    case Operation::link:
        self.direction = Direction::idle;
        self.fill = 0;
        self.position = 0;
        return 0;
    case Operation::unlink:
        switchDirection(self, Direction::idle);
        return 0;
    default:
        return 0;
    }
}

} // namespace

BufferFilter::BufferFilter(std::int32_t bytes)
    : Filter(entryBuffer), size(bytes), charge(bytes), buffer(static_cast<std::size_t>(bytes)) {}

FilterOwner setupBuffer(std::int32_t size) {
    if (size < 0) {
        failException(Exception::type);
    }
    return std::make_unique<BufferFilter>(size == 0 ? usualBufferSize : size);
}

} // namespace corvane
