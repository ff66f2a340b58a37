// Lines that a person types, with Ctrl-C in mind.
#pragma once

#include <optional>
#include <string>

namespace corvane {

/// Waits until an open file has something to read, or has ended; false once the person asked to
/// stop, also just before the wait.
bool waitForInput(int descriptor);

class LineSource {
public:
    /// Reads from an open file descriptor, which it does not own.
    explicit LineSource(int descriptor) : descriptor_(descriptor) {}

    /// The next line without its end; nothing at the end of input, on an error of reading, and once
    /// the person asked to stop, also just before the wait.
    std::optional<std::string> next();

private:
    bool fill();

    int descriptor_;
    std::string pending_;
};

} // namespace corvane
