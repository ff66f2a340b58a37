// From tokens to operands: what every loop over tokens does with those that are not keywords.
#pragma once

#include "filters/token/token.h"
#include "objects/stack.h"
#include "reader/syntax/syntax.h"

#include <vector>

namespace corvane {

/// Pushes operands, pushes marks at opening delimiters and runs the structural operators at closing
/// ones, and keeps count of how deep constructs are nested.
class TokenPusher {
public:
    explicit TokenPusher(DocumentCache& cache) : cache_(&cache) {}

    /// For the objects of a file: constructs that are damaged are mended, where the profile allows
    /// it.
    static TokenPusher mending(DocumentCache& cache);

    /// Not for `end` and `keyword`; another type raises `type`. Constructs nested deeper than the
    /// budget raise `structure`.
    void push(TokenType type, const TokenFilter& token);

    /// Forgets open constructs, after the stack was cleared.
    void reset() { depth_ = 0; }
    /// Whether an array, a dictionary or a procedure is open.
    bool isOpen() const { return depth_ > 0; }

    /// Where constructs are mended: takes a word that means nothing, within a construct, for null.
    /// False: it stands there by itself.
    bool pushUnknownWord();
    /// Where constructs are mended: closes those that are open.
    void closeAll();
    /// Whether anything was mended.
    bool hasMended() const { return hasMended_; }

private:
    void open(Mark kind);
    void close(Mark kind);
    void closeInnermost();
    void mendPairs();

    DocumentCache* cache_;
    std::int32_t depth_ = 0;
    bool mends_ = false;
    bool hasMended_ = false;
    std::vector<Mark> open_; ///< where constructs are mended: their kinds, the innermost last
};

} // namespace corvane
