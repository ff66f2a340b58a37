// The objects of fonts in a file that is saved.
#include "app/artwork/slots/callbacks.h"
#include "objects/family.h"
#include "objects/identity.h"
#include "output/xref.h"
#include "runtime/fixed.h"
#include "tests/reader/reader_fixture.h"
#include "tests/support/keeper_filter.h"
#include "writer/font/font_works.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

/// One font of a host, which the tests describe.
struct FakeFont {
    std::string name = "My Font";
    FontInfo info;
};
FakeFont fake;

class FontWorksTest : public ReaderTest {
protected:
    void SetUp() override {
        ReaderTest::SetUp();
        selectRules(Profile::original);
        openIdentity();
        openFamily();
        openXRef();
        fake = FakeFont();
        const std::span<HostProcedure> table(table_->ref().get(), slotCount);
        fillSlot(table, slot::firstFontName, [](std::int32_t* count) {
            *count = 1;
            return HostError::none;
        });
        fillSlot(table, slot::nextFontName, [](std::int32_t, std::uint8_t* name) {
            *name = static_cast<std::uint8_t>(fake.name.size());
            std::ranges::copy(fake.name, name + 1);
            return HostError::none;
        });
        fillSlot(table, slot::getFontInfo, [](std::int32_t, FontInfo* info) {
            *info = fake.info;
            return HostError::none;
        });
    }
    void TearDown() override {
        closeXRef();
        closeFamily();
        closeIdentity();
        ReaderTest::TearDown();
    }

    std::string write(FontTechnology technology = FontTechnology::type1) {
        closeFamily();
        closeIdentity();
        appendFamily(fake.name, technology);
        test::KeeperFilter keeper;
        DocumentCache cache;
        cache.output = &keeper;
        code_ = guarded([&] {
            forallFamily([&](const Family& family) {
                referFamily(cache, family);
                writeFamily(cache, family);
            });
        });
        resetException();
        return keeper.text;
    }

    Exception code_ = Exception::none;
};

TEST_F(FontWorksTest, StandardFontsAreNamed) {
    fake.name = "Helvetica";
    EXPECT_EQ(write(), "/\002F1 1 0 R\n1 0 obj\n<<\n/Type /Font\n/Subtype /Type1\n/Name /\002F1 \n"
                       "/BaseFont /Helvetica \n/Encoding /MacRomanEncoding\n>>\nendobj\n");
}

TEST_F(FontWorksTest, OtherFontsAreDescribed) {
    fake.info.encoding = 2;
    fake.info.ascent = fixedFromReal(0.75);
    fake.info.descent = fixedFromReal(0.25);
    fake.info.leading = fixedFromReal(0.0996);
    fake.info.bounds = {fixedFromReal(-0.1), fixedFromReal(0.9), fixedFromReal(1.2),
                        fixedFromReal(-0.3)};
    std::ranges::fill(fake.info.widths, fixedFromReal(0.6));
    fake.info.widths[' '] = fixedFromReal(0.2785);
    const std::string text = write(FontTechnology::trueType);
    ASSERT_EQ(code_, Exception::none);
    EXPECT_EQ(text.substr(0, text.find("2 0 obj")),
              "/\002F1 1 0 R\n1 0 obj\n<<\n/Type /Font\n/Subtype /TrueType\n/Name /\002F1 \n"
              "/BaseFont /My_Font \n/Encoding /MacExpertEncoding\n/Widths 2 0 R\n"
              "/FontDescriptor 3 0 R\n/FirstChar 0\n/LastChar 255\n>>\nendobj\n");
    std::string row;
    for (int i = 0; i < 16; ++i) {
        row += "600 ";
    }
    std::string widths = "2 0 obj\n[\n" + row + "\n" + row + "\n279 " + row.substr(4) + "\n";
    for (int i = 3; i < 16; ++i) {
        widths += row + "\n";
    }
    const std::size_t at = text.find("2 0 obj");
    EXPECT_EQ(text.substr(at, text.find("3 0 obj") - at), widths + "]\nendobj\n");
    const std::string described = text.substr(text.find("3 0 obj"));
    EXPECT_TRUE(described.starts_with(
        "3 0 obj\n<<\n/Type /FontDescriptor\n/Ascent 750 \n/Descent -250 \n/Leading 100 \n"
        "/MaxWidth 600 \n/AvgWidth 598 \n/MissingWidth 279 \n/FontBBox [ -100 -300 1200 900 ]\n"
        "/FontName /My_Font\n/Flags "))
        << described;
    for (const char* key : {"/CapHeight ", "/ItalicAngle ", "/StemV ", "/StemH ", "/XHeight "}) {
        EXPECT_NE(described.find(key), described.npos) << key;
    }
}

TEST_F(FontWorksTest, Failures) {
    fake.name = "Myriad_400_600_";
    EXPECT_NE(write().find("/Subtype /MMType1\n"), std::string::npos);
    write(static_cast<FontTechnology>(2));
    EXPECT_EQ(code_, Exception::type);
    for (const int encoding : {-1, 3}) {
        fake.info.encoding = encoding;
        write();
        EXPECT_EQ(code_, Exception::type) << encoding;
    }
    fake.info.encoding = 0;
    fake.info.identifiers[1] = 0x7FFF;
    write();
    EXPECT_EQ(code_, Exception::fontFamily) << "no font of the machine";
    fillSlot({table_->ref().get(), slotCount}, slot::firstFontName, [](std::int32_t* count) {
        *count = 0;
        return HostError::none;
    });
    write();
    EXPECT_EQ(code_, Exception::structure);
}

} // namespace
} // namespace corvane
