#include "app/cli/fault.h"

#include <cerrno>

namespace corvane {

Fault outputFault(const std::string& what, std::error_code error) {
    if (error == std::errc::operation_canceled) {
        return {code::cancelled, "cancelled"};
    }
    const std::string reason = what + " cannot be written (" + error.message() + ")";
    const int number = error.value();
    if (number == ENOSPC || number == EDQUOT || number == EFBIG) {
        return {code::diskFull, reason + "; make room and try again"};
    }
    return {code::io, reason + "; choose another place for it"};
}

std::error_code lastError() {
    return {errno, std::generic_category()};
}

} // namespace corvane
