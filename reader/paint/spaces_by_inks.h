// Colour spaces that mix inks, found by the names of these.
#pragma once

#include "reader/paint/colour_space.h"

#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

class SpacesByInks {
public:
    /// Keeps the space where it has `inkNames`; null is passed over.
    void add(ColourSpacePointer space) {
        if (space != nullptr && !space->inkNames.empty()) {
            spaces_[space->inkNames].push_back(std::move(space));
        }
    }

    /// Those of just these inks, as they were added. Names are as in `InkMixtureFacts::names`.
    std::span<const ColourSpacePointer> of(std::string_view inkNames) const {
        const auto found = spaces_.find(inkNames);
        return found != spaces_.end() ? std::span(found->second)
                                      : std::span<const ColourSpacePointer>();
    }

private:
    std::map<std::string, std::vector<ColourSpacePointer>, std::less<>> spaces_;
};

} // namespace corvane
