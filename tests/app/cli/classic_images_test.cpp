// Images in the original profile: EPSF files beside the artwork, which saving reads.
#include "tests/app/cli/saving.h"

#include "tests/support/pdf_builder.h"

namespace corvane {
namespace {

using test::holds;

class ClassicImages : public Saving {
protected:
    void SetUp() override {
        std::string stripes;
        for (int i = 0; i < 40; ++i) {
            stripes += i % 2 == 0 ? "ff0000" : "0000ff";
        }
        test::PdfBuilder file =
            test::PdfBuilder::onePage("q 300 60 -60 300 150 100 cm /P Do Q q 90 0 0 90 20 500 cm "
                                      "BI /W 8 /H 4 /IM true /F /AHx ID f00ff00f>\nEI Q",
                                      "/Resources << /XObject << /P 5 0 R >> >>");
        file.stream(5, stripes + ">",
                    "/Type /XObject /Subtype /Image /Name /P /Width 8 /Height 5 "
                    "/BitsPerComponent 8 /ColorSpace /DeviceRGB /Filter /ASCIIHexDecode");
        file.object(6, "<< /Producer (x) >>").trailer("/Size 7 /Root 1 0 R /Info 6 0 R");
        folder_.add("in.pdf", file.bytes());
    }

    test::Outcome open(std::vector<std::string> more = {}) const {
        std::vector<std::string> words{"open", "in.pdf", "--profile", "original", "-o", "a.svg"};
        words.insert(words.end(), more.begin(), more.end());
        return run(std::move(words));
    }
};

TEST_F(ClassicImages, ComeBackFromTheirFiles) {
    const auto opened = open();
    ASSERT_EQ(opened.status, 0) << opened.errors;
    const std::string svg = bytes("a.svg");
    EXPECT_TRUE(holds(svg, "data-epsf=\"a-images/Image%200.epsf\"")) << svg;
    EXPECT_TRUE(holds(svg, "data-epsf=\"a-images/Image%201.epsf\"")) << svg;
    EXPECT_TRUE(holds(svg, "transform=\"matrix(300 -60 60 300 90 392)\"")) << svg;
    const auto saved = run({"save", "a.svg", "in.pdf", "--output", "out.pdf"});
    ASSERT_EQ(saved.status, 0) << saved.errors;
    EXPECT_TRUE(isValid("out.pdf"));
    if (test::isInstalled("mutool")) {
        const auto before = test::draw(folder_.path() / "in.pdf", 1);
        const auto after = test::draw(folder_.path() / "out.pdf", 1);
        EXPECT_GT(test::ink(before), 0.1);
        EXPECT_LT(test::difference(before, after, 64), 0.01);
    }
}

TEST_F(ClassicImages, WithoutTheirFilesAreNotLostInSilence) {
    ASSERT_EQ(open().status, 0);
    std::filesystem::remove(folder_.path() / "a-images/Image 0.epsf");
    const auto refused = run({"save", "a.svg", "in.pdf", "--output", "out.pdf"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(holds(refused.errors, "1 image without the EPSF file")) << refused.errors;
    const auto forced = run({"save", "a.svg", "in.pdf", "--output", "out.pdf", "--force"});
    EXPECT_EQ(forced.status, 0) << forced.errors;
    EXPECT_TRUE(holds(bytes("out.pdf"), "/I1  Do"));
    EXPECT_FALSE(holds(bytes("out.pdf"), "/I2  Do"));

    // A picture that somebody changed is not what the file holds.
    std::string svg = bytes("a.svg");
    folder_.add("a.svg", replaced(svg, "xlink:href=\"a-images/epsf-", "xlink:href=\"a-images/x"));
    EXPECT_EQ(run({"save", "a.svg", "in.pdf", "--output", "c.pdf"}).status, 1);
}

TEST_F(ClassicImages, FilesStayInsideTheFolder) {
    ASSERT_EQ(open().status, 0);
    const test::TemporaryFolder outside;
    outside.add("x.epsf", "%%BoundingBox: 0 0 1 1\n");
    const std::string svg = bytes("a.svg");
    folder_.add("a.svg",
                replaced(svg, "a-images/Image%200.epsf", (outside.path() / "x.epsf").string()));
    const auto refused = run({"save", "a.svg", "in.pdf", "--output", "out.pdf"});
    EXPECT_TRUE(holds(refused.errors, "1 image without the EPSF file")) << refused.errors;
}

TEST_F(ClassicImages, NeedAFolder) {
    const auto opened = run({"open", "in.pdf", "--profile", "original", "-o", "-", "--quiet"});
    EXPECT_NE(opened.status, 0);
    EXPECT_TRUE(holds(opened.errors, "name one with --images")) << opened.errors;
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "--images"));
}

} // namespace
} // namespace corvane
