// The real program puts fonts of the machine into files.
#include "tests/app/cli/saving.h"
#include "tests/support/pdf_builder.h"

#include <gmock/gmock.h>

#include <fstream>

namespace corvane {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class NewFonts : public Saving {
protected:
    static std::string svg(const std::string& body) {
        return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"300pt\" height=\"200pt\" "
               "viewBox=\"0 0 300 200\">" +
               body + "</svg>";
    }

    test::Outcome saved(const std::string& art, std::vector<std::string> words) const {
        words.insert(words.begin(), {"save", "-"});
        auto saving = process(std::move(words));
        saving.input = art;
        saving.environment.insert(saving.environment.end(), environment_.begin(),
                                  environment_.end());
        return test::run(saving);
    }

    test::Outcome other(std::vector<std::string> words) const {
        words.insert(words.begin(), "/usr/bin/env");
        test::Process process;
        process.words = std::move(words);
        process.folder = folder_.path();
        return test::run(process);
    }

    std::vector<std::pair<std::string, std::string>> environment_;
};

const std::string greeting = "gr\xC3\xBC\xC3\x9F dich";

TEST_F(NewFonts, ANewFileTellsWhichFontsItGot) {
    const std::string art = svg("<text x='20' y='40' font-family='DejaVu Sans'>" + greeting +
                                "</text><text x='20' y='80' font-family='No Such Font'>e</text>");
    const auto outcome = saved(art, {"new.pdf", "--json"});
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(outcome.output,
                HasSubstr(R"("fontsAdded":[{"name":"DejaVu Sans","letters":"cdghir)"));
    EXPECT_THAT(
        outcome.output,
        HasSubstr(R"({"name":"NimbusSans-Regular","letters":"e","wanted":"No Such Font"})"));
    EXPECT_THAT(
        outcome.output,
        HasSubstr(R"("sentence":"the letter e is in \"NimbusSans-Regular\", since the font )"
                  R"(\"No Such Font\" does not have it or is not installed"}])"));
    EXPECT_TRUE(isValid("new.pdf"));
    if (test::isInstalled("pdftotext")) {
        EXPECT_THAT(other({"pdftotext", "new.pdf", "-"}).output, HasSubstr(greeting));
    }
    const auto again = saved(artwork("new.pdf", 1), {"new.pdf"});
    EXPECT_THAT(again.errors, HasSubstr("nothing to save"));
    EXPECT_EQ(saved(art, {"twin.pdf"}).status, 0);
    EXPECT_EQ(bytes("twin.pdf"), bytes("new.pdf"));

    std::string retyped = artwork("new.pdf", 1);
    retyped.replace(retyped.find("dich"), 4, "zwei");
    const auto more = saved(retyped, {"new.pdf"});
    ASSERT_EQ(more.status, 0) << more.errors;
    EXPECT_THAT(more.errors,
                HasSubstr("the letters eiwz are in \"DejaVu Sans\" of this machine, since "
                          "the page's part of that font does not have them"));
}

TEST_F(NewFonts, AnEncryptedFileGetsThemEnciphered) {
    if (!test::isInstalled("qpdf") || !test::isInstalled("pdftotext")) {
        GTEST_SKIP() << "needs qpdf and pdftotext";
    }
    folder_.add("plain.pdf",
                test::PdfBuilder()
                    .object(1, "<< /Type /Catalog /Pages 2 0 R >>")
                    .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>")
                    .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 300 200] /Contents 4 0 "
                               "R /Resources << /Font << /F 5 0 R >> >> >>")
                    .stream(4, "BT /F 24 Tf 20 100 Td (gruss dich) Tj ET")
                    .object(5, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
                    .bytes());
    ASSERT_EQ(other({"qpdf", "--encrypt", "", "owner", "256", "--", "plain.pdf", "in.pdf"}).status,
              0);
    const std::string art = replaced(artwork("in.pdf", 1), "gruss dich", greeting);
    const auto outcome = saved(art, {"in.pdf"});
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_TRUE(isValid("in.pdf"));
    EXPECT_THAT(other({"pdftotext", "in.pdf", "-"}).output, HasSubstr(greeting));
    EXPECT_THAT(bytes("in.pdf"), Not(HasSubstr("begincmap")));
}

/// What the maker of a font permits: bits of "OS/2". The fonts of this machine are one patched one.
TEST_F(NewFonts, AFontThatMustNotBeEmbeddedIsRefused) {
    struct Row {
        unsigned char low;
        unsigned char high;
        bool isRefused;
    };
    const Row rows[] = {{0, 0, false}, {2, 0, true}, {4, 0, false}, {8, 0, false},
                        {6, 0, false}, {0, 1, true}, {0, 2, true}};
    const std::string font = test::fileBytes("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");
    if (font.empty()) {
        GTEST_SKIP() << "needs DejaVu Sans";
    }
    const auto byteOf = [&](std::size_t at) { return static_cast<unsigned char>(font.at(at)); };
    const std::size_t entry = font.find("OS/2");
    std::size_t table = 0;
    for (std::size_t i = 8; i < 12; ++i) {
        table = table << 8U | byteOf(entry + i);
    }
    folder_.add("fonts.conf", "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">"
                              "<fontconfig><dir>" +
                                  (folder_.path() / "fonts").string() + "</dir><cachedir>" +
                                  (folder_.path() / "cache").string() + "</cachedir></fontconfig>");
    environment_ = {{"FONTCONFIG_FILE", (folder_.path() / "fonts.conf").string()}};
    std::filesystem::create_directory(folder_.path() / "fonts");
    int number = 0;
    for (const Row& row : rows) {
        std::string patched = font;
        patched[table + 8] = static_cast<char>(row.high);
        patched[table + 9] = static_cast<char>(row.low);
        std::filesystem::remove_all(folder_.path() / "cache");
        folder_.add("fonts/font.ttf", patched);
        const std::string name = "new" + std::to_string(++number) + ".pdf";
        const auto line = [](const char* family) {
            return svg("<text y='40' font-family='" + std::string(family) + "'>abc</text>");
        };
        const auto named = saved(line("DejaVu Sans"), {name});
        EXPECT_EQ(named.status, row.isRefused ? 1 : 0) << named.errors;
        EXPECT_EQ(std::filesystem::exists(folder_.path() / name), !row.isRefused);
        if (row.isRefused) {
            EXPECT_THAT(named.errors, HasSubstr("error 31: the font DejaVu Sans must not be put"));
            // Nobody asked for that one, but it is the only one that has the letters.
            EXPECT_THAT(saved(line("Another"), {name}).errors,
                        HasSubstr("error 31: the font DejaVu Sans must not be put"));
        }
    }
}

} // namespace
} // namespace corvane
