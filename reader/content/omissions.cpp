#include "reader/content/omissions.h"

#include "runtime/extension.h"
#include "runtime/warning.h"

#include <algorithm>

namespace corvane {

namespace {

/// The warning of a kind; `none` where the page looks nearly as it should.
Warning warningOf(Omission kind) {
    switch (kind) {
    case Omission::text:
        return Warning::textLeftOut;
    case Omission::image:
        return Warning::picture;
    case Omission::form:
        return Warning::formSkipped;
    case Omission::shading:
    case Omission::pattern:
    case Omission::colourSpace:
        return Warning::shadingLeftOut;
    case Omission::other:
        return Warning::unknownXObject;
    case Omission::unknownOperator:
        return Warning::unknownOperator;
    case Omission::damagedOperator:
    case Omission::longDash:
        return Warning::operatorFailed;
    default:
        return Warning::none;
    }
}

} // namespace

void Omissions::note(Omission kind) {
    add(kind, 1);
}

void Omissions::add(Omission kind, std::int32_t count) {
    std::int32_t& counted = counts_[static_cast<std::size_t>(kind)];
    const bool isFirst = counted == 0 && count > 0;
    counted += std::min(count, INT32_MAX - counted);
    if (isFirst && !isQuiet_ && warningOf(kind) != Warning::none) {
        raiseWarning(warningOf(kind));
    }
}

void Omissions::add(const Omissions& other) {
    for (std::size_t i = 0; i < omissionKinds; ++i) {
        add(static_cast<Omission>(i), other.counts_[i]);
    }
}

bool Omissions::holdsHidden() const {
    constexpr std::array kinds = {Omission::text,         Omission::image,    Omission::form,
                                  Omission::shading,      Omission::pattern,  Omission::colourSpace,
                                  Omission::transparency, Omission::softMask, Omission::overprint,
                                  Omission::other};
    return std::ranges::any_of(
        kinds, [&](Omission kind) { return counts_[static_cast<std::size_t>(kind)] > 0; });
}

void Omissions::report() const {
    const auto extension = knownExtension();
    if (!extension || extension->omitted == nullptr) {
        return;
    }
    for (std::size_t i = 0; i < omissionKinds; ++i) {
        if (counts_[i] > 0) {
            extension->omitted(extension->context, static_cast<Omission>(i), counts_[i]);
        }
    }
}

} // namespace corvane
