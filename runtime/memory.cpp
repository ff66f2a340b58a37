#include "runtime/memory.h"

#include "runtime/exception.h"

#include <algorithm>
#include <cstring>

namespace corvane {

Ptr allocateMemory(std::int64_t size) {
    const bool sayable = size >= 0 && size <= INT32_MAX;
    const Ptr block = sayable ? NewPtrClear(static_cast<std::int32_t>(size)) : Ptr();
    if (!block) {
        failException(Exception::memory);
    }
    return block;
}

void freeMemory(Ptr block) {
    DisposePtr(block);
}

void setMemory(std::span<std::byte> bytes, std::uint8_t value) {
    std::fill(bytes.begin(), bytes.end(), std::byte{value});
}

void clearMemory(std::span<std::byte> bytes) {
    setMemory(bytes, 0);
}

void copyMemory(std::span<std::byte> to, std::span<const std::byte> from) {
    if (from.size() > to.size()) {
        failException(Exception::range);
    }
    std::copy(from.begin(), from.end(), to.begin());
}

int compareMemory(std::span<const std::byte> a, std::span<const std::byte> b) {
    const std::size_t common = std::min(a.size(), b.size());
    const int order = common == 0 ? 0 : std::memcmp(a.data(), b.data(), common);
    if (order != 0 || a.size() == b.size()) {
        return order;
    }
    return a.size() < b.size() ? -1 : 1;
}

void ZoneCharge::resize(std::int64_t bytes) {
    if (bytes > bytes_ && !chargeZone(bytes - bytes_)) {
        failException(Exception::memory);
    }
    if (bytes < bytes_) {
        dischargeZone(bytes_ - bytes);
    }
    bytes_ = bytes;
}

} // namespace corvane
