#include "app/svg/paint/mask_names.h"

#include "app/artwork/geometry/path_walk.h"

#include <algorithm>

namespace corvane {

std::vector<SoftMask> MaskNames::claim(const Document& document, SoftMask mask) {
    std::vector<SoftMask> claimed;
    const auto add = [&](SoftMask found) {
        if (found != SoftMask::null && numbers_.try_emplace(found).second) {
            claimed.push_back(found);
        }
    };
    add(mask);
    for (std::size_t i = 0; i < claimed.size(); ++i) {
        const Art content = document.mask(claimed[i]).content;
        for (Art art = content; art != Art::null; art = following(document, art, content)) {
            add(document.appearance(art).mask);
        }
    }
    // A content only has masks that were made before its own: their handles are smaller.
    std::ranges::sort(claimed);
    for (const SoftMask found : claimed) {
        numbers_[found] = ++count_;
    }
    return claimed;
}

std::string MaskNames::id(SoftMask mask) const {
    return mask == SoftMask::null ? std::string() : "mask" + std::to_string(numbers_.at(mask));
}

std::string MaskNames::filterId(SoftMask mask) const {
    return "transfer" + std::to_string(numbers_.at(mask));
}

} // namespace corvane
