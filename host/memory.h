// Memory calls beyond host/zone.h: editing handles, and accounting for what a call of `main_entry`
// leaves behind.
#pragma once

#include "host/files.h"
#include "host/zone.h"

#include <cstdint>

namespace corvane {

/// Searches the block of `handle` from `offset` for the `targetLength` bytes at `target` and puts
/// the `replacementLength` bytes at `replacement` in their place; returns the offset after them.
/// Null `target`: the `targetLength` bytes at `offset` are replaced (negative: all that follow).
/// Length 0: inserts at `offset`. Null `replacement`: only searches and returns where. Negative
/// where nothing is found or the zone is full; the block is then as it was.
TOOLBOX_CALL std::int32_t Munger(Handle handle, std::int32_t offset, const void* target,
                                 std::int32_t targetLength, const void* replacement,
                                 std::int32_t replacementLength);

/// Copies `size` bytes into a new handle; `memFullErr`, and null, where the zone is full.
TOOLBOX_CALL OSErr PtrToHand(const void* source, Handle* handle, std::int32_t size);

/// Mark the begin and end of one call of `main_entry`; they nest. Under AddressSanitizer blocks
/// freed within a call are not given out again before its end.
TOOLBOX_CALL void beginZoneCall();
TOOLBOX_CALL void endZoneCall();

/// One call of `main_entry`, from construction to destruction.
class ZoneCall {
public:
    ZoneCall() { beginZoneCall(); }
    ~ZoneCall() { endZoneCall(); }
    ZoneCall(const ZoneCall&) = delete;
    ZoneCall& operator=(const ZoneCall&) = delete;
};

/// Blocks not yet disposed of, and the bytes they were asked for with. A handle is two blocks.
TOOLBOX_CALL std::int32_t zoneBlocksInUse();
TOOLBOX_CALL std::int64_t zoneBytesInUse();

/// Bytes charged with `chargeZone` and not yet discharged.
TOOLBOX_CALL std::int64_t zoneBytesCharged();

} // namespace corvane
