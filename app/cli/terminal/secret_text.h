// Text that is wiped when it is not needed any more.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace corvane {

/// A password: in a place of fixed size, so that no copy is left behind in memory.
class SecretText {
public:
    /// More than count in any PDF.
    static constexpr std::size_t longest = 511;

    SecretText() = default;
    SecretText(const SecretText&) = default;
    SecretText& operator=(const SecretText&) = default;
    ~SecretText() { explicit_bzero(bytes_.data(), bytes_.size()); }

    /// What is past the longest is dropped.
    void add(char c) {
        if (size_ < longest) {
            bytes_[size_++] = c;
        }
    }
    std::string_view text() const { return {bytes_.data(), size_}; }

private:
    std::array<char, longest> bytes_{};
    std::size_t size_ = 0;
};

} // namespace corvane
