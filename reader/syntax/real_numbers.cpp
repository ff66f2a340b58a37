#include "reader/syntax/real_numbers.h"

#include "reader/syntax/syntax.h"

#include <algorithm>

namespace corvane {

std::vector<double> realNumbers(DocumentCache& cache, const Object& array, std::size_t most) {
    std::vector<double> numbers;
    if (typeObject(array) != ObjectType::array) {
        return numbers;
    }
    const std::span<Object> elements = elementsObject(array);
    for (const Object& element : elements.first(std::min(elements.size(), most))) {
        const ObjectOwner number = resolveObject(cache, element);
        const ObjectType type = typeObject(number.get());
        if (type != ObjectType::integer && type != ObjectType::fixed) {
            break;
        }
        numbers.push_back(realNumber(number.get()));
    }
    return numbers;
}

} // namespace corvane
