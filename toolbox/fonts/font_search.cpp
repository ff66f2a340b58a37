#include "host/fonts.h"
#include "toolbox/fonts/font_names.h"
#include "toolbox/fonts/installed_fonts.h"

#include <algorithm>
#include <cstdlib>

namespace corvane {

namespace {

/// One search: the style that is wanted, and the characters.
class Search {
public:
    Search(const FontRequest& request, const std::vector<InstalledFont>& fonts)
        : request_(request), fonts_(fonts), style_(fontStyle(request.name)) {
        if (style_.weight == FontStyle{}.weight) {
            style_.weight = request.weight;
        }
        style_.isItalic |= request.isItalic;
    }

    /// Fonts must have all characters of the request, if `covering`.
    std::optional<FoundFont> find(bool covering) const {
        const std::string_view name = withoutSubsetTag(request_.name);
        const std::string stem = fontStem(name);
        const auto ofFamily = [](std::string_view family) {
            return [family](const InstalledFont& font) {
                return !family.empty() &&
                       std::ranges::find(font.families, family) != font.families.end();
            };
        };
        const std::string_view kind = kindStem(stem);
        const std::string_view generic = !kind.empty()           ? kind
                                         : request_.isFixedPitch ? "nimbusmono"
                                         : request_.isSerif      ? "nimbus"
                                                                 : "nimbussans";
        auto found = best(covering, FontMatch::named, [&](const InstalledFont& font) {
            return !name.empty() && font.postScriptName == name;
        });
        found = found ? found : best(covering, FontMatch::named, ofFamily(stem));
        found = found ? found : best(covering, FontMatch::standIn, ofFamily(standInStem(stem)));
        found = found ? found : best(covering, FontMatch::similar, ofFamily(generic));
        return found
                   ? found
                   : best(covering, FontMatch::similar, [](const InstalledFont&) { return true; });
    }

private:
    /// Lower is better. A wrong slant is worse than any wrong weight, a Type 1 program than its
    /// twin in OpenType of another width: Type 1 does not tell its width.
    std::int32_t distance(const InstalledFont& font) const {
        constexpr std::int32_t slant = 1000;
        constexpr std::int32_t type1 = 50;
        constexpr std::int32_t normalWidth = 100;
        return std::abs(font.weight - style_.weight) +
               (font.isItalic != style_.isItalic ? slant : 0) + (font.isType1 ? type1 : 0) +
               std::abs(font.width - normalWidth) / 4;
    }

    bool isUsable(const InstalledFont& font) const {
        return !(request_.isOpenType && font.isType1) &&
               std::ranges::find(request_.passedOver, font.path) == request_.passedOver.end();
    }

    /// Of equals the first in the list.
    template <class Condition>
    std::optional<FoundFont> best(bool covering, FontMatch match, Condition condition) const {
        const InstalledFont* found = nullptr;
        for (const InstalledFont& font : fonts_) {
            if (condition(font) && isUsable(font) &&
                (found == nullptr || distance(font) < distance(*found)) &&
                (!covering || font.covers(request_.characters))) {
                found = &font;
            }
        }
        if (found == nullptr) {
            return std::nullopt;
        }
        return FoundFont{found->path,   found->face,     match,
                         found->weight, found->isItalic, found->postScriptName};
    }

    const FontRequest& request_;
    const std::vector<InstalledFont>& fonts_;
    FontStyle style_;
};

} // namespace

std::optional<FoundFont> findFont(const FontRequest& request) {
    const Search search(request, installedFonts().list());
    const auto found = search.find(true);
    return found || request.characters.empty() ? found : search.find(false);
}

} // namespace corvane
