#include "writer/patch/content_bytes.h"

#include "reader/syntax/stream_chain.h"
#include "runtime/exception.h"

#include <algorithm>
#include <span>

namespace corvane {

std::string_view ContentBytes::stream(std::size_t index) {
    if (const auto known = streams_.find(index); known != streams_.end()) {
        return known->second.bytes;
    }
    const std::span<const std::uint32_t> starts = trace_.streamStarts();
    const std::size_t length = starts[index + 1] - starts[index];
    Decoded decoded;
    decoded.charge.resize(static_cast<std::int64_t>(length));
    decoded.bytes.resize(length);
    StreamChain chain(cache_, base_.streams[index].stream.get());
    if (readFilter(chain.top(), std::as_writable_bytes(std::span(decoded.bytes))) != length) {
        failException(Exception::unpatchable);
    }
    return streams_.emplace(index, std::move(decoded)).first->second.bytes;
}

std::size_t ContentBytes::streamAt(std::uint32_t position) const {
    const std::span<const std::uint32_t> starts = trace_.streamStarts();
    const auto behind = std::ranges::upper_bound(starts, position);
    return static_cast<std::size_t>(behind - starts.begin()) - 1;
}

void ContentBytes::append(std::string& text, ByteRange range) {
    const std::span<const std::uint32_t> starts = trace_.streamStarts();
    while (range.start < range.end) {
        const std::size_t index = streamAt(range.start);
        const std::uint32_t end = std::min(range.end, starts[index + 1]);
        text += stream(index).substr(range.start - starts[index], end - range.start);
        if (end < range.end) {
            text += ' ';
        }
        range.start = end;
    }
}

} // namespace corvane
