#include "crypt/random.h"

#include "runtime/exception.h"

#include <cerrno>
#include <sys/random.h>

namespace corvane {

void randomBytes(std::span<std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = getrandom(bytes.data(), bytes.size(), 0);
        if (count > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            failException(Exception::io);
        }
    }
}

} // namespace corvane
