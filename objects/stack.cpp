#include "objects/stack.h"

#include "objects/real_object.h"
#include "objects/storage.h"
#include "runtime/exception.h"
#include "runtime/fixed.h"
#include "runtime/memory.h"
#include "runtime/rules.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <utility>
#include <vector>

namespace corvane {

namespace detail {

OperandStack operandStack;

} // namespace detail

namespace {

using detail::operandStack;

/// What the stack is given at first; enough for all but the largest arrays.
constexpr std::int32_t firstCapacity = 1024;

struct Storage {
    const Rules* rules = nullptr; ///< that the storage was made for
    std::vector<Object> objects;
    std::vector<double> exact;
    ZoneCharge charge;
};
Storage storage;

/// Room for so many objects, those below the floor included.
void resizeStorage(std::int32_t room, bool exactNumbers) {
    const auto places = static_cast<std::size_t>(room);
    const std::size_t place = sizeof(Object) + (exactNumbers ? sizeof(double) : 0);
    storage.charge.resize(static_cast<std::int64_t>(places * place));
    // Each is told of as soon as it has moved: the next may find no memory.
    storage.objects.resize(places);
    operandStack.objects = storage.objects.data() + operandStack.floor;
    if (exactNumbers) {
        storage.exact.resize(places);
        operandStack.exact = storage.exact.data() + operandStack.floor;
    }
    operandStack.capacity = room - operandStack.floor;
}

/// Moves the floor up by so many objects, or down.
void moveFloor(std::int32_t by) {
    operandStack.floor += by;
    operandStack.capacity -= by;
    operandStack.objects += by;
    if (operandStack.exact != nullptr) {
        operandStack.exact += by;
    }
}

/// Makes room for one more object; false where the stack may not grow.
bool makeRoom() {
    const Rules& inForce = rules();
    if (operandStack.count + operandStack.floor == 0 && storage.rules != &inForce) {
        closeStack();
        storage.rules = &inForce;
    }
    if (operandStack.count < operandStack.capacity) {
        return true;
    }
    const std::int32_t room = operandStack.floor + operandStack.capacity;
    if (room >= inForce.stackLimit) {
        return false;
    }
    const std::int32_t wanted = std::max(firstCapacity, room * 2);
    resizeStorage(std::min(wanted, inForce.stackLimit), inForce.exactNumbers);
    return true;
}

constexpr std::uint32_t typeBit(ObjectType type) {
    return 1U << static_cast<unsigned>(type);
}

constexpr std::uint32_t anyType = 0xFFFFFFFF;
constexpr std::uint32_t unknownTypeBit = 1U << 31;

/// For each letter of a signature, the types that it takes.
constexpr std::array<std::uint32_t, 256> makeSignatureTypes(bool blocksAreText) {
    std::array<std::uint32_t, 256> types{};
    types.fill(typeBit(ObjectType::empty));
    types['?'] = anyType;
    types['x'] = typeBit(ObjectType::integer) | typeBit(ObjectType::fixed);
    types['n'] = typeBit(ObjectType::null);
    types['b'] = typeBit(ObjectType::boolean);
    types['i'] = typeBit(ObjectType::integer);
    types['f'] = typeBit(ObjectType::fixed);
    types['r'] = typeBit(ObjectType::reference);
    types['l'] = typeBit(ObjectType::literal);
    types['t'] = typeBit(ObjectType::text) | (blocksAreText ? typeBit(ObjectType::block) : 0);
    types['a'] = typeBit(ObjectType::array);
    types['p'] = typeBit(ObjectType::procedure);
    types['d'] = typeBit(ObjectType::dictionary);
    types['s'] = typeBit(ObjectType::stream);
    return types;
}

constexpr auto strictSignatureTypes = makeSignatureTypes(false);
constexpr auto lenientSignatureTypes = makeSignatureTypes(true);

std::uint32_t bitOf(const Object& object) {
    const auto code = static_cast<std::uint16_t>(object.type);
    return code <= static_cast<std::uint16_t>(ObjectType::stream) ? 1U << code : unknownTypeBit;
}

/// Owner of a popped object that is freed only where the caller says so.
class Popped {
public:
    explicit Popped(bool free) : object_(popStack()), free_(free) {}
    ~Popped() {
        if (!free_) {
            object_.release();
        }
    }
    Popped(const Popped&) = delete;
    Popped& operator=(const Popped&) = delete;

    const Object& operator*() const { return object_.get(); }

private:
    ObjectOwner object_;
    bool free_;
};

void pushShallow(ObjectType type, std::int32_t value, double exact = detail::noExactValue) {
    detail::push(Object{type, 0, std::bit_cast<std::uint32_t>(value)}, exact);
}

void pushTextual(ObjectType type, std::string_view bytes) {
    Object object;
    textualObject(object, type, bytes);
    pushStack(object);
}

} // namespace

namespace detail {

std::int32_t growAndPush(Object object, double exact) {
    ObjectOwner owner(object);
    if (!makeRoom()) {
        raiseException(Exception::overflow);
        return operandStack.count;
    }
    if (operandStack.exact != nullptr) {
        operandStack.exact[operandStack.count] = exact;
    }
    operandStack.objects[operandStack.count] = owner.release();
    return ++operandStack.count;
}

Object popEmpty() {
    raiseException(Exception::underflow);
    return {};
}

} // namespace detail

Object indexStack(std::int32_t depth) {
    if (depth < 0 || depth >= operandStack.count) {
        raiseException(depth < 0 ? Exception::overflow : Exception::underflow);
        return {};
    }
    return operandStack.objects[operandStack.count - 1 - depth];
}

void clearStack(std::int32_t keep) {
    keep = std::max(keep, 0);
    bool valid = true;
    while (operandStack.count > keep) {
        Object object = popStack();
        valid = detail::dropObject(object) && valid;
    }
    if (!valid) {
        raiseException(Exception::type);
    }
}

void emptyStack() {
    operandStack.count = 0;
}

void closeStack() noexcept {
    while (operandStack.count > 0) {
        Object object = popStack();
        detail::dropObject(object);
    }
    storage = Storage{};
    operandStack = detail::OperandStack{};
}

std::int32_t countToMark(Mark kind) {
    for (std::int32_t depth = 0; depth < operandStack.count; ++depth) {
        const Object& object = operandStack.objects[operandStack.count - 1 - depth];
        if (object.type == ObjectType::mark) {
            if (object.data == static_cast<std::uint32_t>(kind)) {
                return depth;
            }
            break;
        }
    }
    raiseException(Exception::mark);
    return 0;
}

void checkStack(std::string_view signature) {
    if (signature.size() > static_cast<std::size_t>(operandStack.count)) {
        raiseException(Exception::underflow);
        return;
    }
    const auto& types = rules().blocksAreText ? lenientSignatureTypes : strictSignatureTypes;
    const Object* operand = operandStack.objects + operandStack.count - signature.size();
    for (const char letter : signature) {
        if ((types[static_cast<unsigned char>(letter)] & bitOf(*operand)) == 0) {
            // What lies at or below a barrier belongs to somebody else: it is no operand.
            const bool isBarrier = operand->type == ObjectType::mark &&
                                   operand->data == static_cast<std::uint32_t>(Mark::barrier);
            raiseException(isBarrier ? Exception::underflow : Exception::range);
            return;
        }
        ++operand;
    }
}

void pushBoolean(std::int32_t value) {
    if (value != 0 && value != 1) {
        raiseException(Exception::type);
    }
    pushShallow(ObjectType::boolean, value);
}

void pushMark(Mark kind) {
    pushShallow(ObjectType::mark, static_cast<std::int32_t>(kind));
}

void pushInteger(std::int32_t value) {
    pushShallow(ObjectType::integer, value);
}

void pushFixed(Fixed value) {
    pushShallow(ObjectType::fixed, value);
}

void pushReal(Fixed value, double exact) {
    if (rules().exactNumbers) {
        detail::push(objectOfReal(exact), exact);
    } else {
        pushShallow(ObjectType::fixed, value);
    }
}

void pushExactInteger(std::int32_t value, double exact) {
    pushShallow(ObjectType::integer, value, exact);
}

void pushLiteral(std::string_view bytes) {
    pushTextual(ObjectType::literal, bytes);
}

void pushText(std::string_view bytes) {
    pushTextual(ObjectType::text, bytes);
}

void pushPoint(const Point& point) {
    pushFixed(point.x);
    pushFixed(point.y);
}

void pushRect(const Rect& rect) {
    for (const Fixed side : {rect.left, rect.top, rect.right, rect.bottom}) {
        pushFixed(side);
    }
}

void pushMatrix(const Matrix& matrix) {
    for (const Fixed entry : {matrix.a, matrix.b, matrix.c, matrix.d, matrix.tx, matrix.ty}) {
        pushFixed(entry);
    }
}

bool popBoolean(bool free) {
    return booleanObject(*Popped(free));
}

std::int32_t popMark(bool free) {
    return markObject(*Popped(free));
}

std::int32_t popInteger(bool free) {
    return integerObject(*Popped(free));
}

Fixed popFixed(bool free) {
    return fixedObject(*Popped(free));
}

Fixed popExtend(bool free) {
    return extendObject(*Popped(free));
}

void popReference(std::int32_t& number, std::int32_t& generation, bool free) {
    referenceObject(*Popped(free), number, generation);
}

Point popPoint(bool free) {
    Point point;
    point.y = popExtend(free);
    point.x = popExtend(free);
    return point;
}

Rect popRect(bool free) {
    Rect rect;
    for (Fixed* side : {&rect.top, &rect.right, &rect.bottom, &rect.left}) {
        *side = popExtend(free);
    }
    return rect;
}

Matrix popMatrix(bool free) {
    Matrix matrix;
    for (Fixed* entry : {&matrix.ty, &matrix.tx, &matrix.d, &matrix.c, &matrix.b, &matrix.a}) {
        *entry = popExtend(free);
    }
    return matrix;
}

double popNumber() {
    const ObjectOwner object(popStack());
    if (operandStack.exact == nullptr) {
        return realFromFixed(extendObject(object.get()));
    }
    const double exact = operandStack.exact[operandStack.count];
    if (object.get().type == ObjectType::integer) {
        return std::isnan(exact) ? integerObject(object.get()) : exact;
    }
    const Fixed value = fixedObject(object.get());
    return std::isnan(exact) ? realFromFixed(value) : exact;
}

RealPoint popRealPoint() {
    RealPoint point;
    point.y = popNumber();
    point.x = popNumber();
    return point;
}

RealMatrix popRealMatrix() {
    RealMatrix matrix;
    for (double* entry : {&matrix.ty, &matrix.tx, &matrix.d, &matrix.c, &matrix.b, &matrix.a}) {
        *entry = popNumber();
    }
    return matrix;
}

ObjectOwner popLiteral() {
    ObjectOwner object(popStack());
    literalObject(object.get());
    return object;
}

ObjectOwner popText() {
    ObjectOwner object(popStack());
    textObject(object.get());
    return object;
}

StackGuard::~StackGuard() {
    while (operandStack.count > depth_) {
        Object object = popStack();
        detail::dropObject(object);
    }
}

StackFloor::StackFloor() : hidden_(operandStack.count) {
    operandStack.count = 0;
    moveFloor(hidden_);
}

StackFloor::~StackFloor() {
    while (operandStack.count > 0) {
        detail::dropObject(operandStack.objects[--operandStack.count]);
    }
    moveFloor(-hidden_);
    operandStack.count = hidden_;
}

} // namespace corvane
