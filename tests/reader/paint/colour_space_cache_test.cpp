#include "reader/paint/colour_space_cache.h"

#include "reader/syntax/syntax.h"
#include "tests/reader/reader_fixture.h"

namespace corvane {
namespace {

class ColourSpaceCacheTest : public ReaderTest {};

TEST_F(ColourSpaceCacheTest, ProfilesOfAFileShareMemory) {
    const auto memory = std::make_shared<std::int64_t>(0);
    const auto made = [&] { return IccProfile::calibrated({.white = {.95, 1, 1.09}}, 1, memory); };
    const auto first = made();
    ASSERT_NE(first, nullptr);
    const std::int64_t ofOne = *memory;
    EXPECT_GT(ofOne, 0);
    EXPECT_NE(made(), nullptr);
    EXPECT_EQ(*memory, ofOne) << "the second is gone";
    *memory = std::int64_t{1} << 32;
    EXPECT_EQ(made(), nullptr);
    *memory = ofOne;
}

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
