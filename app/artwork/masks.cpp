#include "app/artwork/masks.h"

#include "app/artwork/error.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace corvane {

namespace {

constexpr std::size_t mostMasks = std::size_t{1} << 28;

/// Steps of a transfer; more than 16 bits of opacity cannot tell apart.
constexpr std::size_t mostSteps = 1 << 16;

bool hasMeaning(const MaskFacts& facts) {
    const auto& transfer = facts.transfer;
    return isOpacity(facts.backdrop) && transfer.size() != 1 && transfer.size() <= mostSteps &&
           std::ranges::all_of(transfer, isOpacity);
}

} // namespace

bool isOpacity(double number) {
    return number >= 0 && number <= 1;
}

SoftMask MaskTable::add(const MaskFacts& facts) {
    if (!hasMeaning(facts)) {
        throw ArtworkError("the mask has a value without meaning");
    }
    if (records_.size() == mostMasks) {
        throw ArtworkError("there are more masks than handles");
    }
    Record record{facts, {facts.transfer.begin(), facts.transfer.end()}};
    record.facts.transfer = record.transfer;
    budget_->charge(
        static_cast<std::int64_t>(sizeof(Record) + record.transfer.size() * sizeof(double)));
    records_.push_back(std::move(record));
    return static_cast<SoftMask>(records_.size());
}

const MaskFacts& MaskTable::operator[](SoftMask mask) const {
    const auto number = static_cast<std::uint32_t>(mask);
    if (number == 0 || number > records_.size()) {
        throw ArtworkError("there is no such mask");
    }
    return records_[number - 1].facts;
}

} // namespace corvane
