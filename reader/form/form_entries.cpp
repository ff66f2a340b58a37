#include "reader/form/form_entries.h"

#include "reader/font/font_entries.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace corvane {

namespace {

/// Nothing where there are fewer.
std::optional<std::vector<double>> numbersOf(DocumentCache& cache, const Object& dictionary,
                                             std::string_view key, std::size_t count) {
    std::vector<double> numbers = numbersEntry(cache, dictionary, key, count);
    const bool isWhole = numbers.size() == count &&
                         std::ranges::all_of(numbers, [](double x) { return std::isfinite(x); });
    return isWhole ? std::optional(std::move(numbers)) : std::nullopt;
}

} // namespace

std::optional<FormBox> boxEntry(DocumentCache& cache, const Object& dictionary,
                                std::string_view key) {
    const auto numbers = numbersOf(cache, dictionary, key, 4);
    if (!numbers) {
        return std::nullopt;
    }
    const std::vector<double>& at = *numbers;
    return FormBox{{std::min(at[0], at[2]), std::min(at[1], at[3])},
                   {std::max(at[0], at[2]), std::max(at[1], at[3])}};
}

FormBox boxAround(const FormBox& box, const RealMatrix& matrix) {
    const RealPoint first = transform(matrix, box.low);
    FormBox around{first, first};
    for (const RealPoint corner : box.corners()) {
        const RealPoint to = transform(matrix, corner);
        around.low = {std::min(around.low.x, to.x), std::min(around.low.y, to.y)};
        around.high = {std::max(around.high.x, to.x), std::max(around.high.y, to.y)};
    }
    return around;
}

RealMatrix formMatrix(DocumentCache& cache, const Object& form) {
    const auto numbers = numbersOf(cache, form, "Matrix", 6);
    if (!numbers) {
        return {};
    }
    const std::vector<double>& by = *numbers;
    return {by[0], by[1], by[2], by[3], by[4], by[5]};
}

} // namespace corvane
