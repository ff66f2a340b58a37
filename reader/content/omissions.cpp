#include "reader/content/omissions.h"

#include "runtime/extension.h"
#include "runtime/warning.h"

#include <array>

namespace corvane {

namespace {

constexpr std::size_t kinds = static_cast<std::size_t>(Omission::other) + 1;

std::array<std::int32_t, kinds> counts{};

constexpr std::array<Warning, kinds> warnings = {
    Warning::textLeftOut,    Warning::picture,        Warning::formSkipped,
    Warning::shadingLeftOut, Warning::unknownXObject,
};

} // namespace

void openOmissions() {
    counts.fill(0);
}

void noteOmission(Omission kind) {
    const auto index = static_cast<std::size_t>(kind);
    if (++counts[index] == 1) {
        raiseWarning(warnings[index]);
    }
}

void reportOmissions() {
    const auto extension = knownExtension();
    if (!extension || extension->omitted == nullptr) {
        return;
    }
    for (std::size_t i = 0; i < kinds; ++i) {
        if (counts[i] > 0) {
            extension->omitted(extension->context, static_cast<Omission>(i), counts[i]);
        }
    }
}

} // namespace corvane
