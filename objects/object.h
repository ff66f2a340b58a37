// The 8-byte typed value that every part of the reader passes around.
//
// An object is copied by value; its storage (text, block, elements) is a counted block of the zone.
// Call `retainObject` for each further copy that is kept, and `freeObject` when a copy is not
// needed any more: it releases the storage and, with the last owner, all that it holds. So copies
// that share storage can be freed in any order. `cloneObject` is the deep copy.
#pragma once

#include "host/artwork.h"
#include "host/zone.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

enum class ObjectType : std::int16_t {
    empty = 0,
    null = 1,
    mark = 2,
    boolean = 3,
    integer = 4,
    fixed = 5,
    reference = 6,
    reserved = 7, ///< never made; freeing, cloning or comparing one raises `type`
    literal = 8,  ///< a name, without its slash
    text = 9,     ///< a string
    block = 10,   ///< raw bytes, a hexadecimal string
    array = 11,
    procedure = 12,
    dictionary = 13, ///< key, value, key, value, ...
    stream = 14,     ///< dictionary, position of the first data byte, position after the last
};

struct Object {
    ObjectType type = ObjectType::empty;
    /// Bytes or elements, held at 32,767 where there are more: `sizeObject` gives the true number.
    std::int16_t size = 0;
    /// The value of a scalar, otherwise the address of the storage.
    std::uint32_t data = 0;
};
static_assert(sizeof(Object) == 8 && offsetof(Object, size) == 2 && offsetof(Object, data) == 4);

// Constructors. Each fills the object whatever it held before. A type outside the constructor's
// range raises `type`; where no guarded block is active the object is filled in all the same.
// Lengths over the profile's limit raise `range`; a full zone raises `memory`.

/// Types 1 to 5.
void shallowObject(Object& object, ObjectType type, std::int32_t value);
/// Types 8 and 9: a counted, zero-terminated copy of `bytes` (which may hold zero bytes).
void textualObject(Object& object, ObjectType type, std::string_view bytes);
/// Type 10: takes over `bytes`, of which `size` count.
void blockedObject(Object& object, ObjectType type, Ptr bytes, std::int32_t size);
/// Types 6 and 11 to 14: takes over `elements`, a block of exactly `count` objects.
void groupedObject(Object& object, ObjectType type, Ref<Object> elements, std::int32_t count);
/// A reference to an indirect object.
void indirectObject(Object& object, std::int32_t number, std::int32_t generation);

// Accessors. Another type raises `range`.

ObjectType typeObject(const Object& object);
std::int32_t sizeObject(const Object& object);
std::uint32_t dataObject(const Object& object);
std::int32_t markObject(const Object& object);
bool booleanObject(const Object& object);
std::int32_t integerObject(const Object& object);
Fixed fixedObject(const Object& object);
/// An integer or a fixed number as 16.16; an integer too large saturates.
Fixed extendObject(const Object& object);
void referenceObject(const Object& object, std::int32_t& number, std::int32_t& generation);
std::string_view literalObject(const Object& object);
/// A text string; in the extended profile a block too.
std::string_view textObject(const Object& object);
std::span<const std::byte> blockObject(const Object& object);
/// The elements of a reference or composite.
std::span<Object> elementsObject(const Object& object);

// Whole objects. Type 7, and codes outside 0 to 14, raise `type`.

void retainObject(const Object& object);
/// Drops this owner; `object` becomes empty.
void freeObject(Object& object);
void cloneObject(Object& to, const Object& from);
/// Same types, sizes and values, element by element in order.
bool equalObject(const Object& a, const Object& b);

/// Owner of one object for the length of a scope.
class ObjectOwner {
public:
    ObjectOwner() = default;
    explicit ObjectOwner(Object object) : object_(object) {}
    ObjectOwner(ObjectOwner&& other) noexcept : object_(other.release()) {}
    ObjectOwner& operator=(ObjectOwner&& other) noexcept;
    ~ObjectOwner();

    Object& get() { return object_; }
    const Object& get() const { return object_; }
    Object& operator*() { return object_; }
    const Object& operator*() const { return object_; }
    Object* operator->() { return &object_; }
    const Object* operator->() const { return &object_; }
    /// Gives the object up; the caller owns it now.
    Object release();

private:
    Object object_;
};

/// One more owner of an object.
ObjectOwner sharedObject(const Object& object);

} // namespace corvane
