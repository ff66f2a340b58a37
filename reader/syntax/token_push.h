// From tokens to operands: what every loop over tokens does with those that are not keywords.
#pragma once

#include "filters/token.h"
#include "objects/stack.h"
#include "reader/syntax/syntax.h"

namespace corvane {

/// Pushes operands, pushes marks at opening delimiters and runs the structural operators at closing
/// ones, and keeps count of how deep constructs are nested.
class TokenPusher {
public:
    explicit TokenPusher(DocumentCache& cache) : cache_(&cache) {}

    /// Not for `end` and `keyword`; another type raises `type`. Constructs nested deeper than the
    /// budget raise `structure`.
    void push(TokenType type, const TokenFilter& token);

    /// Forgets open constructs, after the stack was cleared.
    void reset() { depth_ = 0; }
    /// Whether an array, a dictionary or a procedure is open.
    bool isOpen() const { return depth_ > 0; }

private:
    void open(Mark kind);
    void close(OperatorHandler construct);

    DocumentCache* cache_;
    std::int32_t depth_ = 0;
};

} // namespace corvane
