#include "runtime/reason.h"

#include <utility>

namespace corvane {

namespace {

NotedReason noted;

} // namespace

void noteReason(Reason reason, std::string_view name) {
    noted = {reason, std::string(name)};
}

NotedReason takeReason() {
    return std::exchange(noted, {});
}

} // namespace corvane
