// Fields that only some pieces of art have, kept beside the tree so that nodes stay small.
#pragma once

#include "app/artwork/budget.h"
#include "app/artwork/tree.h"

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace corvane {

/// Records for some of the nodes, by place. Records lie in pages, and a page exists only while one
/// of its nodes has a record. So records cost their size and a hundredth more if all nodes have
/// one, and nothing if none has. Large values belong into a table of their own, with their number
/// here.
template <class Record>
class SideTable {
    static_assert(std::is_trivially_copyable_v<Record>);

public:
    explicit SideTable(ArtworkBudget& budget) : budget_(&budget) {}
    SideTable(const SideTable&) = delete;
    SideTable& operator=(const SideTable&) = delete;
    ~SideTable() { budget_->discharge(charged_); }

    /// The node's record, or null. Valid until records are set or erased.
    const Record* find(NodeIndex node) const {
        const std::size_t page = node / pageSize;
        const std::size_t place = node % pageSize;
        const bool there =
            page < pages_.size() && pages_[page] != nullptr && pages_[page]->taken[place];
        return there ? &pages_[page]->records[place] : nullptr;
    }

    /// Throws `ArtworkError` past the budget.
    void set(NodeIndex node, const Record& record) {
        Page& page = pageOf(node / pageSize);
        page.taken[node % pageSize] = true;
        page.records[node % pageSize] = record;
    }

    /// Erases the node's record, if it has one.
    void erase(NodeIndex node) noexcept {
        if (find(node) == nullptr) {
            return;
        }
        std::unique_ptr<Page>& page = pages_[node / pageSize];
        page->taken[node % pageSize] = false;
        if (page->taken.none()) {
            page.reset();
            budget_->discharge(pageBytes);
            charged_ -= pageBytes;
        }
    }

    /// Gives the copy of a node the record that the node has. Throws `ArtworkError` past the
    /// budget.
    void copy(NodeIndex from, NodeIndex to) {
        if (const Record* const found = find(from)) {
            const Record record = *found;
            set(to, record);
        }
    }

private:
    static constexpr std::size_t pageSize = 256;

    struct Page {
        std::bitset<pageSize> taken;
        Record records[pageSize];
    };
    static constexpr auto pageBytes = static_cast<std::int64_t>(sizeof(Page));

    void charge(std::int64_t bytes) {
        budget_->charge(bytes);
        charged_ += bytes;
    }

    Page& pageOf(std::size_t number) {
        if (number >= pages_.size()) {
            const std::size_t more = number + 1 - pages_.size();
            charge(static_cast<std::int64_t>(more * sizeof(std::unique_ptr<Page>)));
            pages_.resize(number + 1);
        }
        if (pages_[number] == nullptr) {
            auto made = std::make_unique<Page>();
            charge(pageBytes);
            pages_[number] = std::move(made);
        }
        return *pages_[number];
    }

    ArtworkBudget* budget_;
    std::vector<std::unique_ptr<Page>> pages_;
    std::int64_t charged_ = 0;
};

} // namespace corvane
