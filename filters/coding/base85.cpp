#include "filters/coding/base85.h"

#include "runtime/rules.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

constexpr std::size_t groupDigits = 5;
constexpr std::uint32_t base = 85;
constexpr char firstDigit = '!';
constexpr std::byte zeroGroup{'z'};
constexpr std::byte markerStart{'~'};
constexpr std::byte markerEnd{'>'};
constexpr std::string_view endMarker = "~>";

/// Groups on a line that is written.
constexpr std::int32_t lineGroups = 12;

/// No sum of five digits reaches it, and every sum with a character that is no digit does.
constexpr std::uint64_t noDigit = std::uint64_t{1} << 40;

/// What a character is worth in each of the five places.
constexpr auto placeValues = [] {
    std::array<std::array<std::uint64_t, 256>, groupDigits> values{};
    std::uint64_t weight = 1;
    for (std::size_t place = groupDigits; place-- > 0; weight *= base) {
        values[place].fill(noDigit);
        for (std::uint32_t digit = 0; digit < base; ++digit) {
            values[place][static_cast<std::size_t>(firstDigit) + digit] = digit * weight;
        }
    }
    return values;
}();

std::uint64_t placeValue(std::size_t place, std::byte c) {
    return placeValues[place][std::to_integer<std::size_t>(c)];
}

void storeGroup(std::byte* to, std::uint32_t value) {
    const std::array<std::byte, 4> bytes{
        static_cast<std::byte>(value >> 24), static_cast<std::byte>(value >> 16),
        static_cast<std::byte>(value >> 8), static_cast<std::byte>(value)};
    std::memcpy(to, bytes.data(), bytes.size());
}

/// Decodes whole groups from the beginning of `in` while nothing else is met and `out` has room;
/// moves both on past them.
void decodeGroups(std::span<const std::byte>& in, std::span<std::byte>& out) {
    const std::byte* from = in.data();
    const std::byte* const end = from + in.size();
    std::byte* to = out.data();
    std::byte* const limit = to + out.size();
    while (end - from >= std::ptrdiff_t{groupDigits} && limit - to >= 4) {
        if (*from == zeroGroup) {
            storeGroup(to, 0);
            ++from;
        } else {
            const std::uint64_t sum = placeValue(0, from[0]) + placeValue(1, from[1]) +
                                      placeValue(2, from[2]) + placeValue(3, from[3]) +
                                      placeValue(4, from[4]);
            if (sum >= noDigit) {
                break;
            }
            storeGroup(to, static_cast<std::uint32_t>(sum));
            from += groupDigits;
        }
        to += 4;
    }
    in = {from, end};
    out = {to, limit};
}

/// The five characters of a group.
void writeDigits(std::uint32_t value, char* to) {
    for (std::size_t i = groupDigits; i-- > 0; value /= base) {
        to[i] = static_cast<char>(firstDigit + static_cast<char>(value % base));
    }
}

std::uint32_t groupValue(const std::byte* group) {
    return std::to_integer<std::uint32_t>(group[0]) << 24 |
           std::to_integer<std::uint32_t>(group[1]) << 16 |
           std::to_integer<std::uint32_t>(group[2]) << 8 | std::to_integer<std::uint32_t>(group[3]);
}

} // namespace

MangleFilter::MangleFilter(AsciiMode asciiMode) : Decoder(entryMangle), mode_(asciiMode) {}

/// Decodes the next group, whatever stands in it, into the record's own bytes.
void MangleFilter::refill() {
    std::uint64_t value = 0;
    std::size_t digits = 0;
    while (digits < groupDigits) {
        // Two bytes: "~" is judged with the one behind it.
        const std::span<const std::byte> in = intake().hold(2);
        if (in.empty()) {
            lastGroup_ = true;
            break;
        }
        const std::byte c = in.front();
        intake().take(c == markerStart ? std::min<std::size_t>(in.size(), 2) : 1);
        if (c == zeroGroup && digits == 0) {
            digits = groupDigits;
        } else if (c == markerStart) {
            if (in.size() > 1 && in[1] == markerEnd && knowsMarker(mode_)) {
                lastGroup_ = true;
                break;
            }
        } else if (const std::uint64_t worth = placeValue(digits, c); worth < noDigit) {
            value += worth;
            ++digits;
        }
    }
    position_ = 0;
    available_ = digits > 1 ? digits - 1 : 0;
    for (; digits < groupDigits; ++digits) {
        value += placeValue(
            digits, static_cast<std::byte>(firstDigit + static_cast<char>(rules().missingDigit85)));
    }
    storeGroup(group_.data(), static_cast<std::uint32_t>(value));
}

std::size_t MangleFilter::decode(std::span<std::byte> out) {
    if (mode_ == AsciiMode::write) {
        failException(Exception::io);
    }
    std::span<std::byte> room = out;
    for (;;) {
        const std::size_t count = std::min(available_ - position_, room.size());
        std::copy_n(group_.begin() + static_cast<std::ptrdiff_t>(position_), count, room.begin());
        position_ += count;
        room = room.subspan(count);
        if (room.empty() || lastGroup_) {
            break;
        }
        const std::span<const std::byte> held = intake().held();
        std::span<const std::byte> in = held;
        decodeGroups(in, room);
        intake().take(held.size() - in.size());
        if (room.empty()) {
            break;
        }
        refill();
    }
    return out.size() - room.size();
}

void MangleFilter::restart() {
    position_ = 0;
    available_ = 0;
    gathered_ = 0;
    groups_ = 0;
    lastGroup_ = false;
}

/// In the mode that does so, goes past the end marker.
void MangleFilter::skipRest() {
    if (mode_ != AsciiMode::pastMarker || lastGroup_) {
        return;
    }
    for (auto in = intake().hold(2); !in.empty(); in = intake().hold(2)) {
        const auto marker =
            std::search(in.begin(), in.end(), endMarker.begin(), endMarker.end(),
                        [](std::byte byte, char c) { return std::to_integer<char>(byte) == c; });
        if (marker != in.end()) {
            intake().take(static_cast<std::size_t>(marker - in.begin()) + endMarker.size());
            return;
        }
        // A marker may begin with the last byte held, unless that is the last of all.
        intake().take(in.size() > 1 ? in.size() - 1 : 1);
    }
}

void MangleFilter::encode(std::span<const std::byte> bytes) {
    if (knowsMarker(mode_)) {
        failException(Exception::io);
    }
    std::array<char, 1024> text{};
    std::size_t length = 0;
    const auto flush = [&] {
        writeFilter(*next, std::as_bytes(std::span(text).first(std::exchange(length, 0))));
    };
    while (!bytes.empty()) {
        const std::size_t count = std::min(bytes.size(), groupSize - gathered_);
        std::copy_n(bytes.begin(), count, group_.begin() + static_cast<std::ptrdiff_t>(gathered_));
        bytes = bytes.subspan(count);
        gathered_ += count;
        if (gathered_ < groupSize) {
            break;
        }
        gathered_ = 0;
        if (const std::uint32_t value = groupValue(group_.data()); value == 0) {
            text[length++] = std::to_integer<char>(zeroGroup);
        } else {
            writeDigits(value, text.data() + length);
            length += groupDigits;
        }
        if (++groups_ == lineGroups) {
            text[length++] = '\r';
            groups_ = 0;
        }
        if (length > text.size() - groupDigits - 1) {
            flush();
        }
    }
    flush();
}

/// Writes the group that is not full, if one was begun: one digit more than it has bytes.
void MangleFilter::finishGroup() {
    if (gathered_ == 0) {
        return;
    }
    std::fill(group_.begin() + static_cast<std::ptrdiff_t>(gathered_), group_.end(), std::byte{0});
    std::array<char, groupDigits> text{};
    writeDigits(groupValue(group_.data()), text.data());
    writeFilter(*next,
                std::as_bytes(std::span(text).first(std::exchange(gathered_, std::size_t{0}) + 1)));
}

std::int32_t MangleFilter::entryMangle(Filter& filter, Operation operation, std::byte* buffer,
                                       std::int32_t* argument) {
    auto& self = static_cast<MangleFilter&>(filter);
    switch (operation) {
    case Operation::write:
        self.encode(transferred(buffer, *argument));
        return *argument;
    case Operation::seek:
        self.finishGroup();
        break;
    case Operation::unlink:
        checkMode(self.mode_);
        if (self.mode_ == AsciiMode::write) {
            self.finishGroup();
            writeFilter(*self.next, std::as_bytes(std::span(endMarker)));
        }
        break;
    default:
        break;
    }
    return entryDecoder(filter, operation, buffer, argument);
}

FilterOwner setupMangle(AsciiMode mode) {
    checkMode(mode);
    return std::make_unique<MangleFilter>(mode);
}

} // namespace corvane
