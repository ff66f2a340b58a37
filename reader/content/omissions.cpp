#include "reader/content/omissions.h"

#include "runtime/extension.h"
#include "runtime/warning.h"

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
    const bool isFirst = ++counts_[static_cast<std::size_t>(kind)] == 1;
    if (isFirst && warningOf(kind) != Warning::none) {
        raiseWarning(warningOf(kind));
    }
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
