// Images of the original profile: the files that they become, and the art that is linked to them.
#include "host/front.h"
#include "resources/resources.h"
#include "runtime/image_data.h"
#include "tests/reader/reader_fixture.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

struct FolderFront final : DialogFront {
    void showAbout(std::string_view) override {}
    void showError(std::int32_t, std::string_view) override {}
    bool showWarnings(bool, std::span<const WarningText>, std::string_view) override {
        return true;
    }
    bool choosePage(std::int32_t, std::int32_t, std::int32_t&) override { return true; }
    bool chooseFolder(std::int16_t& volume, std::int32_t& directory) override {
        ++asked;
        FileSpecification file;
        const bool isThere = !path.empty() && makeFileSpecification(path + "/x", file) == noErr;
        volume = file.volume;
        directory = file.directory;
        return isThere;
    }
    std::string path;
    int asked = 0;
};

class EpsfTest : public ReaderTest {
protected:
    void SetUp() override {
        ReaderTest::SetUp();
        selectRules(Profile::original);
        front_.path = folder_.path().string();
        setDialogFront(&front_);
    }
    void TearDown() override {
        setDialogFront(nullptr);
        ReaderTest::TearDown();
    }

    /// Draws a page whose content is `content` and whose one XObject, /P, has these entries.
    std::string drawImage(const std::string& content, const std::string& entries,
                          const std::string& data) {
        PdfBuilder file = PdfBuilder::onePage(content, "/Resources << /XObject << /P 5 0 R >> >>");
        file.stream(5, data, entries);
        return draw(file.bytes());
    }

    bool hasFile(int number) const {
        return std::filesystem::exists(folder_.path() / nameOf(number));
    }
    std::string file(int number) const { return test::fileBytes(folder_.path() / nameOf(number)); }
    static std::string nameOf(int number) { return "Image " + std::to_string(number) + ".epsf"; }

    /// The picture of a file, in hexadecimal digits; its form before it.
    static std::string pictureOf(const std::string& text) {
        const auto at = text.find("%ImageData");
        const auto line =
            imageDataLine(std::string_view(text).substr(at, text.find('\n', at) - at));
        if (!line || !line->isKnown()) {
            return "none";
        }
        const auto start = text.find("\n" + line->start + "\n") + line->start.size() + 2;
        std::string digits = std::to_string(line->bits) + "x" + std::to_string(line->mode) + " ";
        const std::size_t size = line->fileRow() * static_cast<std::size_t>(line->height);
        for (const char c : text.substr(start, size)) {
            constexpr std::string_view hex = "0123456789abcdef";
            digits += hex[static_cast<unsigned char>(c) >> 4];
            digits += hex[static_cast<unsigned char>(c) & 15];
        }
        return text.substr(start + size).starts_with("\n%%EndBinary\ngrestore end\ngrestore\n")
                   ? digits
                   : "no end";
    }

    Art placed() { return document().firstChild(importedArt()); }

    ResourceSource resources_{pluginResources()};
    FolderFront front_;
};

const std::string named = "/Type /XObject /Subtype /Image /Name /P ";

TEST_F(EpsfTest, FilesHoldPlanesOfEveryKindOfImage) {
    struct Case {
        std::string entries;
        std::string data; ///< in hexadecimal digits
        std::string picture;
        std::string warnings = "";
    };
    const std::string two = named + "/Width 2 /Height 1 ";
    const std::string mask = named + "/Width 10 /Height 1 /ImageMask true ";
    const Case cases[] = {
        {two + "/BitsPerComponent 8 /ColorSpace /DeviceRGB", "010203040506",
         "8x3 0104020503060000"},
        {two + "/BPC 8 /CS /G", "1020", "8x3 1020102010200000"},
        {two + "/BitsPerComponent 4 /ColorSpace /DeviceGray", "0f", "8x3 00ff00ff00ff0000"},
        {two + "/BitsPerComponent 4 /ColorSpace /DeviceGray /Decode [1 0]", "0f",
         "8x3 ff00ff00ff000000"},
        {two + "/BitsPerComponent 8 /ColorSpace /DeviceCMYK", "000000ff80000000",
         "8x3 007f00ff00ff0000"},
        {two + "/BitsPerComponent 4 /ColorSpace [/Indexed /DeviceRGB 1 <0a0b0c010203>]", "10",
         "8x3 010a020b030c0000"},
        {two + "/BitsPerComponent 2 /ColorSpace [/Indexed /DeviceGray 3 <00112233>] "
               "/Decode [3 0]",
         "10", "8x3 3322332233220000"},
        {two + "/BitsPerComponent 8 /ColorSpace /DeviceGray /ColorSpace2 /X", "1020",
         "8x3 1020102010200000", "12"},
        {two + "/BitsPerComponent 8 /ColorSpace /DeviceRGB", "0102", "8x3 ffffffffffff0000", "6"},
        {mask, "8040", "1x1 8040"},
        {mask + "/Decode [1 0]", "8040", "1x1 7fbf"},
    };
    int number = 0;
    for (const auto& [entries, data, picture, expected] : cases) {
        SCOPED_TRACE(entries);
        EXPECT_EQ(drawImage("q 20 0 0 10 5 7 cm /P Do Q", entries + " /Filter /ASCIIHexDecode",
                            data + ">"),
                  expected);
        ASSERT_TRUE(hasFile(number));
        EXPECT_EQ(pictureOf(file(number)), picture);
        ++number;
    }
}

TEST_F(EpsfTest, TextSaysWhatTheFileIs) {
    drawImage("0.25 g q 1 0 0 1 0 0 cm /P Do Q", named + "/Width 10 /Height 3 /ImageMask true",
              "abcdef");
    const std::string text = file(0);
    EXPECT_TRUE(text.starts_with("%!PS-Adobe-3.0 EPSF-3.0\n%%Creator: Corvane Junior 1.1\n"
                                 "%%Title: (in.pdf)\n%%CreationDate: ("));
    for (const std::string line :
         {"%%BoundingBox: 0 0 10 3 \n", "%ImageData: 10 3 1 1 0 2 1 \"beginimage\"\n",
          "/rows 3 def\n/cols 10 def\n0.2500  setgray\n", "%%BeginBinary: 120 \nbeginimage\n"}) {
        EXPECT_NE(text.find(line), std::string::npos) << line;
    }
    FInfo info;
    ParamBlock block;
    FileSpecification location;
    ASSERT_EQ(makeFileSpecification((folder_.path() / nameOf(0)).string(), location), noErr);
    block.ioNamePtr = location.name;
    block.ioVRefNum = location.volume;
    block.ioDirID = location.directory;
    if (PBGetFInfoSync(&block) == noErr && block.ioFlFndrInfo.fdType != 0) {
        info = block.ioFlFndrInfo;
        EXPECT_EQ(info.fdType, fourCharacters("EPSF"));
        EXPECT_EQ(info.fdCreator, fourCharacters("ZNPX"));
        EXPECT_NE(info.fdFlags & hasCustomIcon, 0);
    }
}

TEST_F(EpsfTest, PlacedArtFillsTheUnitSquare) {
    const std::string entries =
        named + "/Width 100 /Height 50 /BitsPerComponent 8 /ColorSpace /DeviceGray";
    drawImage("200 30 -40 100 5 7 cm /P Do", entries, std::string(5000, 'x'));
    Matrix matrix;
    callHost(slot::getPlacedMatrix, placed(), &matrix);
    EXPECT_EQ(matrix.a, 2 * fixedOne);
    EXPECT_EQ(matrix.b, -callHost(slot::fixedDivide, 30 * fixedOne, 100 * fixedOne));
    EXPECT_EQ(matrix.c, callHost(slot::fixedDivide, 40 * fixedOne, 50 * fixedOne));
    EXPECT_EQ(matrix.d, 2 * fixedOne);
    EXPECT_EQ(matrix.tx, 5 * fixedOne);
    FileSpecification location;
    callHost(slot::getPlacedFile, placed(), &location);
    EXPECT_EQ(posixPathOf(location.volume, location.directory, location.name),
              folder_.path() / nameOf(0));
    Handle picture;
    callHost(slot::getPlacedPict, placed(), &picture);
    ASSERT_TRUE(picture);
    EXPECT_EQ(GetHandleSize(picture), 780 + 5000);
    DisposeHandle(picture);
}

TEST_F(EpsfTest, InlineImagesArePlacedByTheirEnd) {
    EXPECT_EQ(drawContent("BI /W 1 /H 1 /BPC 8 /CS /RGB /F /AHx ID 010203>\nEI "
                          "BI /W 8 /H 1 /IM true ID x EI"),
              "");
    EXPECT_EQ(pictureOf(file(0)), "8x3 01020300");
    EXPECT_EQ(pictureOf(file(1)), "1x1 78");
    EXPECT_EQ(front_.asked, 1);
    // What stands in front of EI names no file, and ID without BI is no image.
    EXPECT_EQ(drawContent("0 (in.pdf) 10 10 EI"), "");
    EXPECT_EQ(placed(), Art::null);
    EXPECT_EQ(drawContent("/W 1 /H 1 ID 1 EI"), "13");
    EXPECT_FALSE(hasFile(2));
}

TEST_F(EpsfTest, WrongImagesLeaveNothing) {
    const std::string size = "/Width 1 /Height 1 ";
    const std::string gray = "/BitsPerComponent 8 /ColorSpace /DeviceGray ";
    struct Case {
        std::string entries;
        std::string warnings;
    };
    const Case cases[] = {
        {"/Type /XObject /Subtype /Image /Name /Q " + size + gray, "13"},
        {"/Type /XObject /Subtype /Image " + size + gray, "13"},
        {"/Subtype /Image /Name /P " + size + gray, "13"},
        {"/Type /XObject /Name /P /Subtype /Form", "3"},
        {"/Type /XObject /Name /P /Subtype /Movie", "1"},
        {named + "/Width 0 /Height 1 " + gray, "13"},
        {named + "/Width 32768 /Height 1 " + gray, "13"},
        {named + "/Width 32767 /Height 32767 " + gray, "13"},
        {named + size + "/BitsPerComponent 16 /ColorSpace /DeviceGray", "13"},
        {named + size + "/BitsPerComponent 8 /ColorSpace /Pattern", "13"},
        {named + size + "/BitsPerComponent 8 /ColorSpace [/Indexed /DeviceRGB 256 <00>]", "13"},
        {named + size + "/BitsPerComponent 8 /ColorSpace [/Indexed [/Indexed] 1 <00>]", "13"},
        {named + size + gray + "/Decode [0 1 0 1]", "13"},
        {named + size + gray + "/Filter /JPXDecode", "13"},
        {named + size + gray + "/Filter /DCTDecode", "13"},
        {named + size + gray + "/ImageMask 1", "13"},
    };
    for (const auto& [entries, expected] : cases) {
        EXPECT_EQ(drawImage("q /P Do Q", entries, "x"), expected) << entries;
        EXPECT_FALSE(hasFile(0)) << entries;
    }
}

TEST_F(EpsfTest, NoFolderEndsThePage) {
    front_.path.clear();
    EXPECT_EQ(raisedBy([&] { drawContent("BI /W 8 /H 1 /IM true ID x EI"); }),
              Exception::cancelled);
}

} // namespace
} // namespace corvane
