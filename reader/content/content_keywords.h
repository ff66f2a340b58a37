// The content table: which handler an operator of page content calls.
#pragma once

#include "reader/syntax/keyword_table.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace corvane {

struct Interpreter;

using ContentHandler = void (*)(Interpreter& interpreter);

/// What an operator does, as far as content that is patched must know.
enum class OperatorRole : std::uint8_t {
    other,   ///< nothing that outlives it
    operand, ///< a word that stands for an operand of the operator to come
    construct,
    clipWord, ///< W, W*
    paintPath,
    paint,  ///< the area of the clip, by sh
    object, ///< Do
    save,
    restore,
    matrix,
    fillSpace, ///< and the fill colour with it
    fillColour,
    strokeSpace,
    strokeColour,
    lineWidth,
    cap,
    join,
    miterLimit,
    dash,
    flatness,
    intent,
    external, ///< gs
    beginText,
    endText,
    font,      ///< Tf
    textState, ///< what sets the other parts of the text state, and places lines
    show,
    beginImage,
    imageData,
    endImage,
    beginMarked,
    endMarked,
};

/// A row: the operator, the operands that must be on the stack (letters of `checkStack`), what to
/// call then, and its role.
struct ContentKeyword {
    const char* name;
    std::string_view operands;
    ContentHandler handler;
    OperatorRole role = OperatorRole::other;
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
