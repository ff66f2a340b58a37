#include "writer/art/content_text.h"

#include <algorithm>
#include <span>

namespace corvane {

void ContentText::add(std::string_view text) {
    while (!text.empty()) {
        prepare(1);
        const auto room = static_cast<std::size_t>(buffer_.data() + capacity - end_);
        const std::string_view piece = text.substr(0, room);
        end_ = std::ranges::copy(piece, end_).out;
        text.remove_prefix(piece.size());
    }
}

void ContentText::addLevel(std::int64_t value) {
    prepare(numberRoom + 1);
    end_ = writeNumber(end_, value);
    *end_++ = ' ';
}

void ContentText::flush() {
    const auto size = static_cast<std::size_t>(end_ - buffer_.data());
    end_ = buffer_.data();
    writeFilter(stream_, std::as_bytes(std::span(buffer_).first(size)));
}

} // namespace corvane
