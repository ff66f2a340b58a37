#include "app/svg/sink.h"

#include "host/number.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace corvane {

std::error_code DescriptorSink::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
        if (count < 0) {
            if (errno == EINTR) {
                continue;
            }
            return {errno, std::generic_category()};
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return {};
}

std::error_code StringSink::write(std::string_view bytes) {
    text_.append(bytes);
    return {};
}

TextOutput::TextOutput(ByteSink& sink)
    : sink_(sink), block_(std::make_unique_for_overwrite<char[]>(blockSize)) {}

void TextOutput::text(std::string_view text) {
    while (!text.empty()) {
        char* to = room(1);
        const std::size_t count = std::min(text.size(), blockSize - used_);
        std::memcpy(to, text.data(), count);
        used_ += count;
        text.remove_prefix(count);
    }
}

void TextOutput::number(std::int64_t fixed) {
    advance(writeNumber(room(numberRoom), fixed));
}

std::error_code TextOutput::flush() {
    if (!error_ && used_ != 0) {
        error_ = sink_.write({block_.get(), used_});
    }
    used_ = 0;
    return error_;
}

} // namespace corvane
