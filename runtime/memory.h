// Blocks of the zone: allocation that raises, owners that clean up, and operations on bytes.
#pragma once

#include "host/zone.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>

namespace corvane {

/// A zero-filled block of `size` bytes. A full zone and a size outside 0 to 2^31 - 1 raise
/// `memory`, outside a guarded block too.
Ptr allocateMemory(std::int64_t size);
/// Frees a block with one owner; null is ignored.
void freeMemory(Ptr block);

/// A block that holds `count` default-made records of type `T`.
template <class T>
Ref<T> allocateRecord(std::int64_t count = 1) {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);
    static_assert(alignof(T) <= 8);
    if (count < 0 || count > INT32_MAX) {
        count = INT32_MAX;
    }
    const Ref<T> records = allocateMemory(count * std::int64_t{sizeof(T)}).as<T>();
    std::uninitialized_value_construct_n(records.get(), count);
    return records;
}

template <class T>
void freeRecord(Ref<T> record) {
    freeMemory(record.template as<std::byte>());
}

void setMemory(std::span<std::byte> bytes, std::uint8_t value);
void clearMemory(std::span<std::byte> bytes);
/// Copies all of `from`, which must fit (otherwise `range`); the two do not overlap.
void copyMemory(std::span<std::byte> to, std::span<const std::byte> from);
/// Bytes compared as unsigned numbers: negative, zero or positive. A beginning of the other is the
/// smaller one.
int compareMemory(std::span<const std::byte> a, std::span<const std::byte> b);
/// Kept for callers of the classic set; there is no frame to fix.
inline void frameMemory(Ptr) {}

/// Owner of one block while something can still be raised.
class BlockOwner {
public:
    BlockOwner() = default;
    explicit BlockOwner(Ptr block) : block_(block) {}
    BlockOwner(BlockOwner&& other) noexcept : block_(other.release()) {}
    BlockOwner& operator=(BlockOwner&& other) noexcept {
        std::swap(block_, other.block_);
        return *this;
    }
    ~BlockOwner() { DisposePtr(block_); }

    Ptr get() const { return block_; }
    /// Gives the block up; the caller owns it now.
    Ptr release() { return std::exchange(block_, Ptr()); }

private:
    Ptr block_;
};

/// Holds a charge against the zone's limit for memory that lies outside the zone.
class ZoneCharge {
public:
    ZoneCharge() = default;
    explicit ZoneCharge(std::int64_t bytes) { resize(bytes); }
    ZoneCharge(ZoneCharge&& other) noexcept : bytes_(std::exchange(other.bytes_, 0)) {}
    ZoneCharge& operator=(ZoneCharge&& other) noexcept {
        std::swap(bytes_, other.bytes_);
        return *this;
    }
    ~ZoneCharge() {
        if (bytes_ != 0) {
            dischargeZone(bytes_);
        }
    }

    /// Charges `bytes` in all from now on. Past the limit: `memory`, and the charge stays as it
    /// was.
    void resize(std::int64_t bytes);
    std::int64_t bytes() const { return bytes_; }

private:
    std::int64_t bytes_ = 0;
};

} // namespace corvane
