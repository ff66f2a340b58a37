// The keyword tables: which handler a bare word calls, for each kind of data being read.
#pragma once

#include "objects/symbol.h"
#include "reader/syntax/syntax.h"

#include <span>
#include <string_view>

namespace corvane {

/// A row of a table: the word, the operands that must be on the stack (letters of `checkStack`),
/// and what to call then.
struct Keyword {
    const char* name;
    std::string_view operands;
    OperatorHandler handler;
};

/// A symbol table over rows.
class KeywordTable {
public:
    explicit KeywordTable(std::span<const Keyword> rows);
    ~KeywordTable();
    KeywordTable(const KeywordTable&) = delete;
    KeywordTable& operator=(const KeywordTable&) = delete;

    /// The row of that name; null where there is none.
    const Keyword* find(std::string_view name) const;

private:
    KeywordTable();

    std::span<const Keyword> rows_;
    Ref<SymbolTable> symbols_;
    const Keyword* single_[256] = {}; ///< rows of one-letter words, which most are
};

/// Makes the tables for the profile in force with the first call, and drops them with the last.
void openKeywords();
void closeKeywords();

const KeywordTable& crossReferenceKeywords();
const KeywordTable& objectKeywords();
const KeywordTable& contentKeywords();

/// Rows of the content table (reader/content/content_keywords.cpp), in the order of their
/// registration.
std::span<const Keyword> contentRows();
/// Further rows of the extended profile.
std::span<const Keyword> extendedContentRows();

} // namespace corvane
