// The content table: which handler an operator of page content calls.
#pragma once

#include "reader/syntax/keyword_table.h"

#include <string_view>
#include <vector>

namespace corvane {

struct Interpreter;

using ContentHandler = void (*)(Interpreter& interpreter);

/// A row: the operator, the operands that must be on the stack (letters of `checkStack`), and what
/// to call then.
struct ContentKeyword {
    const char* name;
    std::string_view operands;
    ContentHandler handler;
    bool isOperand = false; ///< a word that stands for an operand of the operator to come
};

/// The rows of the profile in force.
struct ContentKeywords {
    ContentKeywords();

    std::vector<ContentKeyword> rows;
    KeywordTable<ContentKeyword> table;
};

/// While a document is open.
inline const KeywordTable<ContentKeyword>& contentKeywords() {
    return SharedTables<ContentKeywords>::get().table;
}

} // namespace corvane
