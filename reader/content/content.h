// The content loop: runs a page's content streams, operator by operator.
#pragma once

#include "reader/document/cache.h"
#include "reader/syntax/token_push.h"

#include <cstdint>

namespace corvane {

/// How far a page's content was read, for progress and for the person's wish to stop.
class ContentProgress {
public:
    explicit ContentProgress(std::int64_t total) : total_(total) {}

    /// Called for every token. Every so often tells the host extension how far the work is, and
    /// raises `cancelled` where the host says that the person wants to stop.
    void step(Filter& tokens) {
        if (++tokenCount_ % tokensPerCheck == 0) {
            check(tokens);
        }
    }
    /// A stream begins at this position of the file.
    void beginStream(std::int64_t start) { start_ = start; }
    void finishStream(std::int64_t bytes) { done_ += bytes; }
    /// Called for every operator that failed; raises `limit` past the budget.
    void fault(Filter& tokens);

private:
    /// Well under a tenth of a second of work.
    static constexpr std::int64_t tokensPerCheck = 16384;

    void check(Filter& tokens);

    std::int64_t total_;
    std::int64_t done_ = 0;
    std::int64_t start_ = 0;
    std::int64_t faults_ = 0;
    std::int64_t tokenCount_ = 0;
};

/// Interprets one content stream. Tokens end with the stream; operands (whose open constructs
/// `pusher` counts) and the graphics state do not, for streams may be divided between any two
/// tokens (PDF Reference, 3.6.2). An operator that fails for reasons of the page itself is warned
/// of and skipped; what else is raised ends the page.
void runContent(DocumentCache& cache, const Object& stream, TokenPusher& pusher,
                ContentProgress& progress);

/// Unwinds what the page left open: operands and an unfinished path go, saved states are restored.
void finishContent();

} // namespace corvane
