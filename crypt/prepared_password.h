// Passwords as SASLprep (RFC 4013) has them, so that one word typed on two keyboards is one
// password.
#pragma once

#include "crypt/secret.h"

#include <optional>

namespace corvane {

/// Text in UTF-8 with the blanks of other scripts as blanks, without what is not seen, in Unicode's
/// form KC, as UTF-8; nothing where it is no UTF-8. Text that the profile prohibits is not told
/// apart: as no file has such a password, it opens none.
std::optional<Secret> preparedPassword(Octets text);

} // namespace corvane
