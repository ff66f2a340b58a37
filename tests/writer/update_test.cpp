// What a save appends, byte by byte.
#include "tests/writer/save_fixture.h"

namespace corvane {
namespace {

const std::string line = "1 w 0 0 m 100 100 l S";

TEST_F(SaveTest, Probe) {
    const std::string file = PdfBuilder::onePage(line).trailer("/Size 5/Root 1 0 R/Info 1 0 R").bytes();
    puts(saved(file).c_str());
    original();
    puts(saved(file).c_str());
    for (auto& s : front_.taken()) puts(s.c_str());
}

} // namespace
} // namespace corvane
