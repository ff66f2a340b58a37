// Passwords of encrypted files: what the person stated, or types on the terminal.
#pragma once

#include "app/cli/options/arguments.h"
#include "app/cli/terminal/secret_text.h"

#include <cstdint>
#include <optional>
#include <span>

namespace corvane {

/// Gives passwords, attempt by attempt, as the host extension asks for them. One that was stated is
/// the only one; where none was, the person is asked on a terminal. The last one is remembered, for
/// a session opens its file several times.
class PasswordSource {
public:
    /// Reads `--password-file` at once. One that cannot be read raises `Failure`.
    explicit PasswordSource(const Arguments& arguments);

    /// Puts the password into `buffer`; its length, -1 where there is none, -2 where the
    /// person cancelled.
    std::int32_t give(std::int32_t attempt, std::span<char> buffer);

private:
    const Arguments& arguments_;
    bool isStated_ = false;
    std::optional<SecretText> password_;
};

} // namespace corvane
