// What appending cannot mend.
#pragma once

#include "runtime/exception.h"
#include "runtime/reason.h"

namespace corvane {

[[noreturn]] inline void refuseMend(Reason reason) {
    noteReason(reason);
    failException(Exception::repairedFile);
}

} // namespace corvane
