#include "reader/paint/colour_space_cache.h"

#include "reader/syntax/syntax.h"
#include "tests/reader/reader_fixture.h"

namespace corvane {
namespace {

class ColourSpaceCacheTest : public ReaderTest {};

TEST_F(ColourSpaceCacheTest, EachIsReadOnce) {
    DocumentCache& cache =
        open(PdfBuilder::onePage("", "/Resources << /ColorSpace << /Good 5 0 R /Bad 6 0 R >> >>")
                 .object(5, "[/Indexed /DeviceRGB 0 7 0 R]")
                 .object(6, "[/Indexed /DeviceRGB 0 8 0 R]")
                 .stream(7, "abc")
                 .stream(8, "abc", "/Filter /Unknown"));
    pageCache(cache, 1);
    ColourSpaceCache spaces;
    const auto readAll = [&] {
        EXPECT_EQ(spaces.find(cache, "Good")->table, (std::vector<std::uint8_t>{'a', 'b', 'c'}));
        EXPECT_EQ(raisedBy([&] { spaces.find(cache, "Bad"); }), Exception::range);
        EXPECT_EQ(spaces.find(cache, "Missing"), nullptr);
    };
    readAll();
    const std::int64_t places = cache.work.places;
    for (const std::int32_t number : {5, 6, 7, 8}) {
        forgetObject(cache, number, 0);
    }
    readAll();
    EXPECT_EQ(cache.work.places, places);
}

} // namespace
} // namespace corvane
