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
        ++tokenCount_;
        if (++sinceCheck_ == tokensPerCheck) {
            sinceCheck_ = 0;
            check(tokens);
        }
    }
    /// A stream begins at this position of the file.
    void beginStream(std::int64_t start) { start_ = start; }
    void finishStream(std::int64_t bytes) { done_ += bytes; }
    /// Whether forms may still be drawn, of a page whose streams delivered so many bytes: they may
    /// use up half of what a page may, so that the rest of it is read.
    bool hasRoom(std::int64_t bytes) const;
    /// Work that counts as much as so many tokens; raises `limit` past the budget.
    void charge(std::int64_t tokens);
    /// Work in steps of a few nanoseconds, of which a token takes some. Every so often raises as
    /// `charge` does, or `cancelled` where the host says that the person wants to stop.
    void work(std::int64_t steps) {
        steps_ += steps;
        if (steps_ >= stepsPerCheck) {
            chargeSteps();
        }
    }

    /// How far the page's content is. What runs in between, of a stream of its own, does not move
    /// it on.
    struct Place {
        std::int64_t done = 0;
        std::int64_t start = 0;
    };
    Place place() const { return {done_, start_}; }
    void setPlace(const Place& place) {
        done_ = place.done;
        start_ = place.start;
    }

    /// Called for every operator that failed; raises `limit` past the budget.
    void fault(Filter& tokens);

private:
    /// Well under a tenth of a second of work.
    static constexpr std::int64_t tokensPerCheck = 16384;

    /// About a hundredth of a second of work.
    static constexpr std::int64_t stepsPerCheck = 1'000'000;

    void check(Filter& tokens);
    void chargeSteps();

    std::int64_t total_ = 0;
    std::int64_t done_ = 0;
    std::int64_t start_ = 0;
    std::int64_t faults_ = 0;
    std::int64_t tokenCount_ = 0;
    std::int64_t sinceCheck_ = 0; ///< tokens
    std::int64_t steps_ = 0;      ///< that were not charged yet
};

} // namespace corvane
