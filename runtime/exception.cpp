#include "runtime/exception.h"

#include "host/zone.h"

namespace corvane {

namespace {

/// Free bytes of the zone below which long work had better stop.
constexpr std::int32_t memoryReserve = 16384;

Exception pendingException = Exception::none;
std::int32_t handlerIndex = 0;

std::int32_t throwPending() {
    if (pendingException == Exception::none) {
        return 0;
    }
    if (handlerIndex > 0) {
        throw detail::Unwinding{};
    }
    return unguardedRaise;
}

} // namespace

std::int32_t raiseException(Exception code) {
    if (code == Exception::none) {
        return 0;
    }
    pendingException = code;
    return throwPending();
}

void failException(Exception code) {
    pendingException = code;
    throw detail::Unwinding{};
}

std::int32_t againException() {
    return throwPending();
}

Exception valueException() {
    return pendingException;
}

Exception resetException() {
    return std::exchange(pendingException, Exception::none);
}

std::int32_t memoryException() {
    return FreeMem() < memoryReserve ? raiseException(Exception::memory) : 0;
}

std::int32_t handlerDepth() {
    return handlerIndex;
}

namespace detail {

HandlerDepth::HandlerDepth() {
    if (handlerIndex == handlerLimit) {
        failException(Exception::limit);
    }
    ++handlerIndex;
}

HandlerDepth::~HandlerDepth() {
    --handlerIndex;
}

void storeException(Exception code) {
    pendingException = code;
}

} // namespace detail

bool isFileFault(Exception code) {
    switch (code) {
    case Exception::codec:
    case Exception::underflow:
    case Exception::overflow:
    case Exception::structure:
    case Exception::type:
    case Exception::range:
    case Exception::mark:
    case Exception::context:
        return true;
    default:
        return false;
    }
}

} // namespace corvane
