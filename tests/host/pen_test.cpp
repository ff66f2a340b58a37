#include "host/pen.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(PenUnder, Matrices) {
    struct Row {
        RealMatrix matrix;
        Pen pen;
        double stretch;
    };
    for (const Row& row : {
             Row{{2, 0, 0, 2, 5, 5}, {}, 2},
             Row{{0, 3, -3, 0, 0, 0}, {}, 3},
             Row{{1, 0, 0, 1.0005, 0, 0}, {}, 1.00025},
             Row{{2, 0, 0, -1, 0, 0}, {1, 0, .5}, 2},
             Row{{0, 2, 1, 0, 0, 0}, {.5, 0, 1}, 2}, // turned before: lines along x get narrow
             Row{{.6, .8, -.4, .3, 9, 9}, {.68, .24, .82}, 1},
             Row{{0, 0, 0, 0, 0, 0}, {}, 0},
         }) {
        const std::optional<StretchedPen> found = penUnder(row.matrix);
        ASSERT_TRUE(found);
        EXPECT_NEAR(found->pen.xx, row.pen.xx, 1e-9) << row.matrix.a << " " << row.matrix.b;
        EXPECT_NEAR(found->pen.xy, row.pen.xy, 1e-9);
        EXPECT_NEAR(found->pen.yy, row.pen.yy, 1e-9);
        EXPECT_NEAR(found->stretch, row.stretch, 1e-6);
        const std::optional<StretchedPen> again = penUnder(penMatrix(found->pen));
        EXPECT_TRUE(again && again->pen == found->pen && again->stretch == 1)
            << "a pen that was written down comes back as it was";
    }
    for (const RealMatrix& flat : {RealMatrix{1, 0, 0, 0, 0, 0}, RealMatrix{1, 0, 0, 1e-5, 0, 0},
                                   RealMatrix{1e200, 0, 0, 1, 0, 0}}) {
        EXPECT_FALSE(penUnder(flat)) << flat.d;
    }
}

} // namespace
} // namespace corvane
