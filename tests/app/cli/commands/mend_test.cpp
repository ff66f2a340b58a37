// Mending damaged files with the real program.
#include "tests/app/cli/saving.h"
#include "tests/support/pdf_builder.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::holds;
using test::PdfBuilder;

const std::string square = "1 0 0 rg 20 20 100 100 re f";

/// Two pages below a node, which gives them their box; both show one content.
PdfBuilder twoPages(const std::string& length = std::to_string(square.size())) {
    PdfBuilder file;
    file.object(1, "<< /Type /Catalog /Pages 2 0 R >>")
        .object(2, "<< /Type /Pages /Kids [5 0 R] /Count 2 >>")
        .object(3, "<< /Type /Page /Parent 5 0 R /Contents 4 0 R >>")
        .object(4, "<< /Length " + length + " /Other (a\\)b) >>\nstream\n" + square + "\nendstream")
        .object(5, "<< /Type /Pages /Parent 2 0 R /Kids [3 0 R 6 0 R] /Count 2 "
                   "/MediaBox [0 0 300 200] >>")
        .object(6, "<< /Type /Page /Parent 5 0 R /Contents 4 0 R >>");
    return file;
}

/// Without what leads to the cross-reference.
std::string lost(const std::string& file) {
    return replaced(file, "\nstartxref\n", "\nstartxref\n9999999");
}

/// With an entry that leads beside the object, which the objects around it do not need.
std::string beside(const std::string& file, const std::string& object) {
    std::string place = std::to_string(file.find("\n" + object + " obj") + 1);
    std::string entry = std::string(10 - place.size(), '0') + place + " 00000 n";
    place = entry;
    place[9] = place[9] == '9' ? '1' : static_cast<char>(place[9] + 1);
    return replaced(file, entry, place);
}

/// The page is in an object stream.
std::string packed() {
    const std::string node = "<</Type/Pages/Kids[3 0 R]/Count 1>> ";
    const std::string head = "2 0 3 " + std::to_string(node.size()) + " ";
    PdfBuilder file;
    file.object(1, "<</Type/Catalog/Pages 2 0 R>>")
        .stream(4, square)
        .stream(9, head + node + "<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 200]/Contents 4 0 R>>",
                "/Type/ObjStm/N 2/First " + std::to_string(head.size()));
    return file.bytes();
}

/// Its cross-reference is a stream with a wrong Length.
std::string misread() {
    std::string file = PdfBuilder()
                           .object(1, "<</Type/Catalog/Pages 2 0 R>>")
                           .object(2, "<</Type/Pages/Kids[3 0 R]/Count 1>>")
                           .object(3, "<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 200]"
                                      "/Contents 4 0 R>>")
                           .stream(4, square)
                           .bytes();
    file.resize(file.rfind("xref\n0"));
    const std::size_t section = file.size();
    std::string entries(4, '\0');
    for (int number = 1; number <= 5; ++number) {
        const std::size_t at = std::min(section, file.find(std::to_string(number) + " 0 obj"));
        entries += {'\1', static_cast<char>(at >> 8U), static_cast<char>(at & 0xFFU), '\0'};
    }
    return file + "5 0 obj\n<</Type/XRef/Size 6/Root 1 0 R/W[1 2 1]/Length 20>>\nstream\n" +
           entries + "\nendstream\nendobj\nstartxref\n" + std::to_string(section) + "\n%%EOF\n";
}

/// Cut off behind data that are longer than their Length: the last stream has no end.
std::string cutOff() {
    const std::string file = twoPages()
                                 .object(6, "<< /Type /Page /Parent 5 0 R /Contents 7 0 R >>")
                                 .object(7, "<< /Length " + std::to_string(square.size()) +
                                                " >>\nstream\n" + square + "\n5 5 9 9 re f")
                                 .bytes();
    return file.substr(0, file.find("\nendobj", file.find("9 9 re f")));
}

/// Cut off within an object, which a reader would take what is appended for a part of.
std::string cutWithin(const std::string& object) {
    const std::string file = twoPages().object(7, object).bytes();
    return file.substr(0, file.find(object, file.find("7 0 obj")) + object.size());
}

struct Damaged {
    const char* name;
    std::string file;
    const char* kinds;          ///< what `check` finds
    bool isRefused;             ///< by a save that does not mend
    std::string rewritten = {}; ///< a part of what is appended, and there alone
};

std::vector<Damaged> damagedFiles() {
    const std::string sound = twoPages().bytes();
    return {
        {"a lost cross-reference", lost(sound), R"({"crossReference":1})", true},
        {"an entry beside the content", beside(sound, "4 0"), R"({"crossReference":1})", true},
        {"one with a Size beyond all objects",
         lost(twoPages().trailer("/Size 40 /Root 1 0 R").bytes()), R"({"crossReference":1})", true},
        {"one with a wrong Length and Encrypt in a string",
         lost(twoPages("11 /Note (/Encrypt)").bytes()), R"({"crossReference":1,"streamLength":1})",
         true, "/Length 27\n/Note (/Encrypt)\n/Other (a\\)b)\n"},
        {"one with objects in an object stream", lost(packed()), R"({"crossReference":1})", true,
         "/W [ 1 2 2 ]"},
        {"one with words in a stream of wrong Length that look like an object",
         lost(twoPages()
                  .object(4, "<< /Length 7 >>\nstream\n" + square +
                                 " (\n7 0 obj\n<< /Type n\n) pop\nendstream")
                  .bytes()),
         R"({"crossReference":1,"streamLength":1,"lostObject":1})", true, "/Length 54\n"},
        {"a wrong Length", twoPages("9999").bytes(), R"({"streamLength":1})", false, "/Length 27"},
        {"one of the cross-reference", misread(), R"({"streamLength":1})", false, "xref\n0 "},
        {"an object without an end",
         replaced(sound, "0 R /Contents 4 0 R >>\nendobj", "0 R /Contents 4 0 R >>\n      "),
         R"({"objectEnd":1})", false},
        {"a file that was cut off in its last stream", cutOff(),
         R"({"crossReference":1,"trailer":1,"streamLength":1,"objectEnd":1})", true,
         "7 0 obj\n<<\n/Length 27\n"},
        {"one that was cut off in a string of a dictionary",
         cutWithin("<< /A [1.25 /N#20 4 0 R << /B (b\\)) >>] /C (some te"),
         R"({"crossReference":1,"trailer":1,"objectEnd":1,"syntax":1})", true,
         "7 0 obj\n<<\n/A [ 1.25  /N#20 4 0 R << /B <6229> >> ]\n/C "
         "<736F6D65207465>\n>>\nendobj\n"},
        {"one that was cut off in an array", cutWithin("[ 1 [ /N <41"),
         R"({"crossReference":1,"trailer":1,"objectEnd":1,"syntax":1})", true,
         "7 0 obj\n[ 1  [ /N <41> ] ]\nendobj\n"},
        {"a node that names what is none, and a wrong Count",
         twoPages()
             .object(5, "<< /Type /Pages /Parent 2 0 R /Kids [3 0 R null 77 0 R 6 0 R] /Count 9 "
                        "/MediaBox [0 0 300 200] >>")
             .bytes(),
         R"({"pageNode":1})", false, "/Kids [ 3 0 R 6 0 R ]\n/Count 2\n"},
        {"a page and a node with no or another Parent and Type",
         twoPages()
             .object(5, "<< /Kids [3 0 R 6 0 R] /Count 2 /MediaBox [0 0 300 200] >>")
             .object(6, "<< /Type /Pages /Parent 7 0 R /Contents 4 0 R >>")
             .object(7, "<< /Type /Pages /MediaBox [0 0 300 200] /Kids [] /Count 0 >>")
             .bytes(),
         R"({"pageNode":2})", false, "/Type /Page\n/Parent 5 0 R\n/Contents 4 0 R\n/MediaBox [0"},
        {"pages that no tree leads to",
         twoPages().object(1, "<< /Type /Catalog /Pages 77 0 R >>").bytes(),
         R"({"crossReference":1,"trailer":1,"pages":1})", true,
         "/Type /Pages\n/Count 2\n/Kids [ 3 0 R 6 0 R ]\n"},
        {"a damaged page with Kids and another Parent, to which no tree leads",
         twoPages()
             .object(1, "<< /Type /Catalog /Pages 77 0 R >>")
             .object(6, "<< /Type /Page ] /Parent 5 0 R /Contents 4 0 R /Kids [3 0 R] "
                        "/MediaBox [0 0 300 200] /Parent null >>")
             .bytes(),
         R"({"crossReference":1,"trailer":1,"pages":1,"syntax":1})", true, "/Kids null"},
        {"a page that the trailer takes for the catalog",
         twoPages().object(1, "(none)").trailer("/Size 7 /Root 3 0 R").bytes(),
         R"({"crossReference":1,"trailer":1,"pages":1})", true, "/Type /Catalog\n/Pages 7 0 R\n"},
        {"a page without a Parent",
         twoPages().object(3, "<< /Type /Page /Contents 4 0 R /MediaBox [0 0 300 200] >>").bytes(),
         R"({"pageNode":1})", false},
        {"an entry that leads to nothing",
         replaced(twoPages().object(7, "(lost)").bytes(), "7 0 obj", "7_0_obj"),
         R"({"lostObject":1})", false},
    };
}

class Mend : public Saving {
protected:
    /// The SVG of page 1 with a square more.
    std::string edited() const {
        const std::string svg = artwork("in.pdf", 1);
        return replaced(svg, "</svg>", "<rect width='9' height='9' fill='#00f'/></svg>");
    }
    test::Outcome saveEdited(const std::string& svg, bool mends) const {
        auto saving = process({"save", "-", "in.pdf", "--page", "1"});
        if (mends) {
            saving.words.emplace_back("--mend");
        }
        saving.input = svg;
        return test::run(saving);
    }
    std::string check() const {
        const auto outcome = run({"check", "in.pdf", "--json"});
        EXPECT_EQ(outcome.status, 0);
        return outcome.output;
    }
    void expectSound(const Damaged& row) const {
        EXPECT_TRUE(bytes("in.pdf").starts_with(row.file));
        EXPECT_TRUE(holds(check(), R"("damage":{},"needsMending":false,"canBeMended":false)"))
            << check();
        EXPECT_TRUE(isValid("in.pdf"));
        EXPECT_TRUE(holds(bytes("in.pdf").substr(row.file.size()), row.rewritten))
            << bytes("in.pdf").substr(row.file.size());
    }
    void expectReverted(const Damaged& row) const {
        EXPECT_TRUE(holds(run({"log", "in.pdf"}).output, "ours"));
        EXPECT_EQ(run({"revert", "in.pdf"}).status, 0);
        EXPECT_TRUE(bytes("in.pdf") == row.file);
    }
};

TEST_F(Mend, AFileAlone) {
    for (const Damaged& row : damagedFiles()) {
        SCOPED_TRACE(row.name);
        folder_.add("in.pdf", row.file);
        const std::string found = check();
        EXPECT_TRUE(holds(found, std::string(R"("damage":)") + row.kinds)) << found;
        EXPECT_TRUE(
            holds(found, row.isRefused ? R"("needsMending":true)" : R"("needsMending":false)"));
        const std::string before = drawing(artwork("in.pdf", 1));
        const auto trial = run({"save", "--mend", "in.pdf", "--dry-run", "--json"});
        EXPECT_TRUE(bytes("in.pdf") == row.file);

        const auto outcome = run({"save", "--mend", "in.pdf", "--json"});
        ASSERT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_TRUE(holds(outcome.output, std::string(R"("mended":)") + row.kinds))
            << outcome.output;
        EXPECT_TRUE(
            holds(trial.output, "\"length\":" + std::to_string(bytes("in.pdf").size()) + ","));
        expectSound(row);
        EXPECT_EQ(drawing(artwork("in.pdf", 1)), before);
        const std::string mended = bytes("in.pdf");
        EXPECT_TRUE(holds(run({"save", "--mend", "in.pdf"}).errors, "nothing to mend"));
        EXPECT_TRUE(bytes("in.pdf") == mended);
        expectReverted(row);
    }
}

TEST_F(Mend, APageIsSavedInTheSameUpdate) {
    for (const Damaged& row : damagedFiles()) {
        SCOPED_TRACE(row.name);
        folder_.add("in.pdf", row.file);
        const std::string svg = edited();
        if (row.isRefused) {
            const auto refused = saveEdited(svg, false);
            EXPECT_EQ(refused.status, 1);
            EXPECT_TRUE(holds(refused.errors, "error 22")) << refused.errors;
            EXPECT_TRUE(holds(refused.errors, "--mend"));
            EXPECT_TRUE(bytes("in.pdf") == row.file);
        }
        const auto outcome = saveEdited(svg, true);
        ASSERT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_TRUE(holds(outcome.errors, "1 object added, 1 kept")) << outcome.errors;
        EXPECT_TRUE(holds(outcome.errors, "in.pdf: mended: ")) << outcome.errors;
        expectSound(row);
        EXPECT_TRUE(holds(artwork("in.pdf", 1), "#0000ff"));
        // The base is still the page that the artwork was opened from, and needs no mending now.
        EXPECT_EQ(saveEdited(replaced(svg, "width='9'", "width='8'"), false).status, 0);
        EXPECT_EQ(run({"revert", "in.pdf"}).status, 0);
        expectReverted(row);
        // So it is after the file was mended by itself.
        EXPECT_EQ(run({"save", "--mend", "in.pdf"}).status, 0);
        if (!holds(row.kinds, "page")) {
            EXPECT_EQ(saveEdited(svg, false).status, 0);
            EXPECT_TRUE(isValid("in.pdf"));
        }
    }
}

TEST_F(Mend, APageWhoseDictionaryIsDamagedIsWrittenAsItWasRead) {
    const std::string resources = "/Resources << /Font << /F1 9 0 R >> /Note (b\\)) >>";
    for (const std::string damage : {"/A foo", "foo", "/A", "/A [1 2"}) {
        SCOPED_TRACE(damage);
        folder_.add("in.pdf", twoPages()
                                  .object(3, "<< /Type /Page /Parent 5 0 R /Contents 4 0 R " +
                                                 resources + " " + damage + " >>")
                                  .bytes());
        const auto outcome = saveEdited(edited(), false);
        ASSERT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_TRUE(holds(outcome.errors, "1 object added, 1 kept")) << outcome.errors;
        EXPECT_TRUE(holds(artwork("in.pdf", 1), "#0000ff"));
        const std::string saved = bytes("in.pdf");
        const std::string page = saved.substr(saved.find("%%EOF"));
        EXPECT_TRUE(holds(page, "/Font << /F1 9 0 R >>")) << page;
        EXPECT_FALSE(holds(page, "foo")) << page;
        EXPECT_TRUE(isValid("in.pdf"));
    }
    std::string file = twoPages()
                           .object(5, "<< /Type /Pages /Parent 2 0 R /Kids [7 0 R 6 0 R] /Count 2 "
                                      "/MediaBox [0 0 300 200] >>")
                           .object(7, "<< /Type /Page /Parent 5 0 R /Contents 4 0 R /Rotate 0 >>")
                           .bytes();
    file.resize(file.find("/Rotate 0 >>") + 9);
    folder_.add("in.pdf", file);
    const std::string svg = edited();
    const auto outcome = saveEdited(svg, true);
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_TRUE(bytes("in.pdf").starts_with(file));
    EXPECT_TRUE(holds(artwork("in.pdf", 1), "#0000ff"));
    EXPECT_TRUE(isValid("in.pdf"));
    EXPECT_EQ(run({"revert", "in.pdf"}).status, 0);
    EXPECT_EQ(run({"save", "--mend", "in.pdf"}).status, 0);
    EXPECT_EQ(saveEdited(svg, false).status, 0);
    EXPECT_TRUE(isValid("in.pdf"));
}

/// The node itself stays as it stands: readers differ in what they take its words for.
TEST_F(Mend, WhatPagesInheritFromADamagedNodeIsTheirOwnThen) {
    folder_.add("in.pdf", twoPages()
                              .object(1, "<< /Type /Catalog /Pages 77 0 R >>")
                              .object(5, "<< /Type /Pages ] /Parent 2 0 R /Kids [3 0 R 6 0 R] "
                                         "/Count 2 /MediaBox [0 0 300 200] >>")
                              .bytes());
    const std::string before = drawing(artwork("in.pdf", 1));
    ASSERT_EQ(run({"save", "--mend", "in.pdf"}).status, 0);
    EXPECT_TRUE(holds(bytes("in.pdf"), "/MediaBox [ 0  0  300  200  ]")) << bytes("in.pdf");
    EXPECT_EQ(drawing(artwork("in.pdf", 1)), before);
    EXPECT_TRUE(holds(run({"save", "--mend", "in.pdf"}).errors, "nothing to mend"));
}

TEST_F(Mend, EncryptedFilesStaySo) {
    if (!test::isInstalled("qpdf")) {
        GTEST_SKIP() << "needs qpdf";
    }
    for (const char* objectStreams : {"disable", "generate"}) {
        folder_.add("plain.pdf", twoPages().bytes());
        test::Process qpdf;
        qpdf.words = {"/usr/bin/env", "qpdf", std::string("--object-streams=") + objectStreams,
                      "--encrypt",    "",     "owner",
                      "256",          "--",   "plain.pdf",
                      "sound.pdf"};
        qpdf.folder = folder_.path();
        ASSERT_EQ(test::run(qpdf).status, 0);
        const Damaged row{"encrypted", lost(bytes("sound.pdf")), "", true};
        folder_.add("in.pdf", row.file);
        const auto outcome = saveEdited(edited(), true);
        ASSERT_EQ(outcome.status, 0) << outcome.errors;
        expectSound(row);
        EXPECT_TRUE(holds(artwork("in.pdf", 2), "#ff0000"));
        expectReverted(row);
    }
}

TEST_F(Mend, WhatAppendingCannotMendIsRefusedByName) {
    struct Row {
        const char* name;
        std::string file;
        const char* says;
    };
    const std::string sound = twoPages().bytes();
    for (const Row& row : {
             Row{"a catalog without a number",
                 lost(twoPages().trailer("/Root << /Type /Catalog /Pages 2 0 R >>").bytes()),
                 "the catalog of the file has no number"},
             Row{"a page without a number",
                 lost(twoPages()
                          .object(2, "<< /Type /Pages /Kids [null << /Type /Page /Contents 4 0 R "
                                     ">>] /Count 1 >>")
                          .bytes()),
                 "a page of the file has no number"},
         }) {
        SCOPED_TRACE(row.name);
        folder_.add("in.pdf", row.file);
        EXPECT_TRUE(holds(check(), row.says)) << check();
        const auto outcome = run({"save", "--mend", "in.pdf"});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_TRUE(holds(outcome.errors, row.says)) << outcome.errors;
        EXPECT_TRUE(bytes("in.pdf") == row.file);
    }
    PdfBuilder empty;
    empty.object(1, "<< /Type /Catalog /Pages 2 0 R >>")
        .object(2, "<< /Type /Pages /Kids [] /Count 0 >>");
    PdfBuilder damaged = empty;
    damaged.object(3, "<< /Length 9 >>\nstream\n1 w 0 0 m 9 9 l S\nendstream");
    for (const std::string& file : {sound, lost(empty.bytes()), lost(damaged.bytes())}) {
        folder_.add("in.pdf", file);
        EXPECT_TRUE(holds(run({"save", "--mend", "in.pdf"}).errors, "nothing to mend"));
        EXPECT_TRUE(bytes("in.pdf") == file);
    }
    folder_.add("in.pdf", sound);
    EXPECT_EQ(run({"save", "--mend", "none.pdf"}).status, 1);
    EXPECT_EQ(run({"save", "--mend", "in.pdf", "--output", "out.pdf", "--quiet"}).status, 0);
    EXPECT_TRUE(bytes("out.pdf") == sound);
}

} // namespace
} // namespace corvane
