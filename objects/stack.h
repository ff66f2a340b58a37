// The operand stack: one for the process, valid during a call of the plug-in.
//
// Objects on the stack own their storage; popping hands it to the caller. In the extended profile
// an array of doubles runs beside the objects: the exact value of each number, which content
// operators read with `popNumber`, while the 16.16 object keeps the classic value. The profile is
// taken over whenever the first object is pushed; an object pushed by `pushStack`, or changed in
// place, is worth what it says.
#pragma once

#include "host/artwork.h"
#include "host/matrix.h"
#include "objects/object.h"

#include <cstdint>
#include <limits>
#include <string_view>

namespace corvane {

/// What an opening delimiter left on the stack.
enum class Mark : std::int32_t {
    hexadecimal = 0,
    array = 1,
    procedure = 2,
    dictionary = 3,
    barrier = 4, ///< below what one read leaves: constructs do not reach beyond it
};

namespace detail {

/// Stands in the parallel array for "what the object says".
inline constexpr double noExactValue = std::numeric_limits<double>::quiet_NaN();

struct OperandStack {
    Object* objects = nullptr;
    double* exact = nullptr; ///< null in the original profile
    std::int32_t count = 0;
    std::int32_t capacity = 0;
    std::int32_t floor = 0; ///< objects below the first of these, hidden by a `StackFloor`
};
extern OperandStack operandStack;

/// The first object, and one for which there is no room yet.
std::int32_t growAndPush(Object object, double exact);
Object popEmpty();

inline std::int32_t push(Object object, double exact) {
    OperandStack& stack = operandStack;
    // False for a count of 0 as well: the first push takes over the profile in force.
    if (static_cast<std::uint32_t>(stack.count) - 1 >=
        static_cast<std::uint32_t>(stack.capacity) - 1) {
        return growAndPush(object, exact);
    }
    if (stack.exact != nullptr) {
        stack.exact[stack.count] = exact;
    }
    stack.objects[stack.count] = object;
    return ++stack.count;
}

} // namespace detail

inline std::int32_t countStack() {
    return detail::operandStack.count;
}

/// Pushes the object (its ownership too); the new count. A full stack raises `overflow`, a full
/// zone `memory`; the object is then freed.
inline std::int32_t pushStack(Object object) {
    return detail::push(object, detail::noExactValue);
}

/// An empty stack raises `underflow`.
inline Object popStack() {
    detail::OperandStack& stack = detail::operandStack;
    return stack.count > 0 ? stack.objects[--stack.count] : detail::popEmpty();
}

/// The object `depth` places below the top, not retained. Negative: `overflow`; too deep:
/// `underflow`.
Object indexStack(std::int32_t depth);
/// Pops and frees every object, or those above the first `keep`.
void clearStack(std::int32_t keep = 0);
/// Pops every object without freeing it.
void emptyStack();
/// Frees what is left on the stack, whatever it is, and gives its memory back.
void closeStack() noexcept;
/// Objects above the nearest mark, which must be of this kind; otherwise `mark`.
std::int32_t countToMark(Mark kind);
/// Compares the topmost operands with `signature`, deepest first: too few raise `underflow`,
/// another type raises `range`. Letters: ? any, x number, n null, b boolean, i integer, f fixed, r
/// reference, l literal, t text (extended: or block), a array, p procedure, d dictionary, s stream.
void checkStack(std::string_view signature);

/// Other values than 0 and 1 raise `type`.
void pushBoolean(std::int32_t value);
void pushMark(Mark kind);
void pushInteger(std::int32_t value);
void pushFixed(Fixed value);
/// A real number: the object holds it as 16.16 (saturated), the parallel array exactly.
void pushReal(Fixed value, double exact);
/// An integer whose exact value is `exact` (they differ where 32 bits were too few).
void pushExactInteger(std::int32_t value, double exact);
void pushLiteral(std::string_view bytes);
void pushText(std::string_view bytes);
void pushPoint(const Point& point);
void pushRect(const Rect& rect);
void pushMatrix(const Matrix& matrix);

// Typed pops. The object is popped and, with `free`, freed, also where a wrong type raises `range`;
// without it somebody else owns the storage.

bool popBoolean(bool free = true);
std::int32_t popMark(bool free = true);
std::int32_t popInteger(bool free = true);
Fixed popFixed(bool free = true);
/// An integer or a fixed number as 16.16.
Fixed popExtend(bool free = true);
void popReference(std::int32_t& number, std::int32_t& generation, bool free = true);
Point popPoint(bool free = true);
/// Of the PDF array x1 y1 x2 y2: left x1, bottom y1, right x2, top y2.
Rect popRect(bool free = true);
Matrix popMatrix(bool free = true);

/// A number: exact in the extended profile, its 16.16 value in the original one.
double popNumber();
RealPoint popRealPoint();
RealMatrix popRealMatrix();

/// Pops a name or string into an owner; the bytes are valid while it lives.
ObjectOwner popLiteral();
ObjectOwner popText();

/// Restores the stack's depth when a scope ends, however it ends.
class StackGuard {
public:
    StackGuard() : depth_(countStack()) {}
    ~StackGuard();
    StackGuard(const StackGuard&) = delete;
    StackGuard& operator=(const StackGuard&) = delete;

private:
    std::int32_t depth_;
};

/// Hides what is on the stack while a scope lasts: it is then empty for everybody. What the scope
/// leaves on it is freed.
class StackFloor {
public:
    StackFloor();
    ~StackFloor();
    StackFloor(const StackFloor&) = delete;
    StackFloor& operator=(const StackFloor&) = delete;

private:
    std::int32_t hidden_;
};

} // namespace corvane
