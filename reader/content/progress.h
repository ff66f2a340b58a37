// How far content was read: tells the host, and asks whether the person wants to stop.
#pragma once

#include "filters/filter.h"

#include <cstdint>

namespace corvane {

class ContentProgress {
public:
    /// A reading of streams of so many bytes in the file begins.
    void begin(std::int64_t total) {
        *this = ContentProgress();
        total_ = total;
    }
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

    std::int64_t total_ = 0;
    std::int64_t done_ = 0;
    std::int64_t start_ = 0;
    std::int64_t faults_ = 0;
    std::int64_t tokenCount_ = 0;
};

} // namespace corvane
