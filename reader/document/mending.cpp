#include "reader/document/mending.h"

#include "runtime/budget.h"

namespace corvane {

void Mending::note(Mend kind) {
    counts_[static_cast<std::size_t>(kind)] = 1;
}

void Mending::note(Mend kind, std::int32_t number) {
    const auto index = static_cast<std::size_t>(kind);
    if (number > 0 && noted_ < budget::mendedObjects && objects_[index].insert(number).second) {
        ++counts_[index];
        ++noted_;
    }
}

bool Mending::isNothing() const {
    return counts_ == MendCounts{};
}

void Mending::forgetObjects() {
    const bool isHeader = has(Mend::header);
    *this = {};
    if (isHeader) {
        note(Mend::header);
    }
}

} // namespace corvane
