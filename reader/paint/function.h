// Functions of a document: numbers in, numbers out (PDF Reference, 3.9).
#pragma once

#include "objects/object.h"
#include "reader/document/cache.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace corvane {

/// Numbers in or out of a function; DeviceN has as many inks at most.
inline constexpr std::size_t functionArity = 32;

class Function {
public:
    struct Interval {
        double low = 0;
        double high = 1;
    };

    /// The number of an interval that is nearest to `value`. What is no number passes no
    /// comparison, and becomes the lower end.
    static constexpr double within(const Interval& interval, double value) {
        return value > interval.low ? std::min(value, interval.high) : interval.low;
    }

    Function(std::vector<Interval> domain, std::vector<Interval> range, std::size_t outputs)
        : domain_(std::move(domain)), range_(std::move(range)), outputs_(outputs) {}
    virtual ~Function() = default;

    std::size_t inputs() const { return domain_.size(); }
    std::size_t outputs() const { return outputs_; }
    /// Work of one evaluation, in steps of a few nanoseconds.
    virtual std::int64_t cost() const = 0;

    /// The first `outputs` numbers of `out` for the first `inputs` of `in`, both put into their
    /// intervals. Missing inputs count as 0, and so do results that are no numbers.
    void evaluate(std::span<const double> in, std::span<double> out) const;

    /// Of one input: adds the places between these two at which the function has a bend or a jump
    /// that its kind tells, in any order.
    virtual void addBreaks(double, double, std::vector<double>&) const {}

protected:
    virtual void compute(std::span<const double> in, std::span<double> out) const = 0;

    std::vector<Interval> domain_; ///< one for each input
    std::vector<Interval> range_;  ///< one for each output, or none

private:
    std::size_t outputs_;
};

using FunctionPointer = std::shared_ptr<const Function>;

/// The function that an object describes; null where it is none that can be computed. Raises what
/// reading its objects raises.
FunctionPointer readFunction(DocumentCache& cache, const Object& object);

} // namespace corvane
