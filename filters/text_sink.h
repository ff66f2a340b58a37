// The bottom of a chain that is only written: gathers what is written as text in memory.
#pragma once

#include "filters/filter.h"
#include "runtime/memory.h"

#include <string>

namespace corvane {

class TextSink : public Filter {
public:
    TextSink();

    /// What was written since it was taken last.
    std::string take();

private:
    static std::int32_t entrySink(Filter& filter, Operation operation, std::byte* buffer,
                                  std::int32_t* argument);

    std::string text_;
    ZoneCharge charge_;
};

} // namespace corvane
