#include "app/svg/read/values/number.h"

#include <charconv>
#include <system_error>

namespace corvane {

double detail::longNumber(const char* first, const char* end) {
    double value = 0;
    if (std::from_chars(first, end, value).ec != std::errc::result_out_of_range) {
        return value;
    }
    // Too large, or too small to be told from 0: the exponent says which, or else the first digit
    // that counts.
    const std::string_view text(first, static_cast<std::size_t>(end - first));
    const std::size_t exponent = text.find_first_of("eE");
    const bool small = exponent != std::string_view::npos
                           ? text.substr(exponent + 1, 1) == "-"
                           : text.find_first_of("123456789.") == text.find('.');
    return small ? 0 : 1e300;
}

/// From the number's first digit or point; `at` is where its digits end.
bool TextCursor::longNumber(const char* first, const char* at, bool negative, double& value) {
    if (exponentAt(at)) {
        at += isDigit(at[1]) ? 1 : 2;
        while (at != end_ && isDigit(*at)) {
            ++at;
        }
    }
    const double size = detail::longNumber(first, at);
    value = negative ? -size : size;
    at_ = at;
    return true;
}

} // namespace corvane
