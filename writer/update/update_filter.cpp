#include "writer/update/update_filter.h"

#include "runtime/exception.h"
#include "runtime/rules.h"

namespace corvane {

namespace {

void write(UpdateFilter& filter, std::span<const std::byte> bytes) {
    if (filter.start + filter.count + static_cast<std::int64_t>(bytes.size()) > INT32_MAX) {
        failException(rules().guardsFile ? Exception::fileTooLong : Exception::io);
    }
    // Counted first: of a write that fails, any part may be in the file.
    filter.count += static_cast<std::int64_t>(bytes.size());
    if (filter.next != nullptr) {
        writeFilter(*filter.next, bytes);
    }
    filter.digest.feed(bytes);
    if (filter.written != nullptr) {
        filter.written->feed(bytes);
    }
}

std::int32_t entryUpdate(Filter& filter, Operation operation, std::byte* buffer,
                         std::int32_t* argument) {
    auto& self = static_cast<UpdateFilter&>(filter);
    switch (operation) {
    case Operation::write:
        if (*argument > 0) {
            write(self, {buffer, static_cast<std::size_t>(*argument)});
        }
        return *argument;
    case Operation::mark:
        return *argument = self.start + static_cast<std::int32_t>(self.count) - self.headerOffset;
    case Operation::read:
    case Operation::seek:
        failException(Exception::io);
    default:
        return 0;
    }
}

} // namespace

UpdateFilter::UpdateFilter(std::int32_t updateStart, std::int32_t header)
    : Filter(entryUpdate), start(updateStart), headerOffset(header) {}

FilterOwner setupUpdate(std::int32_t start, std::int32_t headerOffset) {
    return std::make_unique<UpdateFilter>(start, headerOffset);
}

} // namespace corvane
