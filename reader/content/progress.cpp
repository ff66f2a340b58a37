#include "reader/content/progress.h"

#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/extension.h"

#include <algorithm>

namespace corvane {

namespace {

void askHost() {
    if (callHost(slot::checkUserAbort)) {
        failException(Exception::cancelled);
    }
}

} // namespace

void ContentProgress::check(Filter& tokens) {
    charge(0);
    askHost();
    const auto extension = knownExtension();
    if (extension && extension->progress != nullptr) {
        const std::int64_t position = done_ + markFilter(tokens) - start_;
        extension->progress(extension->context, std::clamp<std::int64_t>(position, 0, total_),
                            total_);
    }
}

bool ContentProgress::hasRoom(std::int64_t bytes) const {
    return tokenCount_ <= budget::contentTokens / 2 && bytes <= budget::pageBytes / 2;
}

void ContentProgress::charge(std::int64_t tokens) {
    tokenCount_ += tokens;
    if (tokenCount_ > budget::contentTokens) {
        failException(Exception::limit);
    }
}

void ContentProgress::chargeSteps() {
    constexpr std::int64_t stepsPerToken = 20;
    charge(steps_ / stepsPerToken);
    steps_ %= stepsPerToken;
    askHost();
}

void ContentProgress::fault(Filter& tokens) {
    if (++faults_ > budget::operatorFaults) {
        failException(Exception::limit);
    }
    step(tokens);
}

} // namespace corvane
