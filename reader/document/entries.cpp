// Cross-reference sections: entries, the trailer and what ends them.
#include "reader/document/entries.h"

#include "filters/character.h"
#include "objects/identity.h"
#include "objects/stack.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace corvane {

namespace {

/// One entry. The subsection's first number and count stay below the entries until the last was
/// read.
void readEntry(DocumentCache& cache, bool used) {
    checkStack("iiii");
    const std::int32_t generation = popInteger();
    const std::int32_t offset = popInteger();
    const std::int32_t count = popInteger();
    const std::int32_t number = popInteger();
    noteEntry(cache, number, {ObjectPlace::atOffset(offset), generation, used});
    if (count > 1) {
        pushInteger(number + 1);
        pushInteger(count - 1);
    }
}

/// Bytes of an entry as the PDF Reference has it: "nnnnnnnnnn ggggg n" and a two-byte end of line.
constexpr std::size_t entryLength = 20;

std::int32_t digitsValue(std::string_view digits) {
    std::int64_t value = 0;
    for (const char digit : digits) {
        value = value * 10 + (digit - '0');
    }
    return static_cast<std::int32_t>(std::min<std::int64_t>(value, INT32_MAX));
}

/// The entry at the front of `bytes`, if it has the exact form.
std::optional<SectionEntry> regularEntry(std::string_view bytes) {
    if (bytes.size() < entryLength || bytes[10] != ' ' || bytes[16] != ' ' ||
        (bytes[17] != 'n' && bytes[17] != 'f') || !isSpace(bytes[18]) || !isSpace(bytes[19])) {
        return std::nullopt;
    }
    const std::string_view offset = bytes.substr(0, 10);
    const std::string_view generation = bytes.substr(11, 5);
    if (!std::ranges::all_of(offset, isDigit) || !std::ranges::all_of(generation, isDigit)) {
        return std::nullopt;
    }
    return SectionEntry{ObjectPlace::atOffset(digitsValue(offset)), digitsValue(generation),
                        bytes[17] == 'n'};
}

} // namespace

void noteEntry(DocumentCache& cache, std::int32_t number, const SectionEntry& entry) {
    if (number < 0 || number > budget::objectNumber) {
        failException(Exception::structure);
    }
    usedIdentity(number);
    const auto index = static_cast<std::size_t>(number);
    // No object can stand where the header does: such an entry is a free one of a careless writer.
    const bool used =
        entry.used && (entry.place != ObjectPlace::atOffset(0) || !rules().missingObjectIsNull);
    if (!used) {
        freeReference(*cache.references, number, entry.generation, entry.place);
        cache.freedHere.push_back(number);
    } else if (index >= cache.freed.size() || !cache.freed[index]) {
        nodeReference(*cache.references, number, entry.generation, entry.place);
    }
}

void settleFreed(DocumentCache& cache) {
    if (!cache.freedHere.empty() && rules().missingObjectIsNull) {
        const auto highest = static_cast<std::size_t>(std::ranges::max(cache.freedHere));
        cache.freed.resize(std::max(cache.freed.size(), highest + 1));
        for (const std::int32_t number : cache.freedHere) {
            cache.freed[static_cast<std::size_t>(number)] = true;
        }
    }
    cache.freedHere.clear();
}

void readRegularEntries(DocumentCache& cache, TokenFilter& tokens) {
    if (countStack() != 2 || typeObject(indexStack(1)) != ObjectType::integer ||
        typeObject(indexStack(0)) != ObjectType::integer || integerObject(indexStack(0)) < 1) {
        return;
    }
    std::int32_t count = popInteger();
    std::int32_t number = popInteger();
    std::string_view bytes;
    for (; count > 0; --count, ++number) {
        if (bytes.size() < entryLength) {
            bytes = tokens.aheadOfSpace(entryLength);
        }
        const std::optional<SectionEntry> entry = regularEntry(bytes);
        if (!entry) {
            break;
        }
        noteEntry(cache, number, *entry);
        tokens.skip(entryLength);
        bytes.remove_prefix(entryLength);
    }
    if (count > 0) {
        pushInteger(number);
        pushInteger(count);
    }
}

OperatorResult xrefOperator(DocumentCache&) {
    // The next section: of a pair that some writers append, the first has no "startxref".
    return rules().toleratesSubsections && countStack() == 1 &&
                   typeObject(indexStack(0)) == ObjectType::dictionary
               ? 1
               : 0;
}

OperatorResult freeOperator(DocumentCache& cache) {
    readEntry(cache, false);
    return 0;
}

OperatorResult nodeOperator(DocumentCache& cache) {
    readEntry(cache, true);
    return 0;
}

OperatorResult trailerOperator(DocumentCache&) {
    if (rules().toleratesSubsections) {
        clearStack();
    }
    if (countStack() != 0) {
        failException(Exception::structure);
    }
    return 0;
}

OperatorResult startxrefOperator(DocumentCache&) {
    checkStack("d");
    return 1;
}

} // namespace corvane
