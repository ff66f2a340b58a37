// Files that placed art is linked to, as images of a saved page.
#include "filters/coding/base85.h"
#include "filters/coding/dct.h"
#include "output/world/picture.h"
#include "tests/writer/walk_fixture.h"
#include "writer/art/placed_works.h"
#include "writer/image/mask_works.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

class MaskWorksTest : public WalkTest {
protected:
    void SetUp() override {
        WalkTest::SetUp();
        selectRules(Profile::original);
        openIdentity();
        openMask();
        openXRef();
    }
    void TearDown() override {
        closeXRef();
        closeMask();
        closeIdentity();
        WalkTest::TearDown();
    }

    Art place(const std::string& name, const std::string& text) {
        folder_.add(name, text);
        FileSpecification location;
        EXPECT_EQ(makeFileSpecification((folder_.path() / name).string(), location), noErr);
        const Art art = add(ArtKind::placed, layerArt());
        document().setPlacedFile(art, document().placedFiles().add(location));
        return art;
    }

    /// The objects that the art becomes.
    std::string objectsOf(Art art) {
        test::KeeperFilter keeper;
        DocumentCache cache;
        cache.output = &keeper;
        closeMask();
        openIdentity();
        openMask();
        openXRef();
        appendMask(art);
        forallMask([&](const Mask& mask) { writeMask(cache, mask); });
        return keeper.text;
    }
};

const std::string bounds = "%!PS\n%%BoundingBox: (atend)\n%%BoundingBox: x\n"
                           "%%BoundingBox: -1.5 2 8.5 22 33\n";

std::string imageData(const std::string& numbers, const std::string& data) {
    return bounds + "%ImageData: " + numbers + " \"go\"\r\n/x {go} def\ngo now\n" + data;
}

/// What pixels become.
std::string coded(const std::string& pixels, std::int32_t width, std::int32_t components) {
    test::KeeperFilter keeper;
    Chain chain(&keeper);
    chain.link(setupMangle(AsciiMode::write));
    chain.link(setupDiscrete(width, 1, components));
    writeFilter(*chain.top(), std::as_bytes(std::span(pixels)));
    chain.unlink();
    return "stream\n" + keeper.text + "\nendstream\n";
}

TEST_F(MaskWorksTest, SamplesAreReadAsTheFileSays) {
    struct Case {
        std::string numbers;
        std::string data;
        std::vector<std::string> parts;
    };
    const Case cases[] = {
        {"2 1 8 1 0 2 1", "\x10\x20", {"/ColorSpace /DeviceGray\n", coded("\x10\x20", 2, 1)}},
        {"2 1 8 3 0 2 1", "adbecf", {"/ColorSpace /DeviceRGB\n", coded("abcdef", 2, 3)}},
        {"2 1 8 3 1 2 1", "adbecf??", {"/ColorSpace /DeviceRGB\n", coded("abcdef", 2, 3)}},
        {"2 1 8 4 0 2 1", "aebfcgdh", {"/ColorSpace /DeviceCMYK\n", coded("abcdefgh", 2, 4)}},
        {"2 1 8 3 0 2 2", "61 64\n62 65 63 66>", {coded("abcdef", 2, 3)}},
        {"100 1 1 1 0 13 1",
         std::string(13, '\xFF'),
         {"/ImageMask true\n", "/Columns 100 /Rows 1 >> ]\n", "/BitsPerComponent 1 \n"}},
    };
    for (const auto& [numbers, data, parts] : cases) {
        SCOPED_TRACE(numbers);
        const std::string objects = objectsOf(place("a.epsf", imageData(numbers, data)));
        EXPECT_TRUE(objects.starts_with(
            "1 0 obj\n<<\n/Type /XObject\n/Subtype /Image\n/Name /I1 \n/Width "));
        for (const std::string& part : parts) {
            EXPECT_NE(objects.find(part), std::string::npos) << part << objects;
        }
    }
}

TEST_F(MaskWorksTest, WhatIsNoPictureIsASquare) {
    const std::string square = "/Width 8 \n/Height 8 \n/BitsPerComponent 1 \n"
                               "/ColorSpace /DeviceGray\n/Length 2 0 R\n"
                               "/Filter [ /ASCII85Decode ]\n>>\nstream\nzz~>\nendstream\n";
    for (const std::string numbers :
         {"2 1 16 1 0 4 1", "2 1 8 1 0 3 1", "2 1 8 2 0 2 1", "2 1 1 3 0 1 1", "2 1 8 1 1 2 1",
          "2 1 8 4 1 2 1", "2 1 8 1 0 2 3", "0 1 8 1 0 0 1", "65536 1 8 1 0 65536 1",
          "2 -1 8 1 0 2 1", "2 1 8 1 0 2", "2147483647 2147483647 8 3 0 2147483647 1"}) {
        EXPECT_NE(objectsOf(place("a.epsf", imageData(numbers, "xxxx"))).find(square),
                  std::string::npos)
            << numbers;
    }
    EXPECT_NE(objectsOf(place("b.epsf", "")).find(square), std::string::npos);
    EXPECT_NE(objectsOf(place("c.epsf", "%ImageData: 1 1 8 1 0 1 1 \"go\"\nno")).find(square),
              std::string::npos);
}

TEST_F(MaskWorksTest, FilesThatCannotBeReadRefuseTheSave) {
    const Art cut = place("a.epsf", imageData("2 2 8 1 0 2 1", "abc"));
    EXPECT_EQ(raisedBy([&] { objectsOf(cut); }), Exception::io);
    const Art gone = place("b.epsf", "");
    std::filesystem::remove(folder_.path() / "b.epsf");
    EXPECT_EQ(raisedBy([&] { objectsOf(gone); }), Exception::io);
    const Art unlinked = add(ArtKind::placed, layerArt());
    EXPECT_EQ(raisedBy([&] { objectsOf(unlinked); }), Exception::host);
}

TEST_F(MaskWorksTest, BoundsDecideWhetherAFileIsDrawn) {
    struct Case {
        std::string text;
        std::string drawn;
    };
    const std::string none = "%%Layer: , visible, preview, printing\n";
    const Case cases[] = {
        {bounds, none + "q\n1 0 0 1 0 0 cm\n10 0 0 20 -1.5000 2 cm\n0 g\n/I1  Do\nQ\n"},
        {std::string(300, 'x') + "\r%%BoundingBox: 0 0 1 1\r",
         none + "q\n1 0 0 1 0 0 cm\n1 0 0 1 0 0 cm\n0 g\n/I1  Do\nQ\n"},
        {"%%BoundingBox: (atend)\n", none},
        {"%%BoundingBox 0 0 1 1\n%%BoundingBox: 1 2 3\n", none},
    };
    for (const auto& [text, drawn] : cases) {
        const Art art = place("a.epsf", text);
        closeMask();
        EXPECT_EQ(write(), drawn);
        document().dispose(art);
    }
}

TEST_F(MaskWorksTest, PreviewsBecomeIndexedPictures) {
    const Art art = place("a.epsf", bounds);
    const std::string objects = objectsOf(art);
    EXPECT_NE(objects.find("/Width 8 "), std::string::npos);
    static Handle preview;
    const WorldOwner world = allocateWorld(3, 2, 8, imageTables);
    paintWorld(world.get(), world->frame, 0xFF0000);
    fillSlot(
        {table_->ref().get(), slotCount}, slot::getPlacedPict, +[](Art, Handle* picture) {
            *picture = preview;
            return HostError::none;
        });
    preview = makePicture(*world);
    const std::string pictured = objectsOf(art);
    EXPECT_NE(pictured.find("/Width 3 \n/Height 2 \n/BitsPerComponent 8 \n/ColorSpace [\n"
                            "/Indexed\n/DeviceRGB 255 2 0 R\n]\n/Length 3 0 R\n"),
              std::string::npos)
        << pictured;
}

} // namespace
} // namespace corvane
