#include "writer/patch/content_bytes.h"

#include "reader/syntax/stream/stream_chain.h"
#include "runtime/exception.h"

#include <algorithm>
#include <span>

namespace corvane {

std::string_view ContentBytes::stream(std::size_t index) {
    if (const auto known = decoded_.find(index); known != decoded_.end()) {
        return known->second.bytes;
    }
    const std::size_t length = starts_[index + 1] - starts_[index];
    Decoded decoded;
    decoded.charge.resize(static_cast<std::int64_t>(length));
    decoded.bytes.resize(length);
    StreamChain chain(*cache_, streams_[index].get());
    if (readFilter(chain.top(), std::as_writable_bytes(std::span(decoded.bytes))) != length) {
        failException(Exception::unpatchable);
    }
    return decoded_.emplace(index, std::move(decoded)).first->second.bytes;
}

std::size_t ContentBytes::streamAt(std::uint32_t position) const {
    const auto behind = std::ranges::upper_bound(starts_, position);
    return static_cast<std::size_t>(behind - starts_.begin()) - 1;
}

void ContentBytes::append(std::string& text, ByteRange range) {
    while (range.start < range.end) {
        const std::size_t index = streamAt(range.start);
        const std::uint32_t end = std::min(range.end, starts_[index + 1]);
        text += stream(index).substr(range.start - starts_[index], end - range.start);
        if (end < range.end) {
            text += '\n'; // what ends the stream may be a comment
        }
        range.start = end;
    }
}

} // namespace corvane
