// The images of a file that the host has already, so that one that is drawn often is read once.
#pragma once

#include "host/image.h"

#include <cstdint>
#include <map>
#include <utility>

namespace corvane {

class DeliveredImages {
public:
    /// An object, and the colour (0xRRGGBB) that a stencil is painted in; of others -1.
    using Name = std::pair<std::int32_t, std::int32_t>;

    /// Null where the host has none.
    Image find(Name name) const {
        const auto known = images_.find(name);
        return known == images_.end() ? Image::null : known->second;
    }
    void keep(Name name, Image image) { images_.emplace(name, image); }

private:
    std::map<Name, Image> images_;
};

} // namespace corvane
