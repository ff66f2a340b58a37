// The patterns of a page by the names that resources give them, each made once.
#pragma once

#include "host/artwork.h"
#include "host/matrix.h"
#include "objects/object.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace corvane {

struct Interpreter;

/// Whether the host has gradients and patterns for what content paints with.
bool hostHoldsPatterns();

class PagePatterns {
public:
    /// The paint that a pattern of the resources in use is, for the content that is being read.
    /// `colour` is that of a pattern without colours of its own. Nothing where there is no such
    /// pattern, or it cannot be drawn. Raises what reading its objects raises.
    std::optional<Colour> find(Interpreter& interpreter, std::string_view name,
                               const Colour& colour);

private:
    /// Of a pattern its number or, for one that has none, the dictionary that names it and its
    /// name; the base and the default spaces of the content that uses it; and the colour of one
    /// that has none of its own.
    using Key = std::tuple<std::int32_t, std::uint32_t, std::string, std::array<std::uint64_t, 6>,
                           std::size_t, std::array<std::int64_t, 6>>;

    std::map<Key, std::optional<Colour>> known_;
    std::vector<ObjectOwner> held_; ///< dictionaries among the keys: nothing takes their place
};

} // namespace corvane
