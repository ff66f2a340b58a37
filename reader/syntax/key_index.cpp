#include "reader/syntax/key_index.h"

#include "runtime/budget.h"
#include "runtime/rules.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <span>
#include <utility>

namespace corvane {

namespace {

/// Elements up to which a dictionary is simply searched: 64 entries.
constexpr std::size_t searchedElements = 128;

const Object* search(std::span<const Object> elements, std::string_view key) {
    const std::size_t pairs = elements.size() / 2;
    for (std::size_t i = 0; i < pairs; ++i) {
        const std::size_t pair = rules().lastKeyCounts ? pairs - 1 - i : i;
        const Object& name = elements[2 * pair];
        if (typeObject(name) == ObjectType::literal && literalObject(name) == key) {
            return &elements[2 * pair + 1];
        }
    }
    return nullptr;
}

} // namespace

const Object* KeyIndexes::find(const Object& dictionary, std::string_view key, std::int64_t& work) {
    const std::span<const Object> elements = elementsObject(dictionary);
    if (elements.size() <= searchedElements) {
        work += static_cast<std::int64_t>(elements.size() / 2);
        return search(elements, key);
    }
    const std::vector<std::uint32_t>& keys = indexOf(dictionary, work).keys;
    work += static_cast<std::int64_t>(std::bit_width(keys.size()));
    const auto keyOf = [elements](std::uint32_t element) {
        return literalObject(elements[element]);
    };
    const auto first = std::ranges::lower_bound(keys, key, {}, keyOf);
    const auto behind = std::ranges::upper_bound(keys, key, {}, keyOf);
    if (first == behind) {
        return nullptr;
    }
    return &elements[(rules().lastKeyCounts ? *std::prev(behind) : *first) + 1];
}

const KeyIndexes::Index& KeyIndexes::indexOf(const Object& dictionary, std::int64_t& work) {
    const auto found = indexes_.find(dataObject(dictionary));
    if (found != indexes_.end()) {
        return found->second;
    }
    const std::span<const Object> elements = elementsObject(dictionary);
    const auto pairs = static_cast<std::int64_t>(elements.size() / 2);
    work += pairs;
    if (indexedKeys_ + pairs > budget::indexedKeys) {
        indexes_.clear();
        indexedKeys_ = 0;
    }
    Index index;
    index.charge.resize(pairs * std::int64_t{sizeof(std::uint32_t)});
    index.keys.reserve(static_cast<std::size_t>(pairs));
    for (std::uint32_t i = 0; i + 1 < elements.size(); i += 2) {
        if (typeObject(elements[i]) == ObjectType::literal) {
            index.keys.push_back(i);
        }
    }
    std::ranges::stable_sort(index.keys, {}, [elements](std::uint32_t element) {
        return literalObject(elements[element]);
    });
    index.dictionary = sharedObject(dictionary);
    const Index& kept = indexes_.emplace(dataObject(dictionary), std::move(index)).first->second;
    indexedKeys_ += pairs;
    return kept;
}

} // namespace corvane
