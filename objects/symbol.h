// Symbol tables: names to 32-bit values, and the two classifiers that tell numbers from words.
#pragma once

#include "host/artwork.h"
#include "host/zone.h"

#include <cstdint>
#include <string_view>

namespace corvane {

inline constexpr std::uint32_t symbolBuckets = 47;

struct SymbolNode;

/// 47 chains, newest entry first.
struct SymbolTable {
    Ref<SymbolNode> bucket[symbolBuckets];
};
static_assert(sizeof(SymbolTable) == 188);

Ref<SymbolTable> openSymbol();
void closeSymbol(Ref<SymbolTable> table);
/// `name` must outlive the table. A newer entry hides an older one of the same name.
Ref<SymbolNode> appendSymbol(Ref<SymbolTable> table, const char* name, std::int32_t value);
/// False, and value 0, where the name is unknown.
bool lookupSymbol(Ref<SymbolTable> table, std::string_view name, std::int32_t& value);

/// Optional sign, then decimal digits, no fewer than none; wraps in 32 bits. True only where the
/// whole token was read; the result is stored in every case.
bool integerSymbol(std::string_view token, std::int32_t& result);
/// Optional sign, digits, optionally a point and digits; at least one digit. Digits of the fraction
/// after the ninth do not change the result.
bool fixedSymbol(std::string_view token, Fixed& result);

} // namespace corvane
