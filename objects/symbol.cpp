#include "objects/symbol.h"

#include "runtime/decimal.h"
#include "runtime/fixed.h"
#include "runtime/memory.h"

#include <numeric>
#include <utility>

namespace corvane {

struct SymbolNode {
    Ref<SymbolNode> next;
    std::int32_t value = 0;
    const char* name = nullptr;
};

namespace {

std::size_t bucketOf(std::string_view name) {
    const std::uint32_t sum = std::accumulate(
        name.begin(), name.end(), std::uint32_t{0},
        [](std::uint32_t so, char byte) { return so + static_cast<unsigned char>(byte); });
    return sum % symbolBuckets;
}

} // namespace

Ref<SymbolTable> openSymbol() {
    return allocateRecord<SymbolTable>();
}

void closeSymbol(Ref<SymbolTable> table) {
    if (!table) {
        return;
    }
    for (Ref<SymbolNode> node : table->bucket) {
        while (node) {
            freeRecord(std::exchange(node, node->next));
        }
    }
    freeRecord(table);
}

Ref<SymbolNode> appendSymbol(Ref<SymbolTable> table, const char* name, std::int32_t value) {
    const Ref<SymbolNode> node = allocateRecord<SymbolNode>();
    Ref<SymbolNode>& front = table->bucket[bucketOf(name)];
    *node = SymbolNode{front, value, name};
    front = node;
    return node;
}

bool lookupSymbol(Ref<SymbolTable> table, std::string_view name, std::int32_t& value) {
    for (Ref<SymbolNode> node = table->bucket[bucketOf(name)]; node; node = node->next) {
        if (name == node->name) {
            value = node->value;
            return true;
        }
    }
    value = 0;
    return false;
}

bool integerSymbol(std::string_view token, std::int32_t& result) {
    result = integerFromDecimal(takeInteger(token));
    return token.empty();
}

bool fixedSymbol(std::string_view token, Fixed& result) {
    const Decimal decimal = takeDecimal(token);
    if (decimal.empty() || !token.empty()) {
        return false;
    }
    result = fixedFromDecimal(decimal, divideFixed);
    return true;
}

} // namespace corvane
