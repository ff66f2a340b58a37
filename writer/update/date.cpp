#include "writer/update/date.h"

#include "host/utilities.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

namespace corvane {

namespace {

/// From 1904-01-01, which the toolbox counts from, to 1970-01-01.
constexpr std::int64_t classicEpoch = 2'082'844'800;

/// 9999-12-31 23:59:59: later years do not fit a PDF date.
constexpr std::int64_t latestSecond = 253'402'300'799;

} // namespace

std::string dateNow() {
    std::int64_t classic = 0;
    GetDateTime(&classic);
    using namespace std::chrono;
    const sys_seconds now(
        seconds(std::clamp<std::int64_t>(classic - classicEpoch, 0, latestSecond)));
    const sys_days day = floor<days>(now);
    const year_month_day date(day);
    const hh_mm_ss time(now - day);
    std::array<char, 64> text{};
    const int length = std::snprintf(
        text.data(), text.size(), "D:%04d%02u%02u%02d%02d%02dZ", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
        static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
        static_cast<int>(time.seconds().count()));
    return {text.data(), static_cast<std::size_t>(std::max(length, 0))};
}

} // namespace corvane
