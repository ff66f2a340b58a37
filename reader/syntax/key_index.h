// Looking into dictionaries: those of many entries get an index by key when they are first looked
// into, since a page may name each of thousands of resources.
#pragma once

#include "objects/object.h"
#include "runtime/memory.h"

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane {

/// Indexes by the address of the dictionary's storage. Each owns the storage too: while it is here
/// the address is not given out again, and nobody changes the entries of a dictionary.
class KeyIndexes {
public:
    /// Value of `key` in a dictionary, or null; of several with one key the first or, where the
    /// rules say so, the last. `work` grows by the keys that were looked at.
    const Object* find(const Object& dictionary, std::string_view key, std::int64_t& work);

private:
    struct Index {
        ZoneCharge charge;
        ObjectOwner dictionary;
        std::vector<std::uint32_t> keys; ///< elements that are keys: by key, then in file order
    };

    const Index& indexOf(const Object& dictionary, std::int64_t& work);

    std::unordered_map<std::uint32_t, Index> indexes_;
    std::int64_t indexedKeys_ = 0;
};

} // namespace corvane
