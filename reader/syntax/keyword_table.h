// A table of keywords: rows found by the word they begin with.
#pragma once

#include "objects/symbol.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace corvane {

/// `Row` has the word in `name`.
template <class Row>
class KeywordTable {
public:
    explicit KeywordTable(std::span<const Row> rows) : rows_(rows) {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const std::string_view name = rows[i].name;
            appendSymbol(symbols_.table, rows[i].name, static_cast<std::int32_t>(i));
            if (name.size() == 1) {
                single_[static_cast<std::uint8_t>(name.front())] = &rows[i];
            }
        }
    }

    /// The row of that name; null where there is none.
    const Row* find(std::string_view name) const {
        if (name.size() == 1) {
            return single_[static_cast<std::uint8_t>(name.front())];
        }
        std::int32_t row = 0;
        return lookupSymbol(symbols_.table, name, row) ? &rows_[static_cast<std::size_t>(row)]
                                                       : nullptr;
    }

private:
    struct Symbols {
        Symbols() : table(openSymbol()) {}
        ~Symbols() { closeSymbol(table); }
        Symbols(const Symbols&) = delete;
        Symbols& operator=(const Symbols&) = delete;

        Ref<SymbolTable> table;
    };

    std::span<const Row> rows_;
    Symbols symbols_;
    const Row* single_[256] = {}; ///< rows of one-letter words, which most are
};

/// A share in tables that all open documents have in common. The first share makes them, for the
/// profile in force; the last one drops them.
template <class Tables>
class SharedTables {
public:
    SharedTables() {
        if (shares == 0) {
            tables = std::make_unique<Tables>();
        }
        ++shares;
    }
    ~SharedTables() {
        if (--shares == 0) {
            tables.reset();
        }
    }
    SharedTables(const SharedTables&) = delete;
    SharedTables& operator=(const SharedTables&) = delete;

    static const Tables& get() { return *tables; }

private:
    static inline std::unique_ptr<Tables> tables;
    static inline std::int32_t shares = 0;
};

} // namespace corvane
