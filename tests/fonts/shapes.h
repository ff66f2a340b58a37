// Fonts and shapes for the tests of fonts.
#pragma once

#include "fonts/font_program.h"
#include "tests/support/process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace corvane::test {

inline std::shared_ptr<const FontProgram> seedFont(const std::string& file) {
    const std::string text = fileBytes(sourceFolder() / "fuzz" / "seeds" / "font" / file);
    const auto bytes = std::as_bytes(std::span(text));
    return FontProgram::open({bytes.begin(), bytes.end()});
}

/// The same contours and steps, coordinates within `tolerance` ems.
inline void expectSame(const GlyphOutline& is, const GlyphOutline& wanted, double tolerance) {
    const auto near = [&](OutlinePoint a, OutlinePoint b) {
        EXPECT_NEAR(a.x, b.x, tolerance);
        EXPECT_NEAR(a.y, b.y, tolerance);
    };
    ASSERT_EQ(is.size(), wanted.size());
    for (std::size_t i = 0; i < is.size(); ++i) {
        near(is[i].start, wanted[i].start);
        ASSERT_EQ(is[i].steps.size(), wanted[i].steps.size());
        for (std::size_t j = 0; j < is[i].steps.size(); ++j) {
            const OutlineStep& a = is[i].steps[j];
            const OutlineStep& b = wanted[i].steps[j];
            ASSERT_EQ(a.isCurve, b.isCurve);
            near(a.to, b.to);
            if (a.isCurve) {
                near(a.first, b.first);
                near(a.second, b.second);
            }
        }
    }
}

} // namespace corvane::test
