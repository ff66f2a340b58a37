#include "filters/encoder.h"

#include "runtime/exception.h"

namespace corvane {

std::int32_t Encoder::entryEncoder(Filter& filter, Operation operation, std::byte* buffer,
                                   std::int32_t* argument) {
    auto& self = static_cast<Encoder&>(filter);
    switch (operation) {
    case Operation::write:
        if (*argument > 0) {
            self.encode({buffer, static_cast<std::size_t>(*argument)});
        }
        return *argument;
    case Operation::mark:
        return *argument = markFilter(*self.next);
    case Operation::read:
    case Operation::seek:
        failException(Exception::io);
    case Operation::unlink:
        self.finish();
        return 0;
    default:
        return 0;
    }
}

} // namespace corvane
