#include "objects/storage.h"

#include <array>
#include <bit>
#include <utility>

namespace corvane::detail {

namespace {

constexpr std::array<Storage, 15> storageByType{
    Storage::none,  Storage::none,     Storage::none,     Storage::none,     Storage::none,
    Storage::none,  Storage::elements, Storage::invalid,  Storage::bytes,    Storage::bytes,
    Storage::bytes, Storage::elements, Storage::elements, Storage::elements, Storage::elements,
};

/// Where clearing goes on when a nested block is done. It is kept in the block's last element,
/// which is the first to be cleared.
struct Return {
    std::int32_t index;
    Ref<Object> outer;
};
static_assert(sizeof(Return) == sizeof(Object));

std::int32_t elementCount(Ref<Object> elements) {
    return GetPtrSize(elements.as<std::byte>()) / std::int32_t{sizeof(Object)};
}

/// Clears the elements of `block`, whose last owner is gone, and of all nested blocks that lose
/// their last owner by it; disposes of them.
bool clearElements(Ref<Object> block) noexcept {
    bool valid = true;
    Ref<Object> outer;
    std::int32_t index = elementCount(block);
    for (;;) {
        if (index == 0) {
            DisposePtr(block.as<std::byte>());
            if (!outer) {
                return valid;
            }
            block = outer;
            const auto back =
                std::bit_cast<Return>(block[static_cast<std::size_t>(elementCount(block)) - 1]);
            index = back.index;
            outer = back.outer;
            continue;
        }
        --index;
        const Object element = std::exchange(block[static_cast<std::size_t>(index)], Object{});
        const Storage storage = storageOf(element);
        valid = valid && storage != Storage::invalid;
        if (storage == Storage::bytes && releasePtr(Ptr(element.data))) {
            DisposePtr(Ptr(element.data));
        } else if (storage == Storage::elements && releasePtr(Ptr(element.data))) {
            block[static_cast<std::size_t>(elementCount(block)) - 1] =
                std::bit_cast<Object>(Return{index, outer});
            outer = block;
            block = Ref<Object>(element.data);
            index = elementCount(block);
        }
    }
}

} // namespace

Storage storageOf(const Object& object) {
    const auto code = static_cast<std::size_t>(object.type);
    return code < storageByType.size() ? storageByType[code] : Storage::invalid;
}

bool dropStorage(Object object) noexcept {
    const Storage storage = storageOf(object);
    if (storage == Storage::none || storage == Storage::invalid) {
        return storage == Storage::none;
    }
    const Ptr block(object.data);
    if (!releasePtr(block)) {
        return true;
    }
    if (storage == Storage::elements) {
        return clearElements(block.as<Object>());
    }
    DisposePtr(block);
    return true;
}

} // namespace corvane::detail
