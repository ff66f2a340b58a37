#include "writer/page/used_names.h"

#include <algorithm>
#include <charconv>

namespace corvane {

namespace {

/// Bytes of the longest name that is kept (PDF Reference, appendix C); longer ones are not ours.
constexpr std::size_t longestName = 127;

/// PDF Reference, 3.1.1: white space and delimiters end a name.
bool endsName(char c) {
    constexpr std::string_view delimiters = "()<>[]{}/%";
    return c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == '\f' || c == '\0' ||
           delimiters.find(c) != std::string_view::npos;
}

} // namespace

std::string decodedName(std::string_view name) {
    std::string decoded;
    for (std::size_t i = 0; i < name.size(); ++i) {
        unsigned value = 0;
        const std::string_view digits = name.substr(i + 1, 2);
        const bool isEscape =
            name[i] == '#' && digits.size() == 2 &&
            std::from_chars(digits.data(), digits.data() + 2, value, 16).ptr == digits.data() + 2;
        decoded += isEscape ? static_cast<char>(value) : name[i];
        i += isEscape ? 2 : 0;
    }
    return decoded;
}

void UsedNames::endName() {
    if (isInName_ && name_.size() <= longestName) {
        const std::string name = decodedName(name_);
        if (!names_.contains(name)) {
            names_.insert(name);
        }
    }
    name_.clear();
    isInName_ = false;
}

void UsedNames::read(std::span<const std::byte> content) {
    auto at = content.begin();
    while (at != content.end()) {
        if (!isInName_) {
            at = std::find(at, content.end(), std::byte{'/'});
            isInName_ = at != content.end();
            at += isInName_ ? 1 : 0;
            continue;
        }
        const auto end = std::find_if(
            at, content.end(), [](std::byte b) { return endsName(std::to_integer<char>(b)); });
        // Of what is too long, one byte more says so.
        for (; at != end && name_.size() <= longestName; ++at) {
            name_ += std::to_integer<char>(*at);
        }
        at = end;
        if (at != content.end()) {
            endName();
        }
    }
}

void UsedNames::endContent() {
    endName();
}

} // namespace corvane
