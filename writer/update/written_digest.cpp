#include "writer/update/written_digest.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace corvane {

namespace {

/// More is no number of an object.
constexpr std::size_t mostDigits = 10;

/// What stands behind the number of an object; new ones have the generation 0.
constexpr std::array<std::string_view, 2> endings = {" 0 R", " 0 obj"};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Whether a number may begin behind it.
bool endsWord(char c) {
    return std::string_view(" \r\n\t[]<>()").find(c) != std::string_view::npos;
}

/// What of a name stands there so far.
enum class Held { nothing, part, name };

Held stateOf(std::string_view text) {
    const auto end = std::ranges::find_if_not(text, isDigit);
    const std::string_view rest(end, text.end());
    if (text.size() - rest.size() > mostDigits) {
        return Held::nothing;
    }
    Held state = Held::nothing;
    for (const std::string_view ending : endings) {
        if (ending == rest) {
            return Held::name;
        }
        state = ending.starts_with(rest) ? Held::part : state;
    }
    return state;
}

} // namespace

WrittenDigest::WrittenDigest(std::int32_t firstNew, std::span<const std::int32_t> alsoNew)
    : firstNew_(firstNew), alsoNew_(alsoNew.begin(), alsoNew.end()) {}

void WrittenDigest::feed(std::span<const std::byte> bytes) {
    if (value_) {
        return;
    }
    std::size_t from = 0; // of what is fed as it is
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char c = static_cast<char>(bytes[i]);
        if (held_.empty() && !(isDigit(c) && endsWord(last_))) {
            last_ = c;
            continue;
        }
        if (held_.empty()) {
            digest_.feed(bytes.subspan(from, i - from));
        }
        take(c);
        from = i + 1;
    }
    digest_.feed(bytes.subspan(std::min(from, bytes.size())));
}

void WrittenDigest::take(char c) {
    held_ += c;
    const Held state = stateOf(held_);
    if (state == Held::part) {
        return;
    }
    if (state == Held::name) {
        feedName();
        return;
    }
    const bool beginsAnew = held_.size() > 1 && isDigit(c) && endsWord(held_[held_.size() - 2]);
    release(held_.size() - (beginsAnew ? 1 : 0));
}

/// Feeds the first of what is held as it is.
void WrittenDigest::release(std::size_t count) {
    digest_.feed(std::as_bytes(std::span(held_).first(count)));
    if (count > 0) {
        last_ = held_[count - 1];
        held_.erase(0, count);
    }
}

void WrittenDigest::feedName() {
    std::int32_t number = 0;
    const auto read = std::from_chars(held_.data(), held_.data() + held_.size(), number);
    const bool isNew = read.ec == std::errc() && (number >= firstNew_ || alsoNew_.contains(number));
    if (isNew) {
        const std::size_t place = order_.emplace(number, order_.size()).first->second;
        held_.replace(0, held_.find(' '), "new " + std::to_string(place));
    }
    release(held_.size());
}

std::uint64_t WrittenDigest::value() {
    if (!value_) {
        release(held_.size());
        value_ = digest_.value();
    }
    return *value_;
}

} // namespace corvane
