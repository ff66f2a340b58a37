#include "reader/layer/optional_content.h"

#include "objects/referenced.h"
#include "reader/document/text_string.h"
#include "reader/font/font_entries.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace corvane {

namespace {

/// Conditions that are looked at for a page, a few tenths of a second's work: real pages have some
/// hundred. Past it all show.
constexpr std::int64_t mostConditions = 16 * std::int64_t{budget::contentLayers};

/// The layers that an array names, or a single one; what has no number is none.
std::unordered_set<std::int32_t> layersIn(DocumentCache& cache, const Object& dictionary,
                                          std::string_view key) {
    std::unordered_set<std::int32_t> numbers;
    const Object entry = findEntry(cache, dictionary, key);
    const ObjectOwner value = resolved(cache, entry);
    if (typeObject(value.get()) == ObjectType::dictionary) {
        numbers.insert(referenced(entry).number);
    } else if (typeObject(value.get()) == ObjectType::array) {
        for (const Object& element : elementsObject(value.get())) {
            if (numbers.size() < static_cast<std::size_t>(budget::contentLayers)) {
                numbers.insert(referenced(element).number);
            }
        }
    }
    numbers.erase(0);
    return numbers;
}

/// Of a membership dictionary.
std::int64_t layerCount(DocumentCache& cache, const Object& membership) {
    const ObjectOwner layers = entryOf(cache, membership, "OCGs");
    return typeObject(layers.get()) == ObjectType::array ? sizeObject(layers.get()) : 1;
}

/// Of a membership dictionary: those of its layers.
std::string joinedNames(DocumentCache& cache, const Object& membership) {
    constexpr std::size_t longest = 512;
    std::string names;
    const ObjectOwner layers = entryOf(cache, membership, "OCGs");
    const auto add = [&](const Object& layer) {
        const std::string name = documentText(entryOf(cache, layer, "Name").get());
        if (!name.empty() && names.size() + name.size() < longest) {
            names += (names.empty() ? "" : ", ") + name;
        }
    };
    if (isDictionary(layers.get())) {
        add(layers.get());
    } else if (typeObject(layers.get()) == ObjectType::array) {
        for (const Object& layer : elementsObject(layers.get())) {
            if (names.size() >= longest / 2) {
                break;
            }
            add(resolved(cache, layer).get());
        }
    }
    return names;
}

} // namespace

const OptionalContent::Configuration& OptionalContent::configuration(DocumentCache& cache) {
    if (!configuration_) {
        Configuration read;
        const ObjectOwner catalog = entryOf(cache, cache.trailer.get(), "Root");
        const ObjectOwner properties = entryOf(cache, catalog.get(), "OCProperties");
        const ObjectOwner usual = entryOf(cache, properties.get(), "D");
        if (isDictionary(usual.get())) {
            read.showsOthers = nameEntry(cache, usual.get(), "BaseState") != "OFF";
            read.on = layersIn(cache, usual.get(), "ON");
            read.off = layersIn(cache, usual.get(), "OFF");
            read.locked = layersIn(cache, usual.get(), "Locked");
        }
        configuration_ = std::move(read);
    }
    return *configuration_;
}

bool OptionalContent::isOn(DocumentCache& cache, std::int32_t layer) {
    const Configuration& begins = configuration(cache);
    return begins.showsOthers ? !begins.off.contains(layer) : begins.on.contains(layer);
}

bool OptionalContent::isSpent() const {
    return conditions_ > mostConditions;
}

/// A layer, or an array of And, Or, Not and their operands. What cannot be read, and what is too
/// deep, is true.
bool OptionalContent::isTrue(DocumentCache& cache, const Object& expression, int depth) {
    ++conditions_;
    if (isSpent()) {
        return true;
    }
    const ObjectOwner value = resolved(cache, expression);
    if (typeObject(value.get()) == ObjectType::dictionary) {
        return isOn(cache, referenced(expression).number);
    }
    if (typeObject(value.get()) != ObjectType::array || sizeObject(value.get()) == 0 ||
        depth >= budget::visibilityNesting) {
        return true;
    }
    const std::span<const Object> elements = elementsObject(value.get());
    const std::string word = nameOf(resolved(cache, elements[0]).get());
    const auto holds = [&](const Object& operand) { return isTrue(cache, operand, depth + 1); };
    const std::span<const Object> operands = elements.subspan(1);
    if (word == "Not") {
        return operands.empty() || !holds(operands[0]);
    }
    const auto goesOn = [&](const Object& operand) { return !isSpent() && holds(operand); };
    const bool isMet =
        word == "Or" ? std::ranges::any_of(operands, holds) : std::ranges::all_of(operands, goesOn);
    return isMet || isSpent();
}

bool OptionalContent::isMembershipMet(DocumentCache& cache, const Object& membership) {
    const Object expression = findEntry(cache, membership, "VE");
    if (typeObject(resolved(cache, expression).get()) == ObjectType::array) {
        return isTrue(cache, expression, 0);
    }
    const std::unordered_set<std::int32_t> layers = layersIn(cache, membership, "OCGs");
    if (layers.empty()) {
        return true;
    }
    const auto isShown = [&](std::int32_t layer) { return isOn(cache, layer); };
    const std::string policy = nameEntry(cache, membership, "P");
    return policy == "AllOn"    ? std::ranges::all_of(layers, isShown)
           : policy == "AnyOff" ? !std::ranges::all_of(layers, isShown)
           : policy == "AllOff" ? std::ranges::none_of(layers, isShown)
                                : std::ranges::any_of(layers, isShown);
}

FileLayer OptionalContent::facts(DocumentCache& cache, const Object& dictionary,
                                 std::int32_t number) {
    const std::string type = nameEntry(cache, dictionary, "Type");
    const bool isRule = type == "OCMD";
    conditions_ += isRule ? layerCount(cache, dictionary) : 0;
    return {.name = !isRule     ? documentText(entryOf(cache, dictionary, "Name").get())
                    : isSpent() ? std::string()
                                : joinedNames(cache, dictionary),
            .isVisible =
                isRule ? isSpent() || isMembershipMet(cache, dictionary) : isOn(cache, number),
            .isLocked = !isRule && configuration(cache).locked.contains(number),
            .isLayer = type == "OCG",
            .isRule = isRule};
}

std::optional<FileLayer> OptionalContent::look(DocumentCache& cache, const Object& entry) {
    ObjectOwner dictionary;
    const bool isRead = attempted([&] { dictionary = resolved(cache, entry); });
    return isRead && isDictionary(dictionary.get())
               ? std::optional(facts(cache, dictionary.get(), referenced(entry).number))
               : std::nullopt;
}

ContentLayer OptionalContent::tell(const FileLayer& layer, std::int32_t number) {
    const ContentLayerFacts told{.name = layer.name,
                                 .isVisible = layer.isVisible,
                                 .isLocked = layer.isLocked,
                                 .object = number};
    ContentLayer made = ContentLayer::null;
    callHost(slot::addContentLayer, &told, &made);
    return made;
}

ContentLayer OptionalContent::find(DocumentCache& cache, const Object& entry) {
    const std::int32_t number = referenced(entry).number;
    if (const auto known = byNumber_.find(number); number != 0 && known != byNumber_.end()) {
        return known->second;
    }
    ObjectOwner dictionary = resolved(cache, entry);
    if (typeObject(dictionary.get()) != ObjectType::dictionary) {
        return ContentLayer::null;
    }
    if (const auto known = byPlace_.find(dictionary->data); known != byPlace_.end()) {
        return known->second;
    }
    if (told_ >= budget::contentLayers) {
        return ContentLayer::null;
    }
    ++told_;
    const FileLayer told = facts(cache, dictionary.get(), number);
    ContentLayer layer = ContentLayer::null;
    if (number != 0) {
        layer = tell(told, number);
        byNumber_.emplace(number, layer);
    } else {
        const auto [same, isNew] =
            unnumbered_.try_emplace(std::pair(told.name, told.isVisible), ContentLayer::null);
        if (isNew) {
            same->second = tell(told, 0);
        }
        layer = same->second;
        byPlace_.emplace(dictionary->data, layer);
        held_.push_back(std::move(dictionary));
    }
    return layer;
}

} // namespace corvane
