#include "filters/text_sink.h"

#include "runtime/exception.h"

#include <algorithm>
#include <utility>

namespace corvane {

TextSink::TextSink() : Filter(entrySink) {}

std::string TextSink::take() {
    charge_.resize(0);
    return std::exchange(text_, {});
}

std::int32_t TextSink::entrySink(Filter& filter, Operation operation, std::byte* buffer,
                                 std::int32_t* argument) {
    auto& sink = static_cast<TextSink&>(filter);
    switch (operation) {
    case Operation::write: {
        const auto count = static_cast<std::size_t>(std::max(*argument, 0));
        if (sink.text_.capacity() - sink.text_.size() < count) {
            const std::size_t room = std::max(2 * sink.text_.size(), sink.text_.size() + count);
            sink.charge_.resize(static_cast<std::int64_t>(room));
            sink.text_.reserve(room);
        }
        sink.text_.append(static_cast<const char*>(static_cast<const void*>(buffer)), count);
        return *argument;
    }
    case Operation::link:
    case Operation::unlink:
        return 0;
    default:
        failException(Exception::io);
    }
}

} // namespace corvane
