// Why an image cannot be read.
#pragma once

#include <stdexcept>

namespace corvane {

/// The sentence is for a person, and goes on behind the name of the image: "is damaged".
class ImageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace corvane
