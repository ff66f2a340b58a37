// A record in the memory zone, where the plug-in can follow its address.
#pragma once

#include "host/zone.h"

#include <cstdint>
#include <new>

namespace corvane {

/// Owns a block that holds one `T`. Raises `std::bad_alloc` where the zone is full.
template <class T>
class ZoneBlock {
public:
    ZoneBlock() : block_(NewPtrClear(static_cast<std::int32_t>(sizeof(T))).template as<T>()) {
        if (!block_) {
            throw std::bad_alloc();
        }
        *block_ = T{};
    }
    ~ZoneBlock() { DisposePtr(block_.template as<std::byte>()); }
    ZoneBlock(const ZoneBlock&) = delete;
    ZoneBlock& operator=(const ZoneBlock&) = delete;

    Ref<T> ref() const { return block_; }
    T* operator->() const { return block_.get(); }
    T& operator*() const { return *block_; }

private:
    Ref<T> block_;
};

} // namespace corvane
