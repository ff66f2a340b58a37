// What artwork cannot hold, counted by kind.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace corvane {

class Tally {
public:
    /// `kind` is a literal.
    void add(std::string_view kind) { ++counts_[kind]; }

    std::map<std::string, std::int32_t> counts() const { return {counts_.begin(), counts_.end()}; }

private:
    std::map<std::string_view, std::int32_t> counts_;
};

} // namespace corvane
