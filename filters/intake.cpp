#include "filters/intake.h"

#include <algorithm>

namespace corvane {

namespace {

/// Bytes read from below at a time.
constexpr std::size_t blockSize = 8192;

} // namespace

void Intake::open(Filter& below) {
    below_ = &below;
    forget();
}

/// Reads a block behind what is held; bytes last taken are kept before it.
std::span<const std::byte> Intake::more() {
    if (buffer_.empty()) {
        charge_.resize(2 * longestUnit + blockSize);
        buffer_.resize(2 * longestUnit + blockSize);
    }
    const std::size_t from = position_ - std::min(position_, longestUnit);
    std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(from),
              buffer_.begin() + static_cast<std::ptrdiff_t>(fill_), buffer_.begin());
    position_ -= from;
    fill_ -= from;
    fill_ += readFilter(*below_, std::span(buffer_).subspan(fill_, blockSize));
    return rest();
}

std::span<const std::byte> Intake::hold(std::size_t count) {
    while (readAhead() < count) {
        const std::size_t before = readAhead();
        if (more().size() == before) {
            break;
        }
    }
    return rest();
}

void Intake::giveBack() {
    const std::span<const std::byte> unused = rest();
    fill_ = position_;
    if (!unused.empty()) {
        below_->giveBack(unused);
    }
}

void Intake::forget() {
    position_ = 0;
    fill_ = 0;
}

} // namespace corvane
