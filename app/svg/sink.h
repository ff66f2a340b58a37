// Where written text goes, and the buffer in front of it.
#pragma once

#include "app/images/byte_sink.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

namespace corvane {

/// Writes to an open file descriptor, which it does not own. Interrupted and partial writes go on.
/// On a pipe without a reader the answer is EPIPE if the process ignores SIGPIPE.
class DescriptorSink final : public ByteSink {
public:
    explicit DescriptorSink(int descriptor) : descriptor_(descriptor) {}
    std::error_code write(std::string_view bytes) override;

private:
    int descriptor_;
};

class StringSink final : public ByteSink {
public:
    std::error_code write(std::string_view bytes) override;
    const std::string& text() const { return text_; }

private:
    std::string text_;
};

/// Gathers text into blocks of `blockSize` bytes. The first failure of the sink is kept; after it
/// everything is dropped. Nothing is written by the destructor: call `flush`.
class TextOutput {
public:
    static constexpr std::size_t blockSize = std::size_t{256} * 1024;

    explicit TextOutput(ByteSink& sink);

    /// Room for `size` bytes (at most `blockSize`), to be taken by `advance`.
    char* room(std::size_t size) {
        if (blockSize - used_ < size) {
            flush();
        }
        return block_.get() + used_;
    }
    /// `end` is where the text that was written at `room` ends.
    void advance(const char* end) { used_ = static_cast<std::size_t>(end - block_.get()); }

    void text(std::string_view text);
    void number(std::int64_t fixed);

    /// Hands on what is gathered; the first failure so far.
    std::error_code flush();
    bool failed() const { return static_cast<bool>(error_); }

private:
    ByteSink& sink_;
    std::unique_ptr<char[]> block_;
    std::size_t used_ = 0;
    std::error_code error_;
};

} // namespace corvane
