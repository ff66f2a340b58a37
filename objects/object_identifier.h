// Number and generation: the name of an indirect object in its file.
#pragma once

#include <cstdint>

namespace corvane {

struct ObjectIdentifier {
    std::int32_t number = 0; ///< 0: no object
    std::int32_t generation = 0;

    friend bool operator==(const ObjectIdentifier&, const ObjectIdentifier&) = default;
};

} // namespace corvane
