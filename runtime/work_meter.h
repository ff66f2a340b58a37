// Work that is bounded for a page as a whole, however many small things ask for it.
#pragma once

#include "runtime/exception.h"

#include <cstddef>
#include <cstdint>
#include <ctime>

namespace corvane {

/// Counts steps. Past its limit it raises `limit`; every million steps it asks the host whether the
/// person wants to stop, and then raises `cancelled`.
class StepMeter {
public:
    explicit StepMeter(std::int64_t limit) : limit_(limit) {}

    void add(std::int64_t steps) {
        count_ += steps;
        if (count_ >= nextCheck_) {
            check();
        }
    }

private:
    void check();

    std::int64_t limit_;
    std::int64_t count_ = 0;
    std::int64_t nextCheck_ = 1; ///< steps at which to look again
};

/// The processor time that codecs may take: `budget::codecSeconds`, and more as they are fed coded
/// bytes, up to `budget::longestCodecSeconds`. So short data cannot cost much.
class CodecClock {
public:
    /// Time counts while one lives; they nest.
    class Scope {
    public:
        explicit Scope(CodecClock& clock) : clock_(clock) { clock.begin(); }
        ~Scope() { clock_.end(); }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        CodecClock& clock_;
    };

    void feed(std::size_t codedBytes) { fed_ += static_cast<std::int64_t>(codedBytes); }

    /// Raises `limit` when the time is over, and `cancelled` when the person wants to stop; the
    /// host is asked ten times a second.
    void check();
    /// Whether `check` raises from now on; raises nothing itself, for procedures called by C code.
    bool mustStop();

private:
    void begin();
    void end();
    std::clock_t spent() const;
    std::clock_t allowed() const;

    std::int64_t fed_ = 0;
    std::clock_t spent_ = 0; ///< in scopes that ended
    std::clock_t start_ = 0; ///< of the outermost scope
    int depth_ = 0;
    std::clock_t nextQuestion_ = 0;
    Exception stopped_ = Exception::none; ///< that `mustStop` found
};

} // namespace corvane
