// LZW as simply as it can be written, one code and one string at a time: the slow twin of the
// filter.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::test {

struct LzwReference {
    std::string bytes;
    std::size_t used; ///< bytes of the data that were needed
};

/// What a decoder gives for any data. A code without a string ends them.
inline LzwReference lzwDecode(std::string_view data, std::size_t earlyChange = 1) {
    LzwReference result{};
    std::vector<std::string> strings;
    const auto clear = [&] {
        strings.assign(258, "");
        for (std::size_t i = 0; i < 256; ++i) {
            strings[i] = std::string(1, static_cast<char>(i));
        }
    };
    clear();
    std::string previous;
    std::size_t bit = 0;
    std::size_t width = 9;
    for (;;) {
        std::size_t code = 0;
        if (bit + width > 8 * data.size()) {
            result.used = data.size();
            return result;
        }
        for (std::size_t i = 0; i < width; ++i, ++bit) {
            const auto byte = static_cast<unsigned char>(data[bit / 8]);
            code = code << 1 | (byte >> (7 - bit % 8) & 1U);
        }
        result.used = (bit + 7) / 8;
        if (code == 256) {
            clear();
            previous.clear();
            width = 9;
            continue;
        }
        if (code == 257 || code > strings.size() || (code == strings.size() && previous.empty())) {
            return result;
        }
        const std::string& known = code < strings.size() ? strings[code] : previous;
        if (!previous.empty() && strings.size() < 4096) {
            strings.push_back(previous + known.front());
            const std::size_t next = strings.size();
            width = next >= 2048 - earlyChange   ? 12
                    : next >= 1024 - earlyChange ? 11
                    : next >= 512 - earlyChange  ? 10
                                                 : 9;
        }
        previous = strings[code];
        result.bytes += previous;
    }
}

/// Codes for a string, the table searched from its beginning.
inline std::string lzwEncode(std::string_view bytes) {
    std::string data;
    unsigned long pending = 0;
    std::size_t pendingBits = 0;
    std::size_t width = 9;
    const auto put = [&](std::size_t code) {
        pending = pending << width | code;
        for (pendingBits += width; pendingBits >= 8; pendingBits -= 8) {
            data += static_cast<char>(pending >> (pendingBits - 8) & 0xFF);
        }
    };
    std::vector<std::pair<std::size_t, char>> table;
    put(256);
    std::size_t previous = 257;
    for (const char byte : bytes) {
        const std::size_t single = static_cast<unsigned char>(byte);
        if (previous == 257) {
            previous = single;
            continue;
        }
        const auto found = std::find(table.begin(), table.end(), std::pair(previous, byte));
        if (found != table.end()) {
            previous = 258 + static_cast<std::size_t>(found - table.begin());
            continue;
        }
        put(previous);
        if (258 + table.size() < 4096) {
            table.emplace_back(previous, byte);
            const std::size_t next = 258 + table.size();
            width = next >= 2048 ? 12 : next >= 1024 ? 11 : next >= 512 ? 10 : 9;
        } else {
            put(256);
            table.clear();
            width = 9;
        }
        previous = single;
    }
    if (previous != 257) {
        put(previous);
    }
    put(257);
    if (pendingBits > 0) {
        data += static_cast<char>(pending << (8 - pendingBits) & 0xFF);
    }
    return data;
}

} // namespace corvane::test
