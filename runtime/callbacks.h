// Calling the host: finds the slot, checks the result and raises `host` where the host failed.
#pragma once

#include "host/callbacks.h"
#include "runtime/exception.h"

#include <type_traits>
#include <utility>

namespace corvane {

/// The host's table during a call of `main_entry`, otherwise null.
extern const HostProcedure* callbacks;

/// Calls a slot. An error result other than 0, an empty slot and a missing table raise `host`; a
/// yes/no slot answers bool, an arithmetic slot its value, the others nothing.
template <class Result, class... Parameters>
auto callHost(Slot<Result(Parameters...)> slot, std::type_identity_t<Parameters>... arguments) {
    const auto procedure = callbacks ? slotProcedure(callbacks, slot) : nullptr;
    if (procedure == nullptr) {
        failException(Exception::host);
    }
    if constexpr (std::is_same_v<Result, HostError>) {
        if (procedure(arguments...) != HostError::none) {
            failException(Exception::host);
        }
    } else if constexpr (std::is_same_v<Result, HostBoolean>) {
        return (static_cast<std::int32_t>(procedure(arguments...)) & 0xFF) != 0;
    } else {
        return procedure(arguments...);
    }
}

} // namespace corvane
