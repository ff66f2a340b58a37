// Where written bytes go.
#pragma once

#include <string_view>
#include <system_error>

namespace corvane {

class ByteSink {
public:
    ByteSink() = default;
    ByteSink(const ByteSink&) = delete;
    ByteSink& operator=(const ByteSink&) = delete;
    virtual ~ByteSink() = default;

    /// Takes all of `bytes`, or says why it could not.
    virtual std::error_code write(std::string_view bytes) = 0;
};

} // namespace corvane
