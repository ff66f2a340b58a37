// A list whose length the host decides: its memory counts against the zone's limit, so that a
// list without an end raises `memory`.
#pragma once

#include "runtime/memory.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

template <class T>
class ChargedList {
public:
    void push(const T& item) {
        if (items_.size() == items_.capacity()) {
            const std::size_t room = std::max<std::size_t>(1, 2 * items_.size());
            charge_.resize(static_cast<std::int64_t>(room * sizeof(T)));
            items_.reserve(room);
        }
        items_.push_back(item);
    }
    /// Takes the last item off.
    T pop() {
        const T item = items_.back();
        items_.pop_back();
        return item;
    }
    bool empty() const { return items_.empty(); }
    std::size_t size() const { return items_.size(); }
    std::span<const T> items() const { return items_; }
    T& operator[](std::size_t index) { return items_[index]; }
    const T& operator[](std::size_t index) const { return items_[index]; }

private:
    std::vector<T> items_;
    ZoneCharge charge_;
};

} // namespace corvane
