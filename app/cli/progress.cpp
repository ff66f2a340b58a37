#include "app/cli/progress.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

constexpr const char* eraseLine = "\r\x1B[K";

} // namespace

ProgressLine::ProgressLine(std::FILE* terminal, std::string label)
    : terminal_(terminal), label_(std::move(label)) {}

void ProgressLine::update(std::int64_t done, std::int64_t total) {
    if (terminal_ == nullptr || total <= 0) {
        return;
    }
    const Clock::time_point now = Clock::now();
    if (now - last_ < interval) {
        return;
    }
    last_ = now;
    isShown_ = true;
    const double share = static_cast<double>(done) / static_cast<double>(total);
    const int percent = static_cast<int>(100 * std::clamp(share, 0.0, 1.0));
    std::fprintf(terminal_, "%s%s %d %%", eraseLine, label_.c_str(), percent);
    std::fflush(terminal_);
}

void ProgressLine::clear() {
    if (isShown_) {
        std::fputs(eraseLine, terminal_);
        std::fflush(terminal_);
        isShown_ = false;
    }
}

} // namespace corvane
