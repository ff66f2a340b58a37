// The images that a page draws, as the host of `info` is told.
#include "host/toolbox.h"
#include "tests/reader/reader_fixture.h"

#include <string>
#include <vector>

namespace corvane {
namespace {

class DrawnImagesTest : public ReaderTest {
protected:
    void SetUp() override {
        ReaderTest::SetUp();
        extension_.context = this;
        extension_.drawnImage = [](void* context, const DrawnImageFacts& facts) {
            static_cast<DrawnImagesTest*>(context)->told_.push_back(
                std::to_string(facts.object) + " " + std::to_string(facts.width) + "x" +
                std::to_string(facts.height) + " " + std::to_string(facts.bits) + " " +
                std::string(facts.colourSpace) + " (" + std::string(facts.filters) + ") " +
                std::to_string(std::lround(facts.horizontalDensity)) + " " +
                std::to_string(std::lround(facts.verticalDensity)));
        };
        setHostExtension(&extension_);
    }
    void TearDown() override {
        setHostExtension(nullptr);
        ReaderTest::TearDown();
    }

    HostExtension extension_;
    std::vector<std::string> told_;
};

TEST_F(DrawnImagesTest, AreToldWhereverTheyAreDrawn) {
    draw(PdfBuilder::onePage("q 72 0 0 36 0 0 cm /A Do Q q 0 36 -36 0 9 9 cm /B Do Q /C Do "
                             "BI /W 2 /H 1 /BPC 8 /CS /RGB /F [/AHx /Fl] ID 00> EI",
                             "/Resources<</XObject<</A 5 0 R/B 6 0 R/C 8 0 R>>>>")
             .stream(5, "",
                     "/Subtype/Image/Width 300/Height 100/BitsPerComponent 4"
                     "/ColorSpace[/Indexed/DeviceRGB 0(abc)]/Filter/FlateDecode")
             .stream(6, "", "/Subtype/Image/Width 72/Height 36/ImageMask true")
             .stream(8, "", "/Subtype/Image/Width 72/Height 36/ColorSpace 7 0 R")
             .object(7, "/DeviceGray")
             .bytes());
    EXPECT_EQ(told_, (std::vector<std::string>{
                         "5 300x100 4 Indexed (FlateDecode) 300 200",
                         "6 72x36 1 ImageMask () 144 72",
                         "8 72x36 0 DeviceGray () 5184 2592",
                         "0 2x1 8 RGB (AHx Fl) 144 72",
                     }));
}

} // namespace
} // namespace corvane
