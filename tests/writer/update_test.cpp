// What a save appends, byte by byte.
#include "tests/writer/save_fixture.h"

#include <fstream>

namespace corvane {
namespace {

const std::string line = "1 w 0 0 m 100 100 l S";

TEST_F(SaveTest, Probe) {
    std::ofstream("/tmp/wt/u-ext.pdf") << PdfBuilder::onePage(line, "/Rotate 90/CropBox[10 10 300 400]/MediaBox[-20 5.5 612 792]").bytes();
    const std::string file = PdfBuilder::onePage(line, "/Rotate 90/CropBox[10 10 300 400]").trailer("/Size 5/Root 1 0 R/Info 1 0 R/ID[<01><02>]").bytes();
    const std::string a=saved(file); puts(a.substr(0,70).c_str());
    std::ofstream("/tmp/wt/u-ext.pdf") << bytes();
    std::ofstream("/tmp/wt/u-old.pdf") << file;
    original();
    saved(file);
    std::ofstream("/tmp/wt/u-orig.pdf") << bytes();
    for (auto& s : front_.taken()) puts(s.c_str());
}

} // namespace
} // namespace corvane
