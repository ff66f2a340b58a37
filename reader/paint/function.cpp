#include "reader/paint/function.h"

#include <algorithm>
#include <array>

namespace corvane {

void Function::evaluate(std::span<const double> in, std::span<double> out) const {
    std::array<double, functionArity> inputs{};
    for (std::size_t i = 0; i < domain_.size(); ++i) {
        const double value = i < in.size() ? in[i] : 0.0;
        // What is no number passes no comparison, and becomes the lower end.
        inputs[i] = value > domain_[i].low ? std::min(value, domain_[i].high) : domain_[i].low;
    }
    const std::span<double> results = out.first(outputs_);
    compute(std::span(inputs).first(domain_.size()), results);
    for (std::size_t i = 0; i < std::min(range_.size(), results.size()); ++i) {
        results[i] =
            results[i] > range_[i].low ? std::min(results[i], range_[i].high) : range_[i].low;
    }
}

} // namespace corvane
