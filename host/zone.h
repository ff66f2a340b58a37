// The memory zone: one reserved range of address space whose blocks have 32-bit addresses.
//
// A block's address is its offset from the zone's base; offset 0 is null. So records of the plug-in
// and of the host keep the field widths that they have on a machine of 32-bit pointers. Blocks are
// zero-filled, aligned to 8 bytes and counted: a new block has one owner, `retainPtr` adds one, and
// `releasePtr` tells the last owner that the block is now its to clear and dispose of.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#define TOOLBOX_CALL [[gnu::visibility("default")]]

namespace corvane {

/// Base of the zone in force; set by the toolbox when its state object changes.
TOOLBOX_CALL extern std::byte* zoneBase;

/// Typed 32-bit address of a block of the zone. Null when zero. Not an owner.
template <class T>
class Ref {
public:
    constexpr Ref() = default;
    constexpr explicit Ref(std::uint32_t address) : address_(address) {}

    constexpr std::uint32_t address() const { return address_; }
    constexpr explicit operator bool() const { return address_ != 0; }
    friend constexpr bool operator==(Ref, Ref) = default;

    T* get() const {
        // The one place where raw bytes become records.
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
        return address_ == 0 ? nullptr : reinterpret_cast<T*>(zoneBase + address_);
    }
    T* operator->() const { return get(); }
    std::add_lvalue_reference_t<T> operator*() const { return *get(); }
    std::add_lvalue_reference_t<T> operator[](std::size_t index) const { return get()[index]; }

    /// The same address as that of a block holding `U`.
    template <class U>
    constexpr Ref<U> as() const {
        return Ref<U>(address_);
    }

private:
    std::uint32_t address_ = 0;
};

using Ptr = Ref<std::byte>;
using Handle = Ref<Ptr>;
static_assert(sizeof(Ptr) == 4 && sizeof(Handle) == 4);

/// A zero-filled block of `size` bytes with one owner; null where the zone's limit would be passed
/// or `size` is negative. A size of 0 yields a valid, empty block.
TOOLBOX_CALL Ptr NewPtrClear(std::int32_t size);

/// Frees the block whatever its count. Null is ignored.
TOOLBOX_CALL void DisposePtr(Ptr block);

/// Bytes asked for when the block was made: its true length, in 32 bits. 0 for null.
TOOLBOX_CALL std::int32_t GetPtrSize(Ptr block);

/// Adds an owner. Null is ignored.
TOOLBOX_CALL void retainPtr(Ptr block);

/// Drops an owner; true when none is left (the block is then still there: the caller clears what
/// it refers to and calls `DisposePtr`). False for null.
TOOLBOX_CALL bool releasePtr(Ptr block);

/// Relocatable block, zero-filled; null where the zone is full.
TOOLBOX_CALL Handle NewHandleClear(std::int32_t size);
TOOLBOX_CALL void DisposeHandle(Handle handle);
TOOLBOX_CALL std::int32_t GetHandleSize(Handle handle);
TOOLBOX_CALL void HLock(Handle handle);
TOOLBOX_CALL void HUnlock(Handle handle);

/// Bytes that the zone can still give: limit less blocks less what `chargeZone` holds.
TOOLBOX_CALL std::int32_t FreeMem();

/// Counts memory held outside the zone (buffers, codec state) against the zone's limit. False, and
/// nothing charged, where that would pass the limit.
TOOLBOX_CALL bool chargeZone(std::int64_t bytes);
TOOLBOX_CALL void dischargeZone(std::int64_t bytes);

TOOLBOX_CALL void BlockMove(const void* from, void* to, std::int32_t size);

} // namespace corvane
