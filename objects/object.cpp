#include "objects/object.h"

#include "objects/storage.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/fixed.h"
#include "runtime/memory.h"
#include "runtime/rules.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

namespace corvane {

namespace {

/// The syntax allows no deeper nesting, a stream around its dictionary and a reference at the
/// bottom apart.
constexpr std::int32_t nestingLimit = budget::objectNesting + 2;

std::int16_t heldSize(std::int64_t count) {
    constexpr std::int64_t most = std::numeric_limits<std::int16_t>::max();
    return static_cast<std::int16_t>(std::min(count, most));
}

void limitLength(std::int64_t length) {
    if (length < 0 || length > rules().objectLengthLimit) {
        failException(Exception::range);
    }
}

/// Raises `range` where the type is another one; the value of a scalar can be read even so.
void expectType(const Object& object, ObjectType type) {
    if (object.type != type) {
        raiseException(Exception::range);
    }
}

/// As `expectType`, where what follows would read storage.
void requireType(bool right) {
    if (!right) {
        failException(Exception::range);
    }
}

std::span<const std::byte> storedBytes(const Object& object) {
    if (object.data == 0) {
        return {};
    }
    return {Ptr(object.data).get(), static_cast<std::size_t>(sizeObject(object))};
}

std::string_view storedText(const Object& object) {
    if (object.data == 0) {
        return {};
    }
    return {Ref<char>(object.data).get(), static_cast<std::size_t>(sizeObject(object))};
}

Object cloneOf(const Object& from, std::int32_t depth);

Object cloneBlock(const Object& from) {
    const Ptr source(from.data);
    if (!source) {
        return from;
    }
    const std::int32_t length = GetPtrSize(source);
    const Ptr copy = allocateMemory(length);
    std::memcpy(copy.get(), source.get(), static_cast<std::size_t>(length));
    return {from.type, from.size, copy.address()};
}

Object cloneElements(const Object& from, std::int32_t depth) {
    const std::span<Object> source = elementsObject(from);
    const Ref<Object> storage = allocateRecord<Object>(std::ssize(source));
    ObjectOwner clone({from.type, from.size, storage.address()});
    std::transform(source.begin(), source.end(), storage.get(),
                   [depth](const Object& element) { return cloneOf(element, depth); });
    return clone.release();
}

Object cloneOf(const Object& from, std::int32_t depth) {
    switch (detail::storageOf(from)) {
    case detail::Storage::none:
        return from;
    case detail::Storage::bytes:
        return cloneBlock(from);
    case detail::Storage::elements:
        if (depth == nestingLimit) {
            failException(Exception::structure);
        }
        return cloneElements(from, depth + 1);
    case detail::Storage::invalid:
        break;
    }
    failException(Exception::type);
}

bool equalTo(const Object& a, const Object& b, std::int32_t depth) {
    const detail::Storage storage = detail::storageOf(a);
    if (storage == detail::Storage::invalid || detail::storageOf(b) == detail::Storage::invalid) {
        failException(Exception::type);
    }
    if (a.type != b.type || a.size != b.size) {
        return false;
    }
    if (a.data == b.data) {
        return true; // shared storage too
    }
    switch (storage) {
    case detail::Storage::bytes:
        return compareMemory(storedBytes(a), storedBytes(b)) == 0;
    case detail::Storage::elements: {
        if (depth == nestingLimit) {
            failException(Exception::structure);
        }
        const std::span<Object> left = elementsObject(a);
        const std::span<Object> right = elementsObject(b);
        return std::equal(
            left.begin(), left.end(), right.begin(), right.end(),
            [depth](const Object& x, const Object& y) { return equalTo(x, y, depth + 1); });
    }
    default:
        return false;
    }
}

} // namespace

void shallowObject(Object& object, ObjectType type, std::int32_t value) {
    object = Object{type, 0, std::bit_cast<std::uint32_t>(value)};
    if (type < ObjectType::null || type > ObjectType::fixed) {
        raiseException(Exception::type);
    }
}

void textualObject(Object& object, ObjectType type, std::string_view bytes) {
    object = Object{};
    if (type != ObjectType::literal && type != ObjectType::text) {
        raiseException(Exception::type);
    }
    const auto length = static_cast<std::int64_t>(bytes.size());
    limitLength(length);
    const Ptr copy = allocateMemory(length + 1);
    if (!bytes.empty()) {
        std::memcpy(copy.get(), bytes.data(), bytes.size());
    }
    object = Object{type, heldSize(length), copy.address()};
}

void blockedObject(Object& object, ObjectType type, Ptr bytes, std::int32_t size) {
    object = Object{};
    BlockOwner storage(bytes);
    if (type != ObjectType::block) {
        raiseException(Exception::type);
    }
    limitLength(size);
    const std::int32_t room = GetPtrSize(bytes);
    if (size > room) {
        failException(Exception::range);
    }
    const std::int16_t held = heldSize(size);
    if (size >= std::numeric_limits<std::int16_t>::max() && size != room) {
        // From here up the block's own length is the object's.
        BlockOwner exact(allocateMemory(size));
        std::memcpy(exact.get().get(), bytes.get(), static_cast<std::size_t>(size));
        storage = std::move(exact);
    }
    object = Object{type, held, storage.release().address()};
}

void groupedObject(Object& object, ObjectType type, Ref<Object> elements, std::int32_t count) {
    object = Object{};
    ObjectOwner storage({ObjectType::array, heldSize(count), elements.address()});
    if (type != ObjectType::reference && (type < ObjectType::array || type > ObjectType::stream)) {
        raiseException(Exception::type);
    }
    limitLength(count);
    const std::int64_t bytes = std::int64_t{count} * std::int64_t{sizeof(Object)};
    if (GetPtrSize(elements.as<std::byte>()) != bytes) {
        failException(Exception::range);
    }
    object = storage.release();
    object.type = type;
}

void indirectObject(Object& object, std::int32_t number, std::int32_t generation) {
    const Ref<Object> pair = allocateRecord<Object>(2);
    shallowObject(pair[0], ObjectType::integer, number);
    shallowObject(pair[1], ObjectType::integer, generation);
    object = Object{ObjectType::reference, 2, pair.address()};
}

ObjectType typeObject(const Object& object) {
    return object.type;
}

std::int32_t sizeObject(const Object& object) {
    if (object.size < std::numeric_limits<std::int16_t>::max()) {
        return std::max<std::int32_t>(object.size, 0);
    }
    const std::int32_t length = GetPtrSize(Ptr(object.data));
    switch (detail::storageOf(object)) {
    case detail::Storage::bytes:
        return object.type == ObjectType::block ? length : length - 1;
    case detail::Storage::elements:
        return length / std::int32_t{sizeof(Object)};
    default:
        return object.size;
    }
}

std::uint32_t dataObject(const Object& object) {
    return object.data;
}

std::int32_t markObject(const Object& object) {
    expectType(object, ObjectType::mark);
    return std::bit_cast<std::int32_t>(object.data);
}

bool booleanObject(const Object& object) {
    expectType(object, ObjectType::boolean);
    return object.data != 0;
}

std::int32_t integerObject(const Object& object) {
    expectType(object, ObjectType::integer);
    return std::bit_cast<std::int32_t>(object.data);
}

Fixed fixedObject(const Object& object) {
    expectType(object, ObjectType::fixed);
    return std::bit_cast<Fixed>(object.data);
}

Fixed extendObject(const Object& object) {
    const auto value = std::bit_cast<std::int32_t>(object.data);
    if (object.type == ObjectType::integer) {
        return long2fixed(value);
    }
    expectType(object, ObjectType::fixed);
    return value;
}

void referenceObject(const Object& object, std::int32_t& number, std::int32_t& generation) {
    requireType(object.type == ObjectType::reference);
    const std::span<Object> pair = elementsObject(object);
    requireType(pair.size() == 2);
    number = integerObject(pair[0]);
    generation = integerObject(pair[1]);
}

std::string_view literalObject(const Object& object) {
    requireType(object.type == ObjectType::literal);
    return storedText(object);
}

std::string_view textObject(const Object& object) {
    requireType(object.type == ObjectType::text ||
                (object.type == ObjectType::block && rules().blocksAreText));
    return storedText(object);
}

std::span<const std::byte> blockObject(const Object& object) {
    requireType(object.type == ObjectType::block);
    return storedBytes(object);
}

std::span<Object> elementsObject(const Object& object) {
    requireType(detail::storageOf(object) == detail::Storage::elements);
    if (object.data == 0) {
        return {};
    }
    return {Ref<Object>(object.data).get(), static_cast<std::size_t>(sizeObject(object))};
}

void retainObject(const Object& object) {
    switch (detail::storageOf(object)) {
    case detail::Storage::bytes:
    case detail::Storage::elements:
        retainPtr(Ptr(object.data));
        break;
    case detail::Storage::none:
        break;
    case detail::Storage::invalid:
        raiseException(Exception::type);
    }
}

void freeObject(Object& object) {
    if (!detail::dropObject(object)) {
        raiseException(Exception::type);
    }
}

void cloneObject(Object& to, const Object& from) {
    to = cloneOf(from, 0);
}

bool equalObject(const Object& a, const Object& b) {
    return equalTo(a, b, 0);
}

ObjectOwner& ObjectOwner::operator=(ObjectOwner&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
}

ObjectOwner::~ObjectOwner() {
    detail::dropObject(object_);
}

Object ObjectOwner::release() {
    return std::exchange(object_, Object{});
}

ObjectOwner sharedObject(const Object& object) {
    retainObject(object);
    return ObjectOwner(object);
}

} // namespace corvane
