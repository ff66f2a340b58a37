#include "reader/syntax/stream/meter.h"

#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"

namespace corvane {

namespace {

/// Bytes between two questions to the host.
constexpr std::int64_t bytesPerCheck = 1 << 16;

struct MeterFilter : Filter {
    explicit MeterFilter(ReadingWork& work);

    void giveBack(std::span<const std::byte> bytes) override { next->giveBack(bytes); }
    bool decodes() const override { return next->decodes(); }
    void count(std::int32_t bytes) const;

    ReadingWork& work;
};

void MeterFilter::count(std::int32_t bytes) const {
    const std::int64_t before = work.pageBytes;
    work.pageBytes += bytes;
    if (work.pageBytes > budget::pageBytes) {
        failException(Exception::limit);
    }
    if (before / bytesPerCheck != work.pageBytes / bytesPerCheck &&
        callHost(slot::checkUserAbort)) {
        failException(Exception::cancelled);
    }
}

std::int32_t entryMeter(Filter& filter, Operation operation, std::byte* buffer,
                        std::int32_t* argument) {
    auto& meter = static_cast<MeterFilter&>(filter);
    switch (operation) {
    case Operation::read:
        callFilter(*meter.next, operation, buffer, argument);
        meter.count(*argument);
        return *argument;
    case Operation::write:
    case Operation::seek:
    case Operation::mark:
        return callFilter(*meter.next, operation, buffer, argument);
    default:
        return 0;
    }
}

MeterFilter::MeterFilter(ReadingWork& counted) : Filter(entryMeter), work(counted) {}

} // namespace

FilterOwner setupMeter(ReadingWork& work) {
    return std::make_unique<MeterFilter>(work);
}

} // namespace corvane
