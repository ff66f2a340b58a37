#include "app/artwork/paint/paint_table.h"

#include "host/inks.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace corvane {

namespace {

constexpr int kindShift = 28;
constexpr std::uint32_t numberMask = (std::uint32_t{1} << kindShift) - 1;

PaintSource sourceOf(ColourKind kind, std::uint32_t number) {
    return static_cast<PaintSource>(static_cast<std::uint32_t>(kind) << kindShift | (number + 1));
}

void addMatrix(Hash& hash, const RealMatrix& matrix) {
    for (const double entry : {matrix.a, matrix.b, matrix.c, matrix.d, matrix.tx, matrix.ty}) {
        hash.addNumber(entry);
    }
}

bool finite(std::initializer_list<double> numbers) {
    return std::ranges::all_of(numbers, [](double number) { return std::isfinite(number); });
}

bool plain(const Colour& colour) {
    return colour.kind == ColourKind::gray || colour.kind == ColourKind::process;
}

bool sensible(const Gradient& gradient) {
    double before = 0;
    for (const GradientStop& stop : gradient.stops) {
        if (!(stop.offset >= before && stop.offset <= 1) ||
            !(stop.opacity >= 0 && stop.opacity <= 1) || !plain(stop.colour)) {
            return false;
        }
        before = stop.offset;
    }
    return !gradient.stops.empty() && gradient.spread <= GradientSpread::repeat &&
           finite({gradient.x1, gradient.y1, gradient.r1, gradient.x2, gradient.y2, gradient.r2}) &&
           gradient.r1 >= 0 && gradient.r2 >= 0 && isFinite(gradient.matrix);
}

bool sensible(const Pattern& pattern) {
    return finite({pattern.left, pattern.bottom, pattern.right, pattern.top, pattern.stepX,
                   pattern.stepY}) &&
           pattern.left < pattern.right && pattern.bottom < pattern.top && pattern.stepX > 0 &&
           pattern.stepY > 0 && isFinite(pattern.matrix);
}

bool sensible(const InkMixture& mixture) {
    const std::size_t inks = inkNames(mixture.names).size();
    return inks != 0 && inks == mixture.tints.size() && plain(mixture.seen) &&
           std::ranges::all_of(mixture.tints,
                               [](Fixed tint) { return tint >= 0 && tint <= fixedOne; });
}

/// The record under a number that a handle holds, from 1.
template <class Record>
const Record& recordAt(const PaintTable<Record>& table, std::uint32_t number, const char* fault) {
    if (number == 0 || number > table.size()) {
        throw ArtworkError(fault);
    }
    return table[number - 1];
}

/// The same for a handle that must be of `kind`.
template <class Record>
const Record& recordAt(const PaintTable<Record>& table, PaintSource source, ColourKind kind,
                       const char* fault) {
    const auto handle = static_cast<std::uint32_t>(source);
    return recordAt(
        table, handle >> kindShift == static_cast<std::uint32_t>(kind) ? handle & numberMask : 0,
        fault);
}

} // namespace

std::uint32_t hashOf(const Gradient& gradient) {
    Hash hash;
    hash.add(gradient.radial, static_cast<std::uint32_t>(gradient.spread), gradient.stops.size());
    for (const double number :
         {gradient.x1, gradient.y1, gradient.r1, gradient.x2, gradient.y2, gradient.r2}) {
        hash.addNumber(number);
    }
    addMatrix(hash, gradient.matrix);
    for (const GradientStop& stop : gradient.stops) {
        hash.addNumber(stop.offset);
        hash.addNumber(stop.opacity);
        hash.add(stop.colour);
    }
    return hash.value();
}

std::uint32_t hashOf(const Pattern& pattern) {
    Hash hash;
    hash.add(static_cast<std::uint32_t>(pattern.tile));
    for (const double number :
         {pattern.left, pattern.bottom, pattern.right, pattern.top, pattern.stepX, pattern.stepY}) {
        hash.addNumber(number);
    }
    addMatrix(hash, pattern.matrix);
    return hash.value();
}

std::uint32_t hashOf(const SpotColour& colour) {
    Hash hash;
    hash.add(std::string_view(colour.name));
    for (const Fixed amount : colour.process) {
        hash.add(amount);
    }
    return hash.value();
}

std::uint32_t hashOf(const InkMixture& mixture) {
    Hash hash;
    hash.add(std::string_view(mixture.names));
    for (const Fixed tint : mixture.tints) {
        hash.add(tint);
    }
    hash.add(mixture.seen);
    return hash.value();
}

std::uint32_t hashOf(const std::string& note) {
    Hash hash;
    hash.add(std::string_view(note));
    return hash.value();
}

std::int64_t sizeOf(const Gradient& gradient) {
    return static_cast<std::int64_t>(sizeof(Gradient) +
                                     gradient.stops.capacity() * sizeof(GradientStop));
}

std::int64_t sizeOf(const Pattern&) {
    return sizeof(Pattern);
}

std::int64_t sizeOf(const SpotColour& colour) {
    return static_cast<std::int64_t>(sizeof(SpotColour) + colour.name.capacity());
}

std::int64_t sizeOf(const InkMixture& mixture) {
    return static_cast<std::int64_t>(sizeof(InkMixture) + mixture.names.capacity() +
                                     mixture.tints.capacity() * sizeof(Fixed));
}

std::int64_t sizeOf(const std::string& note) {
    return static_cast<std::int64_t>(sizeof(std::string) + note.capacity());
}

PaintSource PaintTables::add(Gradient gradient) {
    if (!sensible(gradient)) {
        throw ArtworkError("the gradient has a value without meaning");
    }
    return sourceOf(ColourKind::gradient, gradients_.add(std::move(gradient)));
}

PaintSource PaintTables::add(Pattern pattern) {
    if (!sensible(pattern)) {
        throw ArtworkError("the pattern has a value without meaning");
    }
    return sourceOf(ColourKind::pattern, patterns_.add(pattern));
}

PaintSource PaintTables::add(SpotColour colour) {
    return sourceOf(ColourKind::custom, spotColours_.add(std::move(colour)));
}

PaintSource PaintTables::add(InkMixture mixture) {
    if (!sensible(mixture)) {
        throw ArtworkError("the mixture of inks has a value without meaning");
    }
    return sourceOf(ColourKind::inks, mixtures_.add(std::move(mixture)));
}

Note PaintTables::add(std::string note) {
    return static_cast<Note>(notes_.add(std::move(note)) + 1);
}

const Gradient& PaintTables::gradient(PaintSource source) const {
    return recordAt(gradients_, source, ColourKind::gradient, "there is no such gradient");
}

const Pattern& PaintTables::pattern(PaintSource source) const {
    return recordAt(patterns_, source, ColourKind::pattern, "there is no such pattern");
}

const SpotColour& PaintTables::spotColour(PaintSource source) const {
    return recordAt(spotColours_, source, ColourKind::custom, "there is no such custom colour");
}

const InkMixture& PaintTables::inkMixture(PaintSource source) const {
    return recordAt(mixtures_, source, ColourKind::inks, "there is no such mixture of inks");
}

const std::string& PaintTables::note(Note note) const {
    return recordAt(notes_, static_cast<std::uint32_t>(note), "there is no such note");
}

ColourKind PaintTables::kind(PaintSource source) const {
    const auto kind = static_cast<ColourKind>(static_cast<std::uint32_t>(source) >> kindShift);
    switch (kind) {
    case ColourKind::gradient:
        gradient(source);
        return kind;
    case ColourKind::pattern:
        pattern(source);
        return kind;
    case ColourKind::inks:
        inkMixture(source);
        return kind;
    default:
        spotColour(source);
        return ColourKind::custom;
    }
}

} // namespace corvane
