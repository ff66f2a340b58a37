// The names that content uses, whether or not its resources have them.
#pragma once

#include <cstddef>
#include <set>
#include <span>
#include <string>
#include <string_view>

namespace corvane {

/// A name with its #xx decoded.
std::string decodedName(std::string_view name);

/// Takes content in pieces. What looks like a name in a string or in the data of an image counts
/// too.
class UsedNames {
public:
    void read(std::span<const std::byte> content);
    /// What comes next is another content.
    void endContent();

    bool contains(std::string_view name) const { return names_.contains(name); }

private:
    void endName();

    std::set<std::string, std::less<>> names_; ///< without a slash, escapes decoded
    std::string name_;                         ///< that is being read
    bool isInName_ = false;
};

} // namespace corvane
