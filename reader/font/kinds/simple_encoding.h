// The encoding of a simple font: names of glyphs for its codes.
//
// Source: PDF Reference, 5.5.5.
#pragma once

#include "fonts/encodings.h"
#include "reader/document/cache.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

class SimpleEncoding {
public:
    /// As the font dictionary says it.
    SimpleEncoding(DocumentCache& cache, const Object& font);

    /// The dictionary says one, whole or some differences.
    bool isGiven() const { return base_.has_value() || hasDifferences_; }
    bool hasBase() const { return base_.has_value(); }
    /// What counts for codes of which the dictionary says nothing.
    void assume(StandardEncodingKind base) { base_ = base; }

    /// Empty where nothing is said of the code: the font program's own encoding counts then.
    std::string_view nameOf(std::uint8_t code) const;

private:
    void readDifferences(DocumentCache& cache, const Object& array);

    std::optional<StandardEncodingKind> base_;
    bool hasDifferences_ = false;
    std::array<std::string, 256> differences_;
};

} // namespace corvane
