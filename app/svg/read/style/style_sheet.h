// The style sheets of a file (CSS 2.1): rules whose selectors name one element.
#pragma once

#include "app/svg/read/budget.h"
#include "app/svg/read/style/attributes.h"
#include "app/svg/read/style/declarations.h"
#include "app/svg/read/tally.h"

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane {

/// Rules with selectors like "path", ".thin", "#p1", "path.thin.red", "*" and lists of them. Others
/// (descendants, states, media) are counted as "style rule".
class StyleSheet {
public:
    StyleSheet(const ReadingBudget& budget, Tally& tally) : budget_(budget), tally_(tally) {}

    /// Adds the text of a `style` element; one for other media than screens is counted. Throws
    /// `SvgError` past the budget.
    void add(std::string_view css, std::string_view media = {});

    bool empty() const { return rules_.empty(); }

    /// Sets the properties of the rules that match an element, either the `important` ones or the
    /// others; of equal properties, the one that wins. Throws `SvgError` past the budget.
    void declare(std::string_view type, const Attributes& element, bool important, Declared& into);

private:
    struct Selector {
        std::string_view type; ///< empty: any
        std::string_view id;
        std::vector<std::string_view> classes;
        std::uint32_t specificity() const;
    };
    struct Declaration {
        Attribute property;
        std::string_view value;
        bool important;
    };
    struct Rule {
        Selector selector;
        std::size_t block; ///< of `blocks_`
    };
    using RuleNumbers = std::vector<std::uint32_t>;
    using Index = std::unordered_map<std::string_view, RuleNumbers>;

    void addRule(std::string_view selectors, std::string_view block);
    static bool parseSelector(std::string_view text, Selector& into);
    const RuleNumbers& match(std::string_view type, const Attributes& element);
    void collect(const RuleNumbers& candidates, std::string_view type, const Attributes& element,
                 RuleNumbers& into);

    const ReadingBudget& budget_;
    Tally& tally_;
    std::deque<std::string> texts_; ///< without comments; what values point into
    std::vector<Rule> rules_;
    std::vector<std::vector<Declaration>> blocks_;
    std::size_t declarations_ = 0;
    std::int64_t tried_ = 0;
    Index byId_;
    Index byClass_; ///< the first class of selectors without id
    Index byType_;  ///< selectors with neither
    RuleNumbers anywhere_;
    /// Elements with one type and class attribute have the same rules, but for ids.
    std::unordered_map<std::string, RuleNumbers> matched_;
    RuleNumbers withId_;
};

} // namespace corvane
