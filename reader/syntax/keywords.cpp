#include "reader/syntax/keywords.h"

#include "runtime/rules.h"

#include <array>
#include <memory>
#include <vector>

namespace corvane {

namespace {

// The handlers of these two tables check their own operands: the reader calls some of them
// directly.

constexpr std::array crossReferenceRows = {
    Keyword{"null", "", nullOperator},       Keyword{"true", "", trueOperator},
    Keyword{"false", "", falseOperator},     Keyword{"R", "", referenceOperator},
    Keyword{"xref", "", xrefOperator},       Keyword{"startxref", "", startxrefOperator},
    Keyword{"f", "", freeOperator},          Keyword{"n", "", nodeOperator},
    Keyword{"trailer", "", trailerOperator},
};

constexpr std::array objectRows = {
    Keyword{"null", "", nullOperator},     Keyword{"true", "", trueOperator},
    Keyword{"false", "", falseOperator},   Keyword{"R", "", referenceOperator},
    Keyword{"obj", "", objOperator},       Keyword{"endobj", "", endobjOperator},
    Keyword{"stream", "", streamOperator}, Keyword{"endstream", "", endstreamOperator},
};

/// The content rows of the profile in force.
std::vector<Keyword> rowsInForce() {
    std::vector<Keyword> rows(contentRows().begin(), contentRows().end());
    if (rules().profile == Profile::extended) {
        rows.insert(rows.end(), extendedContentRows().begin(), extendedContentRows().end());
    }
    return rows;
}

struct Tables {
    std::vector<Keyword> contentRowsInForce = rowsInForce();
    KeywordTable crossReference{crossReferenceRows};
    KeywordTable object{objectRows};
    KeywordTable content{contentRowsInForce};
};

std::unique_ptr<Tables> tables;
std::int32_t openCount = 0;

} // namespace

KeywordTable::KeywordTable() : symbols_(openSymbol()) {}

// By way of the other constructor, so that a failure further on closes the symbols again.
KeywordTable::KeywordTable(std::span<const Keyword> rows) : KeywordTable() {
    rows_ = rows;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::string_view name = rows[i].name;
        appendSymbol(symbols_, rows[i].name, static_cast<std::int32_t>(i));
        if (name.size() == 1) {
            single_[static_cast<std::uint8_t>(name.front())] = &rows[i];
        }
    }
}

KeywordTable::~KeywordTable() {
    closeSymbol(symbols_);
}

const Keyword* KeywordTable::find(std::string_view name) const {
    if (name.size() == 1) {
        return single_[static_cast<std::uint8_t>(name.front())];
    }
    std::int32_t row = 0;
    return lookupSymbol(symbols_, name, row) ? &rows_[static_cast<std::size_t>(row)] : nullptr;
}

void openKeywords() {
    if (openCount == 0) {
        tables = std::make_unique<Tables>();
    }
    ++openCount;
}

void closeKeywords() {
    --openCount;
    if (openCount == 0) {
        tables.reset();
    }
}

const KeywordTable& crossReferenceKeywords() {
    return tables->crossReference;
}
const KeywordTable& objectKeywords() {
    return tables->object;
}
const KeywordTable& contentKeywords() {
    return tables->content;
}

} // namespace corvane
