// How an object's storage is reached and given back, without ever raising or recursing.
#pragma once

#include "objects/object.h"

#include <utility>

namespace corvane::detail {

/// What the data word of an object is the address of.
enum class Storage { none, bytes, elements, invalid };

Storage storageOf(const Object& object);

/// Takes one owner off the storage of `object`, which is no scalar.
bool dropStorage(Object object) noexcept;

/// Drops one owner and, with the last, all that the storage holds, in constant stack and no memory
/// of its own. `object` becomes empty. False where a type without meaning was met (its data is then
/// left alone).
inline bool dropObject(Object& object) noexcept {
    const Object dropped = std::exchange(object, Object{});
    const bool scalar = dropped.type >= ObjectType::empty && dropped.type <= ObjectType::fixed;
    return scalar || dropStorage(dropped);
}

} // namespace corvane::detail
