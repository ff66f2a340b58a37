#include "app/web/http/secret.h"

#include "app/cli/fault.h"
#include "app/cli/text.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <sys/random.h>

namespace corvane {

std::string newSecret() {
    std::array<char, 16> bytes{};
    // So few are never cut short; before the machine has gathered enough, the call waits.
    ssize_t count = 0;
    do {
        count = getrandom(bytes.data(), bytes.size(), 0);
    } while (count < 0 && errno == EINTR);
    if (count != static_cast<ssize_t>(bytes.size())) {
        throw Failure(
            {code::host, "the system gives no random numbers (" + lastError().message() + ")"});
    }
    return hexadecimalText({bytes.data(), bytes.size()});
}

bool isSameSecret(std::string_view one, std::string_view other) {
    if (one.size() != other.size()) {
        return false;
    }
    unsigned difference = 0;
    for (std::size_t i = 0; i < one.size(); ++i) {
        difference |= static_cast<unsigned char>(one[i]) ^ static_cast<unsigned char>(other[i]);
    }
    return difference == 0;
}

} // namespace corvane
