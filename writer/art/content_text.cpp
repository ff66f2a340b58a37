#include "writer/art/content_text.h"

#include "output/primitives.h"
#include "runtime/exception.h"

#include <algorithm>
#include <charconv>
#include <cmath>
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

void ContentText::addReal(double value, int digits) {
    if (!std::isfinite(value)) {
        failException(Exception::type);
    }
    prepare(realRoom + 1);
    char* end = std::to_chars(end_, end_ + realRoom, value, std::chars_format::fixed, digits).ptr;
    if (digits > 0) {
        while (end[-1] == '0') {
            --end;
        }
        end -= end[-1] == '.' ? 1 : 0;
    }
    end = std::string_view(end_, end) == "-0" ? std::copy_n("0", 1, end_) : end;
    *end++ = ' ';
    end_ = end;
}

void ContentText::addReal(double value) {
    prepare(realRoom + 1);
    end_ = writeReal(end_, value);
    *end_++ = ' ';
}

void ContentText::addMatrix(const RealMatrix& matrix) {
    for (const double value : {matrix.a, matrix.b, matrix.c, matrix.d, matrix.tx, matrix.ty}) {
        addReal(value);
    }
}

void ContentText::addName(std::string_view name) {
    flush();
    nameOutput(stream_, name);
}

void ContentText::addString(std::span<const std::uint8_t> bytes) {
    flush();
    bufferOutput(stream_, bytes);
}

void ContentText::addInteger(std::int32_t value) {
    flush();
    integerOutput(stream_, value);
}

void ContentText::flush() {
    const auto size = static_cast<std::size_t>(end_ - buffer_.data());
    end_ = buffer_.data();
    writeFilter(stream_, std::as_bytes(std::span(buffer_).first(size)));
}

} // namespace corvane
