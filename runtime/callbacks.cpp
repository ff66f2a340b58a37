#include "runtime/callbacks.h"

namespace corvane {

const HostProcedure* callbacks = nullptr;

} // namespace corvane
