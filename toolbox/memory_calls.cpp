// The classic memory calls over the zone in force.
#include "host/memory.h"
#include "host/zone.h"

#include "toolbox/state.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

namespace corvane {

Ptr NewPtrClear(std::int32_t size) {
    return Ptr(toolboxState().zone.allocate(size));
}
void DisposePtr(Ptr block) {
    toolboxState().zone.dispose(block.address());
}
std::int32_t GetPtrSize(Ptr block) {
    return toolboxState().zone.size(block.address());
}
void retainPtr(Ptr block) {
    toolboxState().zone.retain(block.address());
}
bool releasePtr(Ptr block) {
    return toolboxState().zone.release(block.address());
}

Handle NewHandleClear(std::int32_t size) {
    const Ptr block = NewPtrClear(size);
    if (!block) {
        return {};
    }
    const Handle handle = NewPtrClear(sizeof(Ptr)).as<Ptr>();
    if (!handle) {
        DisposePtr(block);
        return {};
    }
    *handle = block;
    return handle;
}

void DisposeHandle(Handle handle) {
    if (handle) {
        DisposePtr(std::exchange(*handle, Ptr())); // a second time there is nothing to dispose of
        DisposePtr(handle.as<std::byte>());
    }
}

std::int32_t GetHandleSize(Handle handle) {
    return handle ? GetPtrSize(*handle) : 0;
}

// Blocks of this zone never move by themselves.
void HLock(Handle /*handle*/) {}
void HUnlock(Handle /*handle*/) {}

std::int32_t FreeMem() {
    const std::int64_t available = toolboxState().zone.available();
    return static_cast<std::int32_t>(
        std::clamp(available, std::int64_t{0}, std::int64_t{INT32_MAX}));
}

bool chargeZone(std::int64_t bytes) {
    return toolboxState().zone.charge(bytes);
}
void dischargeZone(std::int64_t bytes) {
    toolboxState().zone.discharge(bytes);
}

void BlockMove(const void* from, void* to, std::int32_t size) {
    if (size > 0) {
        std::memmove(to, from, static_cast<std::size_t>(size));
    }
}

OSErr PtrToHand(const void* source, Handle* handle, std::int32_t size) {
    *handle = NewHandleClear(size);
    if (!*handle) {
        return memFullErr;
    }
    BlockMove(source, (*handle)->get(), size);
    return noErr;
}

std::int32_t Munger(Handle handle, std::int32_t offset, const void* target,
                    std::int32_t targetLength, const void* replacement,
                    std::int32_t replacementLength) {
    constexpr std::int32_t notFound = -1;
    const std::int32_t length = GetHandleSize(handle);
    if (!handle || offset < 0 || offset > length) {
        return notFound;
    }
    const std::span old((*handle).get(), static_cast<std::size_t>(length));
    std::int32_t start = offset;
    std::int32_t replaced = targetLength;
    if (target == nullptr) {
        const std::int32_t rest = length - offset;
        replaced = targetLength < 0 ? rest : std::min(targetLength, rest);
    } else if (targetLength > 0) {
        const std::span wanted(static_cast<const std::byte*>(target),
                               static_cast<std::size_t>(targetLength));
        const auto found =
            std::search(old.begin() + offset, old.end(), wanted.begin(), wanted.end());
        if (found == old.end()) {
            return notFound;
        }
        start = static_cast<std::int32_t>(found - old.begin());
    } else {
        replaced = 0;
    }
    if (replacement == nullptr) {
        return start;
    }
    const std::int64_t newLength = std::int64_t{length} - replaced + replacementLength;
    if (replacementLength < 0 || newLength > INT32_MAX) {
        return notFound;
    }
    const Ptr block = NewPtrClear(static_cast<std::int32_t>(newLength));
    if (!block) {
        return notFound;
    }
    const std::int32_t end = start + replacementLength;
    BlockMove(old.data(), block.get(), start);
    BlockMove(replacement, block.get() + start, replacementLength);
    BlockMove(old.data() + start + replaced, block.get() + end, length - start - replaced);
    DisposePtr(*handle);
    *handle = block;
    return end;
}

void beginZoneCall() {
    toolboxState().zone.beginCall();
}
void endZoneCall() {
    toolboxState().zone.endCall();
}
std::int32_t zoneBlocksInUse() {
    return toolboxState().zone.blocksInUse();
}
std::int64_t zoneBytesInUse() {
    return toolboxState().zone.bytesInUse();
}
std::int64_t zoneBytesCharged() {
    return toolboxState().zone.charged();
}

} // namespace corvane
