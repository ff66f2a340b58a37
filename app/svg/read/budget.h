// How far reading an SVG goes before it gives up. Past a limit: `SvgError`.
#pragma once

#include <cstddef>
#include <cstdint>

namespace corvane {

struct ReadingBudget {
    /// Offsets in the text are kept in 32 bits.
    std::size_t textSize = 0x7FFFFFFF;
    /// Elements inside one another. Art nests 4,096 deep, and elements that make no group of their
    /// own (links, switches) stand between.
    std::size_t nesting = 10'000;
    /// Elements drawn because a `use` or a pattern names them: ten of ten of ten is a short file.
    std::int64_t expandedElements = 2'000'000;
    /// References that lead from one to the next: `use` in `use`, clips of clips, gradients that
    /// take their stops from others. Deeper ones are not met in practice.
    std::size_t references = 32;
    /// Rules of style sheets looked at for all elements together. Rules are found by id, class and
    /// type, so only a sheet made for it gets there.
    std::int64_t rulesTried = 100'000'000;
    /// Declarations of all style sheets.
    std::size_t declarations = 1'000'000;
};

} // namespace corvane
