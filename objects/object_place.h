// Where an indirect object stands: at an offset of the file, or at an index in an object stream
// (PDF Reference 1.5, 3.4.6).
#pragma once

#include <cstdint>

namespace corvane {

class ObjectPlace {
public:
    /// At `offset`, counted from the header. A negative one is taken for the largest, which is
    /// outside of every file too.
    static ObjectPlace atOffset(std::int32_t offset) {
        return {0, offset < 0 ? INT32_MAX : offset};
    }
    /// The object `index`, from 0, of the object stream `stream`. A number outside 1 to
    /// `budget::objectNumber` and a negative index raise `structure`.
    static ObjectPlace inStream(std::int32_t stream, std::int32_t index);

    bool isInStream() const { return stream_ != 0; }
    /// Of the object in the file; in an object stream: `structure`.
    std::int32_t offset() const;
    /// Number of the object stream; 0: it stands in the file itself.
    std::int32_t stream() const { return stream_; }
    /// Which object of its stream it is.
    std::int32_t index() const { return position_; }

    friend bool operator==(const ObjectPlace&, const ObjectPlace&) = default;

private:
    ObjectPlace(std::int32_t stream, std::int32_t position)
        : stream_(stream), position_(position) {}

    std::int32_t stream_;
    std::int32_t position_;
};

} // namespace corvane
