// Passwords and keys: bytes that are wiped when they are not needed any more.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

using Octets = std::span<const std::uint8_t>;

/// Text as octets, without a copy.
inline Octets octetsOf(std::string_view text) {
    return {static_cast<const std::uint8_t*>(static_cast<const void*>(text.data())), text.size()};
}

/// Of one size for ever, so that no copy is left behind in memory.
class Secret {
public:
    Secret() = default;
    explicit Secret(std::size_t size) : bytes_(size) {}
    explicit Secret(Octets bytes) : bytes_(bytes.begin(), bytes.end()) {}
    Secret(Secret&& other) noexcept : bytes_(std::exchange(other.bytes_, {})) {}
    Secret& operator=(Secret&& other) noexcept {
        std::swap(bytes_, other.bytes_);
        return *this;
    }
    ~Secret() {
        if (!bytes_.empty()) {
            explicit_bzero(bytes_.data(), bytes_.size());
        }
    }

    std::span<std::uint8_t> bytes() { return bytes_; }
    Octets bytes() const { return bytes_; }
    std::size_t size() const { return bytes_.size(); }

private:
    std::vector<std::uint8_t> bytes_;
};

/// A copy of one piece after the other.
inline Secret joined(std::initializer_list<Octets> pieces) {
    std::size_t size = 0;
    for (const Octets piece : pieces) {
        size += piece.size();
    }
    Secret all(size);
    auto to = all.bytes().begin();
    for (const Octets piece : pieces) {
        to = std::ranges::copy(piece, to).out;
    }
    return all;
}

} // namespace corvane
