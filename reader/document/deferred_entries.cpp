#include "reader/document/deferred_entries.h"

#include "objects/identity.h"
#include "reader/document/entries.h"
#include "runtime/budget.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

/// Numbers whose entries are entered together: objects of a page mostly stand near one another.
constexpr std::int32_t blockNumbers = 256;

/// Entries below which reading them all costs nothing.
constexpr std::int64_t fewEntries = 1024;

/// Parts that are looked through for each block. Large files have one or two, and one more for each
/// save by a program that knows no short updates.
constexpr std::size_t mostParts = 64;

} // namespace

bool DeferredEntries::takes(std::span<const Subsection> stated) const {
    std::int64_t entries = 0;
    for (const auto& [first, count] : stated) {
        const std::int64_t end = std::int64_t{first} + count;
        if (first < 0 || count < 1 || end > std::int64_t{budget::objectNumber} + 1) {
            return false;
        }
        entries += count;
    }
    return !isGivenUp_ && parts_.size() + stated.size() <= mostParts &&
           (!parts_.empty() || entries >= fewEntries);
}

void DeferredEntries::add(std::int32_t first, std::int32_t count, Enter enter) {
    usedIdentity(first + count - 1);
    parts_.push_back({first, count, section_, std::move(enter)});
    // What was entered already is entered once more, which changes nothing, and then this.
    entered_.clear();
    sourceReference(*cache_.references, this);
}

void DeferredEntries::endSection() {
    ++section_;
    entered_.clear();
}

void DeferredEntries::giveUp() {
    if (!parts_.empty()) {
        provideAll();
        isGivenUp_ = true;
        parts_.clear();
        sourceReference(*cache_.references, nullptr);
    }
}

void DeferredEntries::provide(std::int32_t number) {
    const auto block = static_cast<std::size_t>(number / blockNumbers);
    if (number < 0 || isEntering_ || (block < entered_.size() && entered_[block])) {
        return;
    }
    enterBlock(number / blockNumbers);
    entered_.resize(std::max(entered_.size(), block + 1));
    entered_[block] = true;
}

void DeferredEntries::provideAll() {
    std::int32_t end = 0;
    for (const Part& part : parts_) {
        end = std::max(end, part.first + part.count);
    }
    for (std::int32_t number = 0; number < end; number += blockNumbers) {
        provide(number);
    }
}

void DeferredEntries::enterBlock(std::int64_t block) {
    /// Numbers are not looked up while they are entered, and a section that is being read keeps
    /// what it frees.
    struct Entering {
        explicit Entering(DeferredEntries& entries) : self(entries) {
            self.isEntering_ = true;
            std::swap(freedHere, self.cache_.freedHere);
        }
        ~Entering() {
            self.isEntering_ = false;
            std::swap(freedHere, self.cache_.freedHere);
        }
        Entering(const Entering&) = delete;
        Entering& operator=(const Entering&) = delete;
        DeferredEntries& self;
        std::vector<std::int32_t> freedHere;
    };
    Entering entering(*this);
    const auto begin = static_cast<std::int32_t>(block * blockNumbers);
    std::int32_t section = 0;
    for (const Part& part : parts_) {
        if (part.section != std::exchange(section, part.section)) {
            settleFreed(cache_);
        }
        const std::int32_t from = std::max(begin, part.first);
        const std::int32_t to = std::min(begin + blockNumbers, part.first + part.count);
        if (from < to) {
            part.enter(from - part.first, to - from);
        }
    }
    // The section that is being read may still say where an object is that it shows as free.
    if (section == section_) {
        entering.freedHere.insert(entering.freedHere.end(), cache_.freedHere.begin(),
                                  cache_.freedHere.end());
        cache_.freedHere.clear();
    }
    settleFreed(cache_);
}

} // namespace corvane
