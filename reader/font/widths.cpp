#include "reader/font/widths.h"

#include "reader/font/font_entries.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace corvane {

namespace {

/// The widest glyph that is believed, in ems: rules and brackets of formulas have some.
constexpr double widest = 100'000;

/// CIDs have 16 bits.
constexpr double highestCid = 65'535;

/// Numbers of one W or W2: three for each CID, and as many again. Its arrays may be one array met
/// again and again.
constexpr std::size_t mostNumbers = 2 * 3 * 65'536;

double boundedWidth(double width) {
    return std::clamp(width, -widest, widest);
}

std::optional<std::uint32_t> cidOf(const Object& object) {
    const std::optional<double> number = numberOf(object);
    if (!number || *number < 0 || *number > highestCid) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(*number);
}

/// Takes the array of W or W2 apart: "c [v ...]" gives values to CIDs from c on, "c1 c2 v" one to
/// all of a range. A value has `count` numbers. `add` gets first CID, last CID and the values.
template <class Add>
void readRanges(DocumentCache& cache, const Object& array, std::size_t count, Add add) {
    if (array.type != ObjectType::array) {
        return;
    }
    const std::span<const Object> elements = elementsObject(array);
    std::size_t left = mostNumbers;
    std::size_t at = 0;
    while (at + 1 < elements.size() && left >= count) {
        const std::optional<std::uint32_t> first = cidOf(resolved(cache, elements[at]).get());
        const ObjectOwner second = resolved(cache, elements[at + 1]);
        std::vector<double> numbers;
        const auto gather = [&](std::span<const Object> from) {
            for (const Object& number : from) {
                numbers.push_back(
                    boundedWidth(numberOf(resolved(cache, number).get()).value_or(0)));
            }
        };
        if (second->type == ObjectType::array) {
            const std::span<const Object> listed = elementsObject(second.get());
            gather(listed.first(std::min(listed.size(), left)));
            left -= numbers.size();
            at += 2;
            for (std::size_t i = 0; first && i + count <= numbers.size(); i += count) {
                const auto cid = *first + static_cast<std::uint32_t>(i / count);
                add(cid, cid, std::span<const double>(numbers).subspan(i, count));
            }
            continue;
        }
        const std::optional<std::uint32_t> last = cidOf(second.get());
        if (!first || !last || at + 2 + count > elements.size()) {
            ++at; // out of step: looks for a beginning further on
            continue;
        }
        gather(elements.subspan(at + 2, count));
        at += 2 + count;
        add(*first, *last, std::span<const double>(numbers));
    }
}

} // namespace

SimpleWidths::SimpleWidths(DocumentCache& cache, const Object& font, const Object& descriptor) {
    const ObjectOwner array = entryOf(cache, font, "Widths");
    if (array->type != ObjectType::array) {
        return;
    }
    isThere_ = true;
    widths_.fill(boundedWidth(numberEntry(cache, descriptor, "MissingWidth").value_or(0)));
    const double first = numberEntry(cache, font, "FirstChar").value_or(0);
    if (first < 0 || first > 255) {
        return;
    }
    const auto start = static_cast<std::size_t>(first);
    const std::span<const Object> elements = elementsObject(array.get());
    for (std::size_t i = 0; i < elements.size() && start + i < widths_.size(); ++i) {
        if (const auto width = numberOf(resolved(cache, elements[i]).get())) {
            widths_[start + i] = boundedWidth(*width);
        }
    }
}

std::optional<double> SimpleWidths::widthOf(std::uint8_t code) const {
    return isThere_ ? std::optional(widths_[code]) : std::nullopt;
}

CidWidths::CidWidths(DocumentCache& cache, const Object& descendant) {
    usualWidth_ = boundedWidth(numberEntry(cache, descendant, "DW").value_or(1000));
    readRanges(cache, entryOf(cache, descendant, "W").get(), 1,
               [&](std::uint32_t first, std::uint32_t last, std::span<const double> values) {
                   widthPlaces_.add({.first = first,
                                     .last = last,
                                     .value = static_cast<std::uint32_t>(widths_.size()),
                                     .isConstant = true});
                   widths_.push_back(values[0]);
               });
    widthPlaces_.finish();

    const std::vector<double> usual = numbersEntry(cache, descendant, "DW2", 2);
    if (usual.size() == 2) {
        usualVertical_.originY = boundedWidth(usual[0]);
        usualVertical_.advance = boundedWidth(usual[1]);
    }
    readRanges(cache, entryOf(cache, descendant, "W2").get(), 3,
               [&](std::uint32_t first, std::uint32_t last, std::span<const double> values) {
                   verticalPlaces_.add({.first = first,
                                        .last = last,
                                        .value = static_cast<std::uint32_t>(verticals_.size()),
                                        .isConstant = true});
                   verticals_.push_back(
                       {.advance = values[0], .originX = values[1], .originY = values[2]});
               });
    verticalPlaces_.finish();
    charge_.resize(static_cast<std::int64_t>(widthPlaces_.bytes() + verticalPlaces_.bytes() +
                                             widths_.capacity() * sizeof(double) +
                                             verticals_.capacity() * sizeof(VerticalMetrics)));
}

double CidWidths::widthOf(std::uint32_t cid) const {
    const auto place = widthPlaces_.find(cid);
    return place ? widths_[*place] : usualWidth_;
}

VerticalMetrics CidWidths::verticalOf(std::uint32_t cid) const {
    if (const auto place = verticalPlaces_.find(cid)) {
        return verticals_[*place];
    }
    VerticalMetrics metrics = usualVertical_;
    metrics.originX = widthOf(cid) / 2;
    return metrics;
}

} // namespace corvane
