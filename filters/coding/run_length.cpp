#include "filters/coding/run_length.h"

#include <algorithm>
#include <cstring>

namespace corvane {

namespace {

constexpr std::size_t endOfData = 128;

/// One run: its length, how many bytes of the data say so, and where they begin.
struct Run {
    std::size_t length;
    std::size_t coded;
    bool repeated;
};

/// Of data that begin with a length byte other than `endOfData`.
Run runAt(std::span<const std::byte> in) {
    const auto length = std::to_integer<std::size_t>(in.front());
    if (length < endOfData) {
        return {.length = length + 1, .coded = length + 2, .repeated = false};
    }
    return {.length = 257 - length, .coded = 2, .repeated = true};
}

void expand(const Run& run, std::span<const std::byte> in, std::byte* to) {
    if (run.repeated) {
        std::memset(to, std::to_integer<int>(in[1]), run.length);
    } else {
        std::memcpy(to, in.data() + 1, run.length);
    }
}

/// Expands runs that are whole in `in` and fit in `out`; moves both on past them.
void expandRuns(std::span<const std::byte>& in, std::span<std::byte>& out) {
    while (!in.empty() && std::to_integer<std::size_t>(in.front()) != endOfData) {
        const Run run = runAt(in);
        if (run.coded > in.size() || run.length > out.size()) {
            break;
        }
        expand(run, in, out.data());
        in = in.subspan(run.coded);
        out = out.subspan(run.length);
    }
}

} // namespace

/// Expands the next run into the record's own buffer; false at the end of the data.
bool RunFilter::refill() {
    std::span<const std::byte> in = intake().hold(1);
    if (in.empty()) {
        return false;
    }
    if (std::to_integer<std::size_t>(in.front()) == endOfData) {
        intake().take(1);
        return false;
    }
    const Run run = runAt(in);
    in = intake().hold(run.coded);
    if (in.size() < run.coded) {
        intake().take(in.size());
        return false;
    }
    expand(run, in, run_.data());
    intake().take(run.coded);
    position_ = 0;
    available_ = run.length;
    return true;
}

std::size_t RunFilter::decode(std::span<std::byte> out) {
    std::span<std::byte> room = out;
    while (!room.empty()) {
        if (position_ < available_) {
            const std::size_t count = std::min(available_ - position_, room.size());
            std::memcpy(room.data(), run_.data() + position_, count);
            position_ += count;
            room = room.subspan(count);
            continue;
        }
        const std::span<const std::byte> held = intake().held();
        std::span<const std::byte> in = held;
        expandRuns(in, room);
        intake().take(held.size() - in.size());
        if (!room.empty() && !refill()) {
            break;
        }
    }
    return out.size() - room.size();
}

void RunFilter::restart() {
    position_ = 0;
    available_ = 0;
}

std::int32_t RunFilter::entryRun(Filter& filter, Operation operation, std::byte* buffer,
                                 std::int32_t* argument) {
    if (operation == Operation::write) {
        return *argument;
    }
    return entryDecoder(filter, operation, buffer, argument);
}

FilterOwner setupRun() {
    return std::make_unique<RunFilter>();
}

} // namespace corvane
