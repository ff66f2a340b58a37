// Small calls of the toolbox: numbers, strings, dates, the bell.
#pragma once

#include "host/artwork.h"
#include "host/zone.h"

#include <cstdint>

namespace corvane {

/// Quotient of two numbers of one kind as 16.16, rounded to nearest, saturated; by zero the largest
/// number of the dividend's sign.
TOOLBOX_CALL Fixed FixDiv(std::int32_t dividend, std::int32_t divisor);

/// Decimal digits, length-prefixed, at most 11 bytes.
TOOLBOX_CALL void NumToString(std::int32_t number, std::uint8_t* text);

/// Turn a zero-terminated string into a length-prefixed one, in place, and back. What is past 255
/// bytes is cut off.
TOOLBOX_CALL void C2PStr(std::uint8_t* text);
TOOLBOX_CALL void P2CStr(std::uint8_t* text);

/// Now, in seconds since 1904-01-01 00:00 UTC. The environment's SOURCE_DATE_EPOCH, decimal seconds
/// since 1970, stands for the time of day.
TOOLBOX_CALL void GetDateTime(std::int64_t* seconds);
/// Whether SOURCE_DATE_EPOCH says the time: the same work must then give the same bytes.
TOOLBOX_CALL bool DateTimeIsFixed();

/// Print a time of `GetDateTime`, length-prefixed: "11/21/2026" and "4:06". Local time, but UTC
/// where SOURCE_DATE_EPOCH is set.
TOOLBOX_CALL void IUDateString(std::int64_t seconds, std::uint8_t* text);
TOOLBOX_CALL void IUTimeString(std::int64_t seconds, std::uint8_t* text);

/// Rings the terminal's bell, if there is one.
TOOLBOX_CALL void SysBeep(std::int16_t duration);

} // namespace corvane
