// Where the letters of a text are put: the lists of `x`, `y`, `dx`, `dy` and `rotate`.
#pragma once

#include "app/svg/read/style/attributes.h"
#include "app/svg/read/values/length.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace corvane {

struct LetterPlace {
    std::optional<double> x;
    std::optional<double> y;
    double dx = 0;
    double dy = 0;
    double rotate = 0; ///< degrees
};

/// The lengths of a list, as far as it is right.
std::vector<double> parseLengths(std::string_view text, Axis axis, const LengthContext& lengths);

/// The lists of a text and of the elements within it that are open. Of each kind the innermost list
/// that has a value for a letter counts.
class LetterPlaces {
public:
    /// Of an element whose first letter is the one counted `first` in the text.
    void open(const Attributes& attributes, const LengthContext& lengths, std::size_t first);
    void close() { lists_.pop_back(); }
    /// From now on letters have no places along the line, but the first one: it is said what they
    /// come of.
    void follow() { follows_ = true; }
    /// Letters on a path have only the places that stand within its element, which is open.
    void enterPath() { outermost_ = lists_.size() - 1; }
    void leavePath() { outermost_ = 0; }

    LetterPlace of(std::size_t letter) const;

private:
    enum Kind { x, y, dx, dy, rotate, kinds };
    struct Lists {
        std::size_t first = 0;
        bool any = false;
        std::array<std::vector<double>, kinds> values;
    };

    const double* find(Kind kind, std::size_t letter) const;

    std::vector<Lists> lists_;
    std::size_t outermost_ = 0; ///< of the lists that count
    bool follows_ = false;
};

} // namespace corvane
