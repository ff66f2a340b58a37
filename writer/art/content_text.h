// The text of a page's content on its way out: gathered, and handed to the stream in large pieces.
#pragma once

#include "filters/filter.h"
#include "host/artwork.h"
#include "host/matrix.h"
#include "output/number_text.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

class ContentText {
public:
    /// What is not flushed when the object goes is lost.
    explicit ContentText(Filter& stream) : stream_(stream) {}
    ContentText(const ContentText&) = delete;
    ContentText& operator=(const ContentText&) = delete;

    /// The text as it is; lines end with a line feed.
    void add(std::string_view text);
    /// The number, as the profile writes it, and one space.
    void add(Fixed value) {
        prepare(numberRoom + 1);
        end_ = writeFixed(end_, value);
        *end_++ = ' ';
    }
    void add(const Point& point) {
        add(point.x);
        add(point.y);
    }
    /// A number rounded to so many digits behind the point, and one space. What is no number, or
    /// infinite, raises `type`.
    void addReal(double value, int digits);
    /// The shortest decimal that reads back as the same double, and one space; raises as above.
    void addReal(double value);
    void addMatrix(const RealMatrix& matrix);
    /// A name, as `nameOutput` writes it.
    void addName(std::string_view name);
    /// The body of a string, as `bufferOutput` writes it.
    void addString(std::span<const std::uint8_t> bytes);
    /// A number without a fraction, and one space.
    void addInteger(std::int32_t value);
    /// A level of light and one space; magnitude below 2^48.
    void addLevel(std::int64_t value);
    void flush();

private:
    static constexpr std::size_t capacity = 1 << 15;

    void prepare(std::size_t size) {
        if (static_cast<std::size_t>(buffer_.data() + capacity - end_) < size) {
            flush();
        }
    }

    Filter& stream_;
    std::array<char, capacity> buffer_;
    char* end_ = buffer_.data();
};

} // namespace corvane
