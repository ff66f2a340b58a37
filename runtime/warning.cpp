#include "runtime/warning.h"

#include "runtime/exception.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvane {

namespace {

constexpr Warning firstExportWarning{1001};

std::array<Warning, warningLimit + 1> warnStackStore{};
std::int32_t warnStackIndex = 0;
Warning currentWarning = Warning::none;

Warning& stored(std::int32_t index) {
    return warnStackStore[static_cast<std::size_t>(index)];
}

} // namespace

Warning raiseWarning(Warning code) {
    if (duplicateWarning(code)) {
        return Warning::none;
    }
    stored(warnStackIndex) = code;
    currentWarning = code;
    if (warnStackIndex == warningLimit) {
        raiseException(Exception::limit);
    } else {
        ++warnStackIndex;
    }
    return code;
}

bool duplicateWarning(Warning code) {
    const auto end = warnStackStore.begin() + warnStackIndex;
    return std::find(warnStackStore.begin(), end, code) != end;
}

Warning valueWarning() {
    return currentWarning;
}

Warning popWarning() {
    const Warning popped = warnStackIndex == 0 ? Warning::none : stored(--warnStackIndex);
    currentWarning = warnStackIndex == 0 ? Warning::none : stored(warnStackIndex - 1);
    return popped;
}

Warning resetWarning() {
    warnStackIndex = 0;
    stored(0) = Warning::none;
    return std::exchange(currentWarning, Warning::none);
}

WarningMark::WarningMark() : count_(warnStackIndex) {}

void WarningMark::forgetLater() const {
    while (warnStackIndex > count_) {
        popWarning();
    }
}

bool isImportWarning() {
    return currentWarning < firstExportWarning;
}

} // namespace corvane
