// The gradients, patterns, colours of inks and notes of a document, each kept once.
#pragma once

#include "app/artwork/budget.h"
#include "app/artwork/error.h"
#include "app/artwork/paint/paint.h"
#include "app/artwork/storage/number_index.h"

#include <cstdint>
#include <deque>
#include <string>
#include <utility>

namespace corvane {

std::uint32_t hashOf(const Gradient&);
std::uint32_t hashOf(const Pattern&);
std::uint32_t hashOf(const SpotColour&);
std::uint32_t hashOf(const InkMixture&);
std::uint32_t hashOf(const std::string&);

/// Bytes that a record takes.
std::int64_t sizeOf(const Gradient&);
std::int64_t sizeOf(const Pattern&);
std::int64_t sizeOf(const SpotColour&);
std::int64_t sizeOf(const InkMixture&);
std::int64_t sizeOf(const std::string&);

/// Records are numbered from 0, and stay where they are for the document's life.
template <class Record>
class PaintTable {
public:
    explicit PaintTable(ArtworkBudget& budget) : budget_(&budget), index_(budget) {}

    /// The number of a record equal to this one. Throws `ArtworkError` past the budget.
    std::uint32_t add(Record record) {
        const std::uint32_t hash = hashOf(record);
        const std::uint32_t known =
            index_.find(hash, [&](std::uint32_t number) { return records_[number] == record; });
        if (known != NumberIndex::none) {
            return known;
        }
        if (records_.size() == most) {
            throw ArtworkError("there are more gradients, patterns or notes than handles");
        }
        index_.reserve();
        const std::int64_t bytes = sizeOf(record);
        budget_->charge(bytes);
        try {
            records_.push_back(std::move(record));
        } catch (...) {
            budget_->discharge(bytes);
            throw;
        }
        const auto number = static_cast<std::uint32_t>(records_.size() - 1);
        index_.add(hash, number);
        return number;
    }

    std::size_t size() const { return records_.size(); }
    const Record& operator[](std::uint32_t number) const { return records_[number]; }

private:
    static constexpr std::size_t most = std::size_t{1} << 28;

    ArtworkBudget* budget_;
    std::deque<Record> records_;
    NumberIndex index_;
};

/// All tables, under the handles that the host gives out: the kind in the upper 4 bits, the number
/// from 1 below. Reading with a handle of another kind, or one that was never given out, throws
/// `ArtworkError`.
class PaintTables {
public:
    explicit PaintTables(ArtworkBudget& budget)
        : gradients_(budget), patterns_(budget), spotColours_(budget), mixtures_(budget),
          notes_(budget) {}

    /// These throw `ArtworkError` where a value has no meaning; see `paint.h`.
    PaintSource add(Gradient);
    PaintSource add(Pattern);
    PaintSource add(SpotColour);
    PaintSource add(InkMixture);
    Note add(std::string note);

    const Gradient& gradient(PaintSource) const;
    const Pattern& pattern(PaintSource) const;
    const SpotColour& spotColour(PaintSource) const;
    const InkMixture& inkMixture(PaintSource) const;
    const std::string& note(Note) const;
    /// Gradient, pattern, custom or inks.
    ColourKind kind(PaintSource) const;

private:
    PaintTable<Gradient> gradients_;
    PaintTable<Pattern> patterns_;
    PaintTable<SpotColour> spotColours_;
    PaintTable<InkMixture> mixtures_;
    PaintTable<std::string> notes_;
};

} // namespace corvane
