// The list under font families and masks: records of the zone, newest first, numbered from 1.
#pragma once

#include "runtime/memory.h"

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <string_view>
#include <utility>

namespace corvane::detail {

/// A block with the bytes of `text` and a terminator.
inline BlockOwner copyOfText(std::string_view text) {
    BlockOwner copy(allocateMemory(static_cast<std::int64_t>(text.size()) + 1));
    std::copy(text.begin(), text.end(), copy.get().as<char>().get());
    return copy;
}

/// `Record` links to the next by `next`.
template <class Record>
class ResourceList {
public:
    std::int32_t count() const { return count_; }

    /// Puts `record` in front, a new block.
    Ref<Record> add(const Record& record) {
        const auto added = allocateRecord<Record>();
        *added = record;
        added->next = std::exchange(first_, added);
        ++count_;
        return added;
    }

    /// The newest record for which `wanted` holds, or null.
    template <std::predicate<const Record&> Wanted>
    Ref<Record> find(Wanted wanted) const {
        Ref<Record> record = first_;
        while (record && !wanted(*record)) {
            record = record->next;
        }
        return record;
    }

    /// Frees every record, `clear` first giving back what it owns.
    template <std::invocable<Record&> Clear>
    void close(Clear clear) {
        while (first_) {
            clear(*first_);
            freeRecord(std::exchange(first_, first_->next));
        }
        count_ = 0;
    }

private:
    Ref<Record> first_;
    std::int32_t count_ = 0;
};

} // namespace corvane::detail
