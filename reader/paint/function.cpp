#include "reader/paint/function.h"

#include <array>
#include <cmath>

namespace corvane {

void Function::evaluate(std::span<const double> in, std::span<double> out) const {
    std::array<double, functionArity> inputs{};
    for (std::size_t i = 0; i < domain_.size(); ++i) {
        inputs[i] = within(domain_[i], i < in.size() ? in[i] : 0.0);
    }
    const std::span<double> results = out.first(outputs_);
    compute(std::span(inputs).first(domain_.size()), results);
    for (std::size_t i = 0; i < results.size(); ++i) {
        if (i < range_.size()) {
            results[i] = within(range_[i], results[i]);
        } else if (std::isnan(results[i])) {
            results[i] = 0;
        }
    }
}

} // namespace corvane
