#include "output/number_text.h"

#include "runtime/exception.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace corvane {

char* writeCutFixed(char* out, Fixed value) {
    std::int64_t magnitude = value;
    if (value < 0) {
        *out++ = '-';
        magnitude = -magnitude;
    }
    out = writeWhole(out, static_cast<std::uint32_t>(magnitude >> 16));
    const auto rest = static_cast<std::uint32_t>(magnitude & 0xFFFF);
    if (rest != 0) {
        const std::uint32_t digits = (rest * 10000) >> 16;
        *out++ = '.';
        for (std::uint32_t place = 1000; place != 0; place /= 10) {
            *out++ = static_cast<char>('0' + digits / place % 10);
        }
    }
    return out;
}

char* writeReal(char* out, double value) {
    if (!std::isfinite(value)) {
        failException(Exception::type);
    }
    if (value == 0) {
        *out++ = '0';
        return out;
    }
    char* const end = std::to_chars(out, out + realRoom, value, std::chars_format::fixed).ptr;
    char* const digits = out + (*out == '-' ? 1 : 0);
    if (std::string_view(digits, end).starts_with("0.")) {
        return std::copy(digits + 1, end, digits);
    }
    return end;
}

} // namespace corvane
