// The keyword tables of a file's own syntax: which handler a bare word calls.
#pragma once

#include "reader/syntax/keyword_table.h"
#include "reader/syntax/syntax.h"

namespace corvane {

/// A row of a table. Handlers check their own operands: the reader calls some of them directly.
struct Keyword {
    const char* name;
    OperatorHandler handler;
};

struct SyntaxKeywords {
    SyntaxKeywords();

    KeywordTable<Keyword> crossReference;
    KeywordTable<Keyword> object;
};

/// While a document is open.
inline const KeywordTable<Keyword>& crossReferenceKeywords() {
    return SharedTables<SyntaxKeywords>::get().crossReference;
}
inline const KeywordTable<Keyword>& objectKeywords() {
    return SharedTables<SyntaxKeywords>::get().object;
}

} // namespace corvane
