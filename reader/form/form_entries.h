// What a form's dictionary says of where it lies.
#pragma once

#include "host/matrix.h"
#include "reader/document/cache.h"

#include <array>
#include <optional>

namespace corvane {

/// A rectangle of the form's own space.
struct FormBox {
    RealPoint low;
    RealPoint high;

    std::array<RealPoint, 4> corners() const {
        return {{low, {high.x, low.y}, high, {low.x, high.y}}};
    }
    bool isEmpty() const { return !(low.x < high.x && low.y < high.y); }
    friend bool operator==(const FormBox&, const FormBox&) = default;
};

/// Four numbers in an entry of a dictionary or stream, in any order of corners; nothing where they
/// are not there.
std::optional<FormBox> boxEntry(DocumentCache& cache, const Object& dictionary,
                                std::string_view key);

/// The box that the corners of another one span.
FormBox boxAround(const FormBox& box, const RealMatrix& matrix);

/// The Matrix of a form; that which changes nothing where there is none.
RealMatrix formMatrix(DocumentCache& cache, const Object& form);

} // namespace corvane
