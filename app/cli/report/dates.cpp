#include "app/cli/report/dates.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <optional>

namespace corvane {

namespace {

/// Takes the next `digits` digits off `text`; nothing where there are not as many.
std::optional<int> takeNumber(std::string_view& text, std::size_t digits) {
    const std::string_view number = text.substr(0, digits);
    const auto isDigit = [](char byte) { return byte >= '0' && byte <= '9'; };
    if (number.size() < digits || !std::ranges::all_of(number, isDigit)) {
        return std::nullopt;
    }
    int value = 0;
    for (const char digit : number) {
        value = 10 * value + (digit - '0');
    }
    text.remove_prefix(digits);
    return value;
}

/// What local time is ahead of UTC: "+01'00'", "Z" or nothing.
std::chrono::minutes takeZone(std::string_view text) {
    const bool isAhead = text.starts_with('+');
    if (!isAhead && !text.starts_with('-')) {
        return {};
    }
    text.remove_prefix(1);
    const int hours = takeNumber(text, 2).value_or(0);
    text.remove_prefix(text.starts_with('\'') ? 1 : 0);
    const std::chrono::minutes ahead(60 * hours + takeNumber(text, 2).value_or(0));
    return isAhead ? ahead : -ahead;
}

} // namespace

std::string utcText(std::string_view pdfDate) {
    using namespace std::chrono;
    pdfDate.remove_prefix(pdfDate.starts_with("D:") ? 2 : 0);
    const auto year = takeNumber(pdfDate, 4);
    if (!year) {
        return {};
    }
    std::array<int, 5> parts{1, 1, 0, 0, 0}; // month, day, hour, minute, second
    for (int& part : parts) {
        const auto number = takeNumber(pdfDate, 2);
        if (!number) {
            break;
        }
        part = *number;
    }
    const auto [month, day, hour, minute, second] = parts;
    const year_month_day date(std::chrono::year(*year),
                              std::chrono::month(static_cast<unsigned>(month)),
                              std::chrono::day(static_cast<unsigned>(day)));
    if (!date.ok() || hour > 23 || minute > 59 || second > 59) {
        return {};
    }
    const sys_seconds time =
        sys_days(date) + hours(hour) + minutes(minute) + seconds(second) - takeZone(pdfDate);
    const auto midnight = floor<days>(time);
    const year_month_day there(midnight);
    const hh_mm_ss clock(time - midnight);
    std::array<char, 64> text{};
    const int length = std::snprintf(
        text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d", int(there.year()),
        unsigned(there.month()), unsigned(there.day()), static_cast<int>(clock.hours().count()),
        static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
    return {text.data(), static_cast<std::size_t>(std::max(length, 0))};
}

} // namespace corvane
