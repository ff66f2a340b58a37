// Text in UTF-8, character by character.
#pragma once

#include "crypt/secret.h"
#include "host/utf8.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace corvane {

/// Takes one character off the front of a text that is not empty; nothing where that is no UTF-8.
std::optional<char32_t> nextCharacter(Octets& text);

/// Writes a character to the front of `room`, which has as many bytes as the longest needs; the
/// bytes that it took.
std::size_t putCharacter(char32_t character, std::span<std::uint8_t> room);

} // namespace corvane
