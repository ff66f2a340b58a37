// What filters have in common that transform what is written through them.
//
// An encoder hands on what it has, and the rest when it is unlinked. Reading and seeking raise
// `io`; its mark is that of the filter below.
#pragma once

#include "filters/filter.h"

#include <span>

namespace corvane {

class Encoder : public Filter {
protected:
    Encoder() : Filter(entryEncoder) {}

    /// Transforms bytes, and writes what comes of them to the filter below.
    virtual void encode(std::span<const std::byte> bytes) = 0;
    /// Ends the data.
    virtual void finish() = 0;

private:
    static std::int32_t entryEncoder(Filter& filter, Operation operation, std::byte* buffer,
                                     std::int32_t* argument);
};

} // namespace corvane
