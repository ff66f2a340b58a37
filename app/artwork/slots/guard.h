// How a slot does its work: guarded, with the document at hand.
#pragma once

#include "app/artwork/slots/callbacks.h"
#include "host/callbacks.h"

#include <exception>
#include <utility>

namespace corvane {

/// Runs `body(scope)`; whatever it throws is noted for the person and answered as a failure, for
/// nothing may unwind into the plug-in.
template <class Body>
HostError guardedSlot(Body&& body) noexcept {
    try {
        std::forward<Body>(body)(CallbackScope::current());
        return HostError::none;
    } catch (const std::exception& exception) {
        if (CallbackScope* const scope = CallbackScope::inForce()) {
            scope->noteFailure(exception.what());
        }
        return HostError::failed;
    }
}

/// What a pointer from the plug-in points to. Throws `ArtworkError` for null.
template <class T>
T& target(T* pointer) {
    if (pointer == nullptr) {
        throw ArtworkError("a record is missing");
    }
    return *pointer;
}

} // namespace corvane
