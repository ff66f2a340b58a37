#include "runtime/fixed.h"

namespace corvane {

// The arithmetic is needed at compile time; what it promises at its edges is proved there.
static_assert(fixed2long(-0x8000) == 0 && fixed2long(0x8000) == 1);
static_assert(fixed2long(0x28000) == 3 && fixed2long(-0x28000) == -2);
static_assert(fixed2long(INT32_MAX) == 32768 && fixed2long(INT32_MIN) == -32768);
static_assert(ceilingFixed(0x10000) == 1 && ceilingFixed(0x10001) == 2);
static_assert(floorFixed(-1) == -1 && ceilingFixed(INT32_MAX) == 32768);
static_assert(long2fixed(-32768) == INT32_MIN && long2fixed(32768) == INT32_MAX);
static_assert(absoluteFixed(INT32_MIN) == INT32_MAX);
static_assert(multiplyFixed(fixedOne, fixedOne) == fixedOne);
static_assert(multiplyFixed(-98304, fixedOne) == -98304);
static_assert(multiplyFixed(INT32_MAX, INT32_MAX) == INT32_MAX);
static_assert(multiplyFixed(16777217, fixedOne) == 16777216); // 24 bits
static_assert(divideFixed(1, 0) == INT32_MAX && divideFixed(-1, 0) == INT32_MIN);
static_assert(divideFixed(0, 0) == 0 && divideFixed(INT32_MIN, 1) == INT32_MIN);
static_assert(divideFixed(1, 3) == 21845);
static_assert(fixedFromReal(1.0 / 3) == 21845 && fixedFromReal(-1.5 / 65536) == -2);
static_assert(fixedFromReal(1e30) == INT32_MAX && fixedFromReal(-1e30) == INT32_MIN);
static_assert(detail::truncated(std::numeric_limits<double>::quiet_NaN()) == 0);

} // namespace corvane
