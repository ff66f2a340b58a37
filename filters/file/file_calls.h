// What the calls of the file layer share: names and results as the toolbox has them.
#pragma once

#include "host/files.h"
#include "runtime/exception.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace corvane {

/// A name as the toolbox takes it. One that is too long becomes empty, which is no file's name.
class PrefixedName {
public:
    explicit PrefixedName(std::string_view name) {
        if (name.size() < bytes_.size()) {
            bytes_[0] = static_cast<std::uint8_t>(name.size());
            std::copy(name.begin(), name.end(), bytes_.begin() + 1);
        }
    }
    std::uint8_t* data() { return bytes_.data(); }

private:
    std::array<std::uint8_t, 256> bytes_{};
};

/// Any failure is `io`.
inline void checkFile(OSErr result) {
    if (result != noErr) {
        failException(Exception::io);
    }
}

} // namespace corvane
