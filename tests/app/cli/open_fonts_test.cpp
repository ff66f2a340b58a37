// Where `open` leaves the fonts of a page.
#include "tests/app/cli/saving.h"

#include "tests/support/pdf_builder.h"

#include <algorithm>

namespace corvane {
namespace {

using test::holds;
using Names = std::vector<std::string>;
using OpenFonts = Saving;

TEST_F(OpenFonts, AreInTheArtworkOrBesideItOrNowhere) {
    folder_.add("in.pdf",
                test::PdfBuilder::onePage("BT /F1 12 Tf 20 80 Td (Quay) Tj ET")
                    .object(3, "<< /Type /Page /Parent 2 0 R /Contents 4 0 R "
                               "/MediaBox [0 0 200 100] /Resources << /Font << /F1 5 0 R >> >> >>")
                    .object(5, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
                    .bytes());
    const std::string embedded = artwork("in.pdf", 1);
    if (!holds(embedded, "@font-face")) {
        GTEST_SKIP() << "needs an installed font";
    }
    const auto none = run({"open", "in.pdf", "-o", "-", "--fonts=none"});
    EXPECT_TRUE(holds(none.output, ">Quay</text>"));
    EXPECT_FALSE(holds(none.output, "@font-face") || holds(none.output, "data:"));

    const auto apart = run({"open", "in.pdf", "-o", "-", "--fonts", "fonts"});
    EXPECT_EQ(apart.output, none.output);
    EXPECT_TRUE(holds(apart.errors, "in.pdf: 1 font to install is in fonts\n")) << apart.errors;
    const auto start = embedded.find("'Corvane ") + 1;
    std::string name = embedded.substr(start, embedded.find('\'', start) - start);
    std::ranges::replace(name, ' ', '-');
    EXPECT_TRUE(bytes("fonts/" + name + ".otf").starts_with("OTTO"));

    const auto failed = run({"open", "in.pdf", "-o", "a.svg", "--fonts", "missing/fonts"});
    EXPECT_EQ(failed.status, 1);
    EXPECT_TRUE(holds(failed.errors, "error 18: missing/fonts cannot be written"));
    EXPECT_EQ(folder_.names(), (Names{"fonts", "in.pdf"})) << "no artwork either";
}

} // namespace
} // namespace corvane
