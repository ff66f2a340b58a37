#include "objects/object_place.h"

#include "runtime/budget.h"
#include "runtime/exception.h"

namespace corvane {

ObjectPlace ObjectPlace::inStream(std::int32_t stream, std::int32_t index) {
    if (stream < 1 || stream > budget::objectNumber || index < 0) {
        failException(Exception::structure);
    }
    return {stream, index};
}

std::int32_t ObjectPlace::offset() const {
    if (isInStream()) {
        failException(Exception::structure);
    }
    return position_;
}

} // namespace corvane
