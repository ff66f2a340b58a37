#include "entry/page_proxies.h"

#include "tests/reader/reader_fixture.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

class PageProxiesTest : public ReaderTest {};

TEST_F(PageProxiesTest, TellSizesTitlesAndThumbnails) {
    PdfBuilder file;
    file.object(1, "<< /Type /Catalog /Pages 2 0 R /Outlines 6 0 R >>")
        .object(2, "<< /Type /Pages /Kids [3 0 R 4 0 R] /Count 2 /MediaBox [0 0 612 792] >>")
        .object(3, "<< /Type /Page /Parent 2 0 R /Thumb 5 0 R >>")
        .object(4, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 100 300] /Rotate 90 "
                   "/UserUnit 2 /Thumb 8 0 R >>")
        .stream(5, "abcdef", "/Width 2 /Height 1 /BitsPerComponent 8 /ColorSpace /DeviceRGB")
        .object(6, "<< /First 7 0 R >>")
        .object(7, "<< /Title (One) /Dest [3 0 R /Fit] /Next 9 0 R >>")
        .stream(8, "x", "/Width 9999 /Height 1 /BitsPerComponent 8 /ColorSpace /DeviceGray")
        .object(9, "<< /Title <FEFF00C400420007> /A << /S /GoTo /D [4 0 R /Fit] >> /Next 7 0 R >>");
    for (const Profile profile : {Profile::extended, Profile::original}) {
        selectRules(profile);
        DocumentCache& cache = open(file);
        CacheProxies proxies(cache);
        PageProxy proxy = proxies.page(1);
        EXPECT_EQ(proxy.width, 612);
        EXPECT_EQ(proxy.title, "One");
        EXPECT_EQ(proxy.pictureWidth, 2);
        const std::string picture = {'\0', 'a', 'b', 'c', '\0', 'd', 'e', 'f'};
        EXPECT_TRUE(std::ranges::equal(proxy.picture, std::as_bytes(std::span(picture))));
        proxy = proxies.page(2);
        EXPECT_EQ(proxy.pictureWidth, 0);
        if (profile == Profile::extended) {
            EXPECT_EQ(proxy.title, "\u00C4B ");
            EXPECT_EQ(proxy.width, 600);
            EXPECT_EQ(proxy.height, 200);
        }
        Thumbnail thumbnail;
        EXPECT_TRUE(selectProxy(cache, 1, thumbnail));
        EXPECT_FALSE(selectProxy(cache, 0, thumbnail));
        EXPECT_TRUE(thumbnail.pixels.empty());
        EXPECT_EQ(proxies.page(77).width, 0); // there is none
    }
}

} // namespace
} // namespace corvane
