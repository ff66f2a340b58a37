// Cross-reference sections: entries, the trailer and what ends them.
#include "reader/document/entries.h"

#include "filters/token/character.h"
#include "objects/identity.h"
#include "objects/stack.h"
#include "reader/document/deferred_entries.h"
#include "reader/syntax/file_bytes.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

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

/// Entries looked at together: what fits the nearest cache.
constexpr std::size_t scannedEntries = 1024;

std::int32_t digitsValue(std::string_view digits) {
    std::int64_t value = 0;
    for (const char digit : digits) {
        value = value * 10 + (digit - '0');
    }
    return static_cast<std::int32_t>(std::min<std::int64_t>(value, INT32_MAX));
}

/// Whether all eight bytes, or all four, are digits.
template <class Word>
bool areDigits(const char* bytes) {
    constexpr Word ones = static_cast<Word>(~Word{0}) / 0xFF;
    Word word = 0;
    std::memcpy(&word, bytes, sizeof word);
    // A digit is 0x30 to 0x39: six more leave the upper half of the byte.
    return ((word | (word + 6 * ones)) & 0xF0 * ones) == 0x30 * ones &&
           (word & 0xF0 * ones) == 0x30 * ones;
}

/// Whether the twenty bytes have the exact form.
bool isRegular(const char* entry) {
    return areDigits<std::uint64_t>(entry) && areDigits<std::uint64_t>(entry + 2) &&
           entry[10] == ' ' && areDigits<std::uint32_t>(entry + 11) && isDigit(entry[15]) &&
           entry[16] == ' ' && (entry[17] == 'n' || entry[17] == 'f') && isSpace(entry[18]) &&
           isSpace(entry[19]);
}

SectionEntry regularEntry(std::string_view bytes) {
    return {ObjectPlace::atOffset(digitsValue(bytes.substr(0, 10))),
            digitsValue(bytes.substr(11, 5)), bytes[17] == 'n'};
}

/// Whether `count` regular entries stand at `position` of the file.
bool areRegular(DocumentCache& cache, std::int32_t position, std::int64_t count) {
    std::int64_t left = count * std::int64_t{entryLength};
    if (left > cache.fileLength - position) {
        return false;
    }
    Filter& file = *cache.fileChain.top();
    seekFilter(file, position);
    std::vector<char> block(entryLength * scannedEntries);
    while (left > 0) {
        const auto wanted = std::span(block).first(
            static_cast<std::size_t>(std::min<std::int64_t>(left, std::ssize(block))));
        if (readFilter(file, std::as_writable_bytes(wanted)) != wanted.size()) {
            return false;
        }
        for (std::size_t at = 0; at < wanted.size(); at += entryLength) {
            if (!isRegular(&wanted[at])) {
                return false;
            }
        }
        left -= std::ssize(wanted);
    }
    return true;
}

/// Defers a whole subsection behind the last token, if it is regular.
bool deferEntries(DocumentCache& cache, TokenFilter& tokens, std::int32_t first,
                  std::int32_t count) {
    if (!cache.deferred) {
        cache.deferred = std::make_unique<DeferredEntries>(cache);
    }
    if (!cache.deferred->takes(std::array{Subsection(first, count)})) {
        return false;
    }
    tokens.aheadOfSpace(1);
    const std::int32_t position = tokens.mark();
    const bool regular = areRegular(cache, position, count);
    if (regular) {
        const auto enter = [&cache, first, position](std::int32_t from, std::int32_t number) {
            const std::string bytes =
                bytesOfFile(cache, position + std::int64_t{entryLength} * from,
                            std::int64_t{entryLength} * number);
            for (std::size_t at = 0; at + entryLength <= bytes.size(); at += entryLength) {
                const auto index = static_cast<std::int32_t>(at / entryLength);
                enterEntry(cache, first + from + index,
                           regularEntry(std::string_view(bytes).substr(at, entryLength)));
            }
        };
        cache.deferred->add(first, count, enter);
        tokens.seek(position + count * static_cast<std::int32_t>(entryLength));
    }
    return regular;
}

} // namespace

void noteEntry(DocumentCache& cache, std::int32_t number, const SectionEntry& entry) {
    if (cache.deferred) {
        cache.deferred->giveUp();
    }
    enterEntry(cache, number, entry);
}

void enterEntry(DocumentCache& cache, std::int32_t number, const SectionEntry& entry) {
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
    if (rules().missingObjectIsNull && deferEntries(cache, tokens, number, count)) {
        return;
    }
    std::string_view bytes;
    for (; count > 0; --count, ++number) {
        if (bytes.size() < entryLength) {
            bytes = tokens.aheadOfSpace(entryLength);
        }
        if (bytes.size() < entryLength || !isRegular(bytes.data())) {
            break;
        }
        noteEntry(cache, number, regularEntry(bytes));
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
