// Why an operation on the artwork was refused.
#pragma once

#include <stdexcept>

namespace corvane {

/// A handle that names nothing, an operation that its art cannot take, or a limit passed. The
/// message is for a person; the artwork is as it was before the call.
class ArtworkError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace corvane
