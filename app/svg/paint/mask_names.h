// Which masks are written, and under which ids.
#pragma once

#include "app/artwork/document.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace corvane {

class MaskNames {
public:
    /// The masks that must be written before art that has this one, in the order of writing: those
    /// that a mask's content has come before it. From now on they have ids. Null: none.
    std::vector<SoftMask> claim(const Document&, SoftMask);
    /// Of a mask that was claimed; empty for null.
    std::string id(SoftMask) const;
    /// The same of the filter that does what the mask's transfer says.
    std::string filterId(SoftMask) const;

private:
    std::unordered_map<SoftMask, std::uint32_t> numbers_;
    std::uint32_t count_ = 0;
};

} // namespace corvane
