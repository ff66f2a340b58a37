#include "objects/identity.h"

#include "runtime/budget.h"
#include "runtime/exception.h"

#include <algorithm>

namespace corvane {

namespace {

std::int32_t latestIdentity = 0;
std::int32_t latestNamed = 0;

} // namespace

void openIdentity() {
    latestIdentity = 0;
    latestNamed = 0;
}

void closeIdentity() {}

void usedIdentity(std::int32_t number) {
    latestIdentity = std::max(latestIdentity, number);
}

void namedIdentity(std::int32_t number) {
    constexpr std::int32_t near = 1 << 16;
    if (number - latestIdentity <= near) {
        latestNamed = std::max(latestNamed, number);
    }
}

std::int32_t nextIdentity() {
    latestIdentity = std::max(latestIdentity, latestNamed);
    if (latestIdentity >= budget::objectNumber) {
        failException(Exception::structure);
    }
    return ++latestIdentity;
}

std::int32_t lastIdentity() {
    // A number that no table takes may have been noted.
    return std::min(latestIdentity, budget::objectNumber) + 1;
}

} // namespace corvane
