// What shows that a request comes from the person who started the server.
#pragma once

#include <string>
#include <string_view>

namespace corvane {

/// 128 bits that nobody can guess, as 32 hexadecimal digits. Raises `Failure`.
std::string newSecret();

/// Takes the same time wherever they differ.
bool isSameSecret(std::string_view one, std::string_view other);

} // namespace corvane
