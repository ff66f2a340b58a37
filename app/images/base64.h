// Base-64 (RFC 4648), and percent-escapes of addresses (RFC 3986).
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Appends bytes to a text as base-64.
class Base64Writer {
public:
    explicit Base64Writer(std::string& text) : text_(text) {}
    void add(std::span<const std::byte> bytes);
    /// The last digits; nothing may be added behind them.
    void end();

private:
    void flush();

    std::string& text_;
    std::byte held_[3] = {};
    std::size_t count_ = 0; ///< of `held_`
};

/// Blanks are passed over, and what fills the end may be missing. None where the text is no
/// base-64.
std::optional<std::vector<std::byte>> fromBase64(std::string_view text);

/// All but letters, digits and "-._~/" escaped.
std::string escapedPath(std::string_view path);

/// What is no escape stands for itself.
std::string withoutEscapes(std::string_view text);

} // namespace corvane
