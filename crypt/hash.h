// The hashes of the standard security handler.
#pragma once

#include "crypt/secret.h"

namespace corvane {

Secret md5(Octets data);
Secret sha256(Octets data);
Secret sha384(Octets data);
Secret sha512(Octets data);

/// A code of the data that nobody can make without the key (RFC 2104).
Secret hmacSha256(Octets key, Octets data);

} // namespace corvane
