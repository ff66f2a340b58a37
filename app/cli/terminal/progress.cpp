#include "app/cli/terminal/progress.h"

#include "app/cli/text.h"

#include <algorithm>
#include <cmath>
#include <unistd.h>
#include <utility>

namespace corvane {

namespace {

constexpr const char* eraseLine = "\r\x1B[K";

/// "11 s", "3:05 min".
std::string spanText(double seconds) {
    constexpr std::int64_t minute = 60;
    const auto whole = static_cast<std::int64_t>(std::ceil(std::min(seconds, 1e9)));
    if (whole < minute) {
        return std::to_string(whole) + " s";
    }
    const std::string rest = std::to_string(whole % minute);
    return grouped(whole / minute) + ":" + (rest.size() == 1 ? "0" : "") + rest + " min";
}

double secondsOf(ProgressLine::Clock::duration span) {
    return std::chrono::duration<double>(span).count();
}

} // namespace

std::FILE* progressTerminal(const Arguments& arguments) {
    const bool isWanted = !arguments.quiet && !arguments.json && isatty(STDERR_FILENO) == 1;
    return isWanted ? stderr : nullptr;
}

ProgressLine::ProgressLine(std::FILE* terminal, std::string label, Clock::time_point (*now)())
    : terminal_(terminal), label_(std::move(label)), now_(now) {}

/// Whether the line may change again.
bool ProgressLine::isDue() {
    const Clock::time_point now = now_();
    if (terminal_ == nullptr || now - last_ < interval) {
        return false;
    }
    last_ = now;
    return true;
}

/// ", 12 % a second"; empty where the work is short.
std::string ProgressLine::rate(double share) const {
    const Clock::duration spent = last_ - start_;
    if (spent < longWork) {
        return {};
    }
    const double percent = 100 * share / secondsOf(spent);
    return ", " + (percent < 10 ? decimal(percent) : grouped(std::llround(percent))) +
           " % a second";
}

/// ", 4 s left"; empty where the work is short, or nobody can know.
std::string ProgressLine::timeLeft(double share) const {
    const Clock::duration spent = last_ - start_;
    if (spent < longWork || share <= 0) {
        return {};
    }
    return ", " + spanText(secondsOf(spent) * (1 - share) / share) + " left";
}

void ProgressLine::show(const std::string& text) {
    isShown_ = true;
    std::fprintf(terminal_, "%s%s %s", eraseLine, label_.c_str(), text.c_str());
    std::fflush(terminal_);
}

void ProgressLine::update(std::int64_t done, std::int64_t total) {
    if (done < former_) {
        start_ = now_(); // another work begins
    }
    former_ = done;
    if (total <= 0 || !isDue()) {
        return;
    }
    const double share = std::clamp(static_cast<double>(done) / static_cast<double>(total), 0., 1.);
    show(std::to_string(static_cast<int>(100 * share)) + " %" + rate(share) + timeLeft(share));
}

void ProgressLine::count(std::int64_t done, const std::optional<std::int64_t>& total,
                         const std::string& noun) {
    if (!isDue()) {
        return;
    }
    std::string text = total ? grouped(done) + " of " + counted(*total, noun) : counted(done, noun);
    const Clock::duration spent = last_ - start_;
    if (spent >= longWork) {
        text += ", " + grouped(std::llround(static_cast<double>(done) / secondsOf(spent))) +
                " a second";
    }
    if (total && *total > 0) {
        text += timeLeft(static_cast<double>(done) / static_cast<double>(*total));
    }
    show(text);
}

void ProgressLine::clear() {
    if (isShown_) {
        std::fputs(eraseLine, terminal_);
        std::fflush(terminal_);
        isShown_ = false;
    }
}

} // namespace corvane
