#include "host/utilities.h"

#include "toolbox/pascal.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>
#include <unistd.h>

namespace corvane {

namespace {

constexpr std::int64_t secondsFrom1904To1970 = 2'082'844'800;

/// The environment's fixed time, seconds since 1970.
std::optional<std::int64_t> fixedTime() {
    const char* variable = std::getenv("SOURCE_DATE_EPOCH");
    if (variable == nullptr) {
        return std::nullopt;
    }
    const std::string_view text(variable);
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < 0) {
        return std::nullopt;
    }
    return value;
}

/// The calendar's view of a time; where the same input must give the same bytes, not a local one.
std::tm calendar(std::int64_t seconds) {
    const std::time_t time = seconds - secondsFrom1904To1970;
    std::tm result{};
    if (fixedTime()) {
        gmtime_r(&time, &result);
    } else {
        localtime_r(&time, &result);
    }
    return result;
}

} // namespace

Fixed FixDiv(std::int32_t dividend, std::int32_t divisor) {
    if (divisor == 0) {
        return dividend < 0 ? INT32_MIN : INT32_MAX;
    }
    const std::int64_t sign = (dividend < 0) != (divisor < 0) ? -1 : 1;
    const std::int64_t above = std::abs(std::int64_t{dividend}) << 16;
    const std::int64_t below = std::abs(std::int64_t{divisor});
    const std::int64_t quotient = sign * ((above + below / 2) / below);
    return static_cast<Fixed>(
        std::clamp(quotient, std::int64_t{INT32_MIN}, std::int64_t{INT32_MAX}));
}

void NumToString(std::int32_t number, std::uint8_t* text) {
    toPascal(std::to_string(number), text);
}

void C2PStr(std::uint8_t* text) {
    std::size_t length = 0;
    while (length < longestPascal && text[length] != 0) {
        ++length;
    }
    std::memmove(text + 1, text, length);
    text[0] = static_cast<std::uint8_t>(length);
}

void P2CStr(std::uint8_t* text) {
    const std::size_t length = text[0];
    std::memmove(text, text + 1, length);
    text[length] = 0;
}

void GetDateTime(std::int64_t* seconds) {
    *seconds = fixedTime().value_or(std::time(nullptr)) + secondsFrom1904To1970;
}

bool DateTimeIsFixed() {
    return fixedTime().has_value();
}

void IUDateString(std::int64_t seconds, std::uint8_t* text) {
    const std::tm date = calendar(seconds);
    toPascal(std::to_string(date.tm_mon + 1) + '/' + std::to_string(date.tm_mday) + '/' +
                 std::to_string(date.tm_year + 1900),
             text);
}

void IUTimeString(std::int64_t seconds, std::uint8_t* text) {
    const std::tm time = calendar(seconds);
    const std::string minutes = std::to_string(time.tm_min);
    toPascal(std::to_string(time.tm_hour) + (minutes.size() < 2 ? ":0" : ":") + minutes, text);
}

void SysBeep(std::int16_t /*duration*/) {
    if (isatty(STDERR_FILENO) != 0) {
        std::fputc('\a', stderr);
    }
}

} // namespace corvane
