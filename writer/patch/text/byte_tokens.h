// Bytes of content as tokens, each where it stands.
#pragma once

#include <string_view>
#include <vector>

namespace corvane {

/// The tokens of a few operators, as PDF Reference, 3.1: numbers, names, strings, words; `<<` is
/// one, `>>` are two. White space and comments are passed over.
std::vector<std::string_view> tokensOf(std::string_view bytes);

/// Whether the token is that name, escaped or not.
bool isName(std::string_view token, std::string_view name);

} // namespace corvane
