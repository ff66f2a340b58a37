// What an object says of a function: sampled, exponential and stitching ones, and calculators.
#include "objects/referenced.h"
#include "reader/paint/calculator_function.h"
#include "reader/paint/function.h"
#include "reader/syntax/real_numbers.h"
#include "reader/syntax/stream/stream_bytes.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/memory.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <string>

namespace corvane {

namespace {

using Interval = Function::Interval;

/// Stitching functions within one another.
constexpr int deepestFunction = 4;

/// Inputs of a sampled function: each doubles the work.
constexpr std::size_t mostSampledInputs = 6;

/// Numbers of an array that count: two for each piece of a stitching function.
constexpr std::size_t mostNumbers = 2 * budget::functionOperators;

/// One reading of a function, with those within it.
struct Reading {
    struct Known {
        FunctionPointer function;
        std::size_t size = 0; ///< functions that it is made of, each use of one counted
    };

    DocumentCache& cache;
    std::map<std::int32_t, Known> known; ///< by the number of the object
    std::size_t size = 0;                ///< of all so far
};

FunctionPointer parseFunction(Reading& reading, const Object& object, int depth);

std::vector<double> numbersOf(DocumentCache& cache, const Object& dictionary,
                              std::string_view key) {
    return realNumbers(cache, lookupObject(cache, dictionary, key).get(), mostNumbers);
}

std::vector<Interval> intervalsOf(std::span<const double> numbers) {
    std::vector<Interval> intervals;
    for (std::size_t i = 0; i + 1 < numbers.size(); i += 2) {
        intervals.push_back({numbers[i], std::max(numbers[i], numbers[i + 1])});
    }
    return intervals;
}

double interpolated(double value, Interval from, double low, double high) {
    const double length = from.high - from.low;
    return length == 0 ? low : low + (value - from.low) * (high - low) / length;
}

class ExponentialFunction final : public Function {
public:
    ExponentialFunction(std::vector<Interval> domain, std::vector<Interval> range,
                        std::vector<double> first, std::vector<double> last, double exponent)
        : Function(std::move(domain), std::move(range), first.size()), first_(std::move(first)),
          last_(std::move(last)), exponent_(exponent) {}

    std::int64_t cost() const override { return 8; }

private:
    void compute(std::span<const double> in, std::span<double> out) const override {
        const double share = std::pow(std::max(in[0], 0.0), exponent_);
        for (std::size_t i = 0; i < out.size(); ++i) {
            out[i] = first_[i] + share * (last_[i] - first_[i]);
        }
    }

    std::vector<double> first_;
    std::vector<double> last_;
    double exponent_;
};

class StitchingFunction final : public Function {
public:
    StitchingFunction(std::vector<Interval> domain, std::vector<Interval> range,
                      std::vector<FunctionPointer> pieces, std::vector<double> bounds,
                      std::vector<double> encode)
        : Function(std::move(domain), std::move(range), pieces.front()->outputs()),
          pieces_(std::move(pieces)), bounds_(std::move(bounds)), encode_(std::move(encode)) {}

    std::int64_t cost() const override {
        std::int64_t most = 0;
        for (const FunctionPointer& piece : pieces_) {
            most = std::max(most, piece->cost());
        }
        return most + static_cast<std::int64_t>(pieces_.size());
    }

    void addBreaks(double low, double high, std::vector<double>& breaks) const override {
        for (std::size_t i = 0; i < pieces_.size(); ++i) {
            const Interval piece = pieceAt(i);
            if (!(piece.low < high && piece.high > low && piece.low < piece.high)) {
                continue;
            }
            const double from = encode_[2 * i];
            const double to = encode_[2 * i + 1];
            std::vector<double> within;
            pieces_[i]->addBreaks(std::min(from, to), std::max(from, to), within);
            within.push_back(from);
            for (const double place : within) {
                const double found = interpolated(place, {from, to}, piece.low, piece.high);
                if (found > low && found < high) {
                    breaks.push_back(found);
                }
            }
        }
    }

private:
    void compute(std::span<const double> in, std::span<double> out) const override {
        const auto next = std::ranges::upper_bound(bounds_, in[0]);
        const auto i = static_cast<std::size_t>(next - bounds_.begin());
        const double place = interpolated(in[0], pieceAt(i), encode_[2 * i], encode_[2 * i + 1]);
        pieces_[i]->evaluate(std::span(&place, 1), out);
    }

    Interval pieceAt(std::size_t i) const {
        return {i == 0 ? domain_[0].low : bounds_[i - 1],
                i == bounds_.size() ? domain_[0].high : bounds_[i]};
    }

    std::vector<FunctionPointer> pieces_;
    std::vector<double> bounds_; ///< ascending, one less than pieces
    std::vector<double> encode_; ///< two for each piece
};

class SampledFunction final : public Function {
public:
    struct Grid {
        std::vector<std::int32_t> size; ///< samples along each input
        std::vector<double> encode;     ///< two for each input
        std::vector<double> decode;     ///< two for each output
        std::vector<float> samples;     ///< 0 to 1.0, the first input varies fastest
        ZoneCharge charge;
    };

    SampledFunction(std::vector<Interval> domain, std::vector<Interval> range, Grid grid)
        : Function(std::move(domain), range, range.size()), grid_(std::move(grid)) {}

    std::int64_t cost() const override {
        return static_cast<std::int64_t>((std::size_t{1} << inputs()) * outputs());
    }

    void addBreaks(double low, double high, std::vector<double>& breaks) const override {
        if (inputs() != 1 || grid_.encode[0] == grid_.encode[1]) {
            return;
        }
        for (std::int32_t i = 0; i < std::min(grid_.size[0], mostBreaks); ++i) {
            const double found = interpolated(i, {grid_.encode[0], grid_.encode[1]}, domain_[0].low,
                                              domain_[0].high);
            if (found > low && found < high) {
                breaks.push_back(found);
            }
        }
    }

private:
    /// Samples that are told as bends: denser ones are curves.
    static constexpr std::int32_t mostBreaks = 64;

    /// Between the samples at the corners of the cell.
    void compute(std::span<const double> in, std::span<double> out) const override {
        std::array<std::size_t, mostSampledInputs> low{};
        std::array<std::size_t, mostSampledInputs> step{};
        std::array<double, mostSampledInputs> share{};
        std::size_t stride = outputs();
        for (std::size_t i = 0; i < in.size(); ++i) {
            const double last = grid_.size[i] - 1;
            const double place = std::clamp(
                interpolated(in[i], domain_[i], grid_.encode[2 * i], grid_.encode[2 * i + 1]), 0.0,
                last);
            const double whole = std::floor(place);
            low[i] = static_cast<std::size_t>(whole) * stride;
            step[i] = whole < last ? stride : 0;
            share[i] = place - whole;
            stride *= static_cast<std::size_t>(grid_.size[i]);
        }
        std::ranges::fill(out, 0.0);
        for (std::size_t corner = 0; corner < std::size_t{1} << in.size(); ++corner) {
            double weight = 1;
            std::size_t at = 0;
            for (std::size_t i = 0; i < in.size(); ++i) {
                const bool isHigh = (corner >> i & 1U) != 0;
                weight *= isHigh ? share[i] : 1 - share[i];
                at += low[i] + (isHigh ? step[i] : 0);
            }
            for (std::size_t i = 0; weight != 0 && i < out.size(); ++i) {
                out[i] += weight * static_cast<double>(grid_.samples[at + i]);
            }
        }
        for (std::size_t i = 0; i < out.size(); ++i) {
            const double* const decode = grid_.decode.data() + 2 * i;
            out[i] = decode[0] + out[i] * (decode[1] - decode[0]);
        }
    }

    Grid grid_;
};

/// What all kinds say.
struct Common {
    std::vector<Interval> domain;
    std::vector<Interval> range;
};

FunctionPointer readExponential(DocumentCache& cache, const Object& dictionary, Common common) {
    std::vector<double> first = numbersOf(cache, dictionary, "C0");
    std::vector<double> last = numbersOf(cache, dictionary, "C1");
    first.resize(std::max<std::size_t>({first.size(), last.size(), 1}), 0.0);
    last.resize(first.size(), 1.0);
    if (common.domain.size() != 1 || first.size() > functionArity) {
        return nullptr;
    }
    const double exponent = realNumber(lookupObject(cache, dictionary, "N").get());
    return std::make_shared<ExponentialFunction>(std::move(common.domain), std::move(common.range),
                                                 std::move(first), std::move(last),
                                                 std::max(exponent, 0.0));
}

FunctionPointer readStitching(Reading& reading, const Object& dictionary, Common common,
                              int depth) {
    DocumentCache& cache = reading.cache;
    const ObjectOwner functions = lookupObject(cache, dictionary, "Functions");
    if (common.domain.size() != 1 || typeObject(functions.get()) != ObjectType::array) {
        return nullptr;
    }
    std::vector<FunctionPointer> pieces;
    for (const Object& element : elementsObject(functions.get())) {
        FunctionPointer piece = parseFunction(reading, element, depth + 1);
        if (piece == nullptr || piece->inputs() != 1 ||
            (!pieces.empty() && piece->outputs() != pieces.front()->outputs())) {
            return nullptr;
        }
        pieces.push_back(std::move(piece));
    }
    std::vector<double> bounds = numbersOf(cache, dictionary, "Bounds");
    std::vector<double> encode = numbersOf(cache, dictionary, "Encode");
    if (pieces.empty() || bounds.size() + 1 != pieces.size() || !std::ranges::is_sorted(bounds)) {
        return nullptr;
    }
    while (encode.size() < 2 * pieces.size()) {
        encode.push_back(static_cast<double>(encode.size() % 2));
    }
    return std::make_shared<StitchingFunction>(std::move(common.domain), std::move(common.range),
                                               std::move(pieces), std::move(bounds),
                                               std::move(encode));
}

/// Samples of 1 to 32 bits, one behind the other; missing ones are 0.
std::vector<float> unpackSamples(std::span<const std::uint8_t> bytes, std::size_t count,
                                 std::int32_t bits) {
    std::vector<float> samples(count);
    const double highest = std::ldexp(1.0, bits) - 1;
    std::size_t at = 0;
    std::uint64_t held = 0;
    std::int32_t heldBits = 0;
    for (float& sample : samples) {
        while (heldBits < bits) {
            held = held << 8 | (at < bytes.size() ? bytes[at] : 0U);
            ++at;
            heldBits += 8;
        }
        heldBits -= bits;
        const std::uint64_t value = held >> heldBits & ((std::uint64_t{1} << bits) - 1);
        sample = static_cast<float>(static_cast<double>(value) / highest);
    }
    return samples;
}

FunctionPointer readSampled(DocumentCache& cache, const Object& stream, Common common) {
    const std::size_t inputs = common.domain.size();
    const std::size_t outputs = common.range.size();
    const std::vector<double> sizes = numbersOf(cache, stream, "Size");
    const std::int32_t bits = integerObject(lookupObject(cache, stream, "BitsPerSample").get());
    if (inputs > mostSampledInputs || outputs == 0 || sizes.size() != inputs || bits < 1 ||
        bits > 32) {
        return nullptr;
    }
    SampledFunction::Grid grid;
    std::int64_t count = static_cast<std::int64_t>(outputs);
    for (const double size : sizes) {
        if (!(size >= 1) || size > static_cast<double>(budget::functionSamples) ||
            count > budget::functionSamples / static_cast<std::int64_t>(size)) {
            return nullptr;
        }
        grid.size.push_back(static_cast<std::int32_t>(size));
        count *= grid.size.back();
    }
    grid.encode = numbersOf(cache, stream, "Encode");
    for (std::size_t i = grid.encode.size() / 2; i < inputs; ++i) {
        grid.encode.resize(2 * i);
        grid.encode.insert(grid.encode.end(), {0.0, grid.size[i] - 1.0});
    }
    grid.decode = numbersOf(cache, stream, "Decode");
    for (std::size_t i = grid.decode.size() / 2; i < outputs; ++i) {
        grid.decode.resize(2 * i);
        grid.decode.insert(grid.decode.end(), {common.range[i].low, common.range[i].high});
    }
    cache.work.functionSamples.add(count);
    grid.charge.resize(count * (4 + bits / 8 + 1));
    const std::vector<std::uint8_t> bytes =
        streamBytes(cache, stream, static_cast<std::size_t>((count * bits + 7) / 8));
    grid.samples = unpackSamples(bytes, static_cast<std::size_t>(count), bits);
    return std::make_shared<SampledFunction>(std::move(common.domain), std::move(common.range),
                                             std::move(grid));
}

FunctionPointer parseAnew(Reading& reading, const Object& object, int depth) {
    DocumentCache& cache = reading.cache;
    const ObjectOwner function = resolveObject(cache, object);
    const ObjectType type = typeObject(function.get());
    if (depth > deepestFunction || (type != ObjectType::dictionary && type != ObjectType::stream)) {
        return nullptr;
    }
    Common common{intervalsOf(numbersOf(cache, function.get(), "Domain")),
                  intervalsOf(numbersOf(cache, function.get(), "Range"))};
    const std::int32_t kind =
        integerObject(lookupObject(cache, function.get(), "FunctionType").get());
    if (common.domain.empty() && kind == 2) {
        common.domain.emplace_back(); // a fault of writers that every reader takes
    }
    if (common.domain.empty() || common.domain.size() > functionArity ||
        common.range.size() > functionArity) {
        return nullptr;
    }
    switch (kind) {
    case 0:
        return type == ObjectType::stream ? readSampled(cache, function.get(), std::move(common))
                                          : nullptr;
    case 2:
        return readExponential(cache, function.get(), std::move(common));
    case 3:
        return readStitching(reading, function.get(), std::move(common), depth);
    case 4: {
        constexpr std::size_t longestProgram = 1 << 20;
        if (type != ObjectType::stream || common.range.empty()) {
            return nullptr;
        }
        const std::vector<std::uint8_t> program =
            streamBytes(cache, function.get(), longestProgram);
        return readCalculator(std::string(program.begin(), program.end()), std::move(common.domain),
                              common.range);
    }
    default:
        return nullptr;
    }
}

/// A function that is used again counts again, since who walks it meets it again.
FunctionPointer parseFunction(Reading& reading, const Object& object, int depth) {
    const std::int32_t number = referenced(object).number;
    const std::size_t before = reading.size;
    const auto known = reading.known.find(number);
    FunctionPointer function;
    if (number != 0 && known != reading.known.end()) {
        function = known->second.function;
        reading.size += known->second.size;
    } else {
        ++reading.size;
        function = parseAnew(reading, object, depth);
        if (number != 0) {
            reading.known[number] = {function, reading.size - before};
        }
    }
    return reading.size > budget::functionOperators ? nullptr : function;
}

} // namespace

FunctionPointer readFunction(DocumentCache& cache, const Object& object) {
    Reading reading{cache, {}, 0};
    return parseFunction(reading, object, 0);
}

} // namespace corvane
