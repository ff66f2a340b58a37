#include "app/svg/read/style/style_sheet.h"

#include "app/svg/read/style/property_values.h"
#include "app/svg/read/values/length.h"
#include "app/svg/reader.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

std::string withoutComments(std::string_view css) {
    std::string text;
    text.reserve(css.size());
    while (!css.empty()) {
        const std::size_t start = css.find("/*");
        text.append(css.substr(0, start));
        if (start == std::string_view::npos) {
            break;
        }
        const std::size_t end = css.find("*/", start + 2);
        css = end == std::string_view::npos ? std::string_view{} : css.substr(end + 2);
        text += ' ';
    }
    return text;
}

bool isNameLetter(char c) {
    return isLetter(c) || isDigit(c) || c == '-' || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

std::string_view takeName(TextCursor& cursor) {
    const std::string_view before = cursor.rest();
    while (isNameLetter(cursor.peek())) {
        cursor.skip();
    }
    return cursor.since(before);
}

bool hasClass(std::string_view classes, std::string_view wanted) {
    TextCursor cursor(classes);
    for (cursor.skipBlanks(); !cursor.atEnd(); cursor.skipBlanks()) {
        const std::string_view before = cursor.rest();
        while (!cursor.atEnd() && !isBlank(cursor.peek())) {
            cursor.skip();
        }
        if (cursor.since(before) == wanted) {
            return true;
        }
    }
    return false;
}

/// Blanks, and the marks that hide a sheet from programs of old (CSS 2.1, 4.4).
void skipBetweenRules(TextCursor& cursor) {
    for (cursor.skipBlanks();; cursor.skipBlanks()) {
        const std::string_view rest = cursor.rest();
        const std::size_t mark = rest.starts_with("<!--") ? 4 : rest.starts_with("-->") ? 3 : 0;
        if (mark == 0) {
            return;
        }
        cursor = TextCursor(rest.substr(mark));
    }
}

/// Skips the block of a rule that is not read, with the blocks within it.
void skipBlock(TextCursor& cursor) {
    for (int depth = 1; depth > 0 && !cursor.atEnd(); cursor.skip()) {
        depth += cursor.peek() == '{' ? 1 : cursor.peek() == '}' ? -1 : 0;
    }
}

} // namespace

std::uint32_t StyleSheet::Selector::specificity() const {
    const auto counted = static_cast<std::uint32_t>(std::min<std::size_t>(classes.size(), 255));
    return (id.empty() ? 0U : 1U) << 16 | counted << 8 | (type.empty() ? 0U : 1U);
}

void StyleSheet::add(std::string_view css, std::string_view media) {
    if (!keywordIn(trimmed(media), {"", "all", "screen"})) {
        tally_.add("style rule");
        return;
    }
    TextCursor cursor(texts_.emplace_back(withoutComments(css)));
    for (skipBetweenRules(cursor); !cursor.atEnd(); skipBetweenRules(cursor)) {
        if (cursor.peek() == '@') {
            // The files of fonts are not read: text has the names of its fonts.
            if (!cursor.rest().starts_with("@font-face")) {
                tally_.add("style rule");
            }
            while (!cursor.atEnd() && cursor.peek() != ';' && cursor.peek() != '{') {
                cursor.skip();
            }
            if (cursor.take('{')) {
                skipBlock(cursor);
            } else {
                cursor.skip();
            }
            continue;
        }
        const std::string_view selectors = cursor.takeUntil('{');
        addRule(selectors, takeOutsideBrackets(cursor, '}'));
    }
    matched_.clear();
}

void StyleSheet::addRule(std::string_view selectors, std::string_view block) {
    std::vector<Declaration>& declarations = blocks_.emplace_back();
    forEachDeclaration(block, [&](std::string_view name, std::string_view value, bool important) {
        const Attribute property = propertyByName(name);
        if (!isProperty(property)) {
            const bool size = property == Attribute::width || property == Attribute::height;
            if (isGeometry(property) && !size && value != "none") {
                tally_.add("geometry in a style");
            } else if (const std::string_view kind = unreadProperty(name); !kind.empty()) {
                tally_.add(kind);
            }
            return;
        }
        if (isUnreadValue(value)) {
            tally_.add("CSS value");
        }
        // Of equal ones the last counts: a block stays as short as the list of properties.
        const auto same = std::ranges::find_if(declarations, [&](const Declaration& known) {
            return known.property == property && known.important == important;
        });
        if (same != declarations.end()) {
            same->value = isValueOf(property, value) ? value : same->value;
        } else {
            declarations.push_back({property, value, important});
        }
    });
    declarations_ += declarations.size() + 1;
    TextCursor list(selectors);
    while (!list.atEnd()) {
        Selector selector;
        if (!parseSelector(trimmed(list.takeUntil(',')), selector)) {
            tally_.add("style rule");
            continue;
        }
        const auto number = static_cast<std::uint32_t>(rules_.size());
        if (!selector.id.empty()) {
            byId_[selector.id].push_back(number);
        } else if (!selector.classes.empty()) {
            byClass_[selector.classes.front()].push_back(number);
        } else if (!selector.type.empty()) {
            byType_[selector.type].push_back(number);
        } else {
            anywhere_.push_back(number);
        }
        declarations_ += selector.classes.size() + 1;
        rules_.push_back({std::move(selector), blocks_.size() - 1});
    }
    if (declarations_ > budget_.declarations) {
        throw SvgError("the style sheets hold too many rules");
    }
}

bool StyleSheet::parseSelector(std::string_view text, Selector& into) {
    TextCursor cursor(text);
    if (!cursor.take('*')) {
        into.type = takeName(cursor);
    }
    while (!cursor.atEnd()) {
        const bool isId = cursor.take('#');
        if (!isId && !cursor.take('.')) {
            return false;
        }
        const std::string_view name = takeName(cursor);
        if (name.empty() || (isId && !into.id.empty())) {
            return false;
        }
        if (isId) {
            into.id = name;
        } else {
            into.classes.push_back(name);
        }
    }
    return !text.empty();
}

void StyleSheet::collect(const RuleNumbers& candidates, std::string_view type,
                         const Attributes& element, RuleNumbers& into) {
    const std::string_view classes = element[Attribute::class_];
    for (const std::uint32_t number : candidates) {
        const Selector& selector = rules_[number].selector;
        tried_ += 1 + std::ssize(selector.classes) * (1 + std::ssize(classes) / 16);
        if (tried_ > budget_.rulesTried) {
            throw SvgError("the style sheets are too large for this number of elements");
        }
        const bool right = (selector.type.empty() || selector.type == type) &&
                           std::ranges::all_of(selector.classes, [&](std::string_view name) {
                               return hasClass(classes, name);
                           });
        if (right) {
            into.push_back(number);
        }
    }
}

/// The rules of an element, those that win last.
const StyleSheet::RuleNumbers& StyleSheet::match(std::string_view type, const Attributes& element) {
    const auto sort = [&](RuleNumbers& numbers) {
        std::ranges::sort(numbers, [&](std::uint32_t left, std::uint32_t right) {
            return std::pair(rules_[left].selector.specificity(), left) <
                   std::pair(rules_[right].selector.specificity(), right);
        });
        numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    };
    const std::string_view classes = element[Attribute::class_];
    std::string key(type);
    key += ' ';
    key += classes;
    const auto [found, isNew] = matched_.try_emplace(std::move(key));
    RuleNumbers& numbers = found->second;
    if (isNew) {
        collect(anywhere_, type, element, numbers);
        if (const auto rules = byType_.find(type); rules != byType_.end()) {
            collect(rules->second, type, element, numbers);
        }
        TextCursor cursor(classes);
        for (cursor.skipBlanks(); !cursor.atEnd(); cursor.skipBlanks()) {
            const std::string_view before = cursor.rest();
            while (!cursor.atEnd() && !isBlank(cursor.peek())) {
                cursor.skip();
            }
            if (const auto rules = byClass_.find(cursor.since(before)); rules != byClass_.end()) {
                collect(rules->second, type, element, numbers);
            }
        }
        sort(numbers);
    }
    tried_ += std::ssize(numbers);
    const auto rules = byId_.find(element[Attribute::id]);
    if (rules == byId_.end()) {
        return numbers;
    }
    withId_ = numbers;
    collect(rules->second, type, element, withId_);
    sort(withId_);
    return withId_;
}

void StyleSheet::declare(std::string_view type, const Attributes& element, bool important,
                         Declared& into) {
    for (const std::uint32_t number : match(type, element)) {
        for (const Declaration& declaration : blocks_[rules_[number].block]) {
            ++tried_;
            if (declaration.important == important) {
                into.offer(declaration.property, declaration.value);
            }
        }
    }
}

} // namespace corvane
