// A real Inkscape with the extensions: without a display, and under a virtual one.
#include "tests/app/cli/inkscape/extensions.h"

#include <fstream>
#include <unistd.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::holds;
using Words = std::vector<std::string>;

constexpr const char* recolour = "select-by-id:p3;object-set-attribute:stroke,#00ff00;";
constexpr const char* saveAsLink = "export-filename:in.pdfpage;export-overwrite;export-do";

class DrivenInkscape : public Extensions {
protected:
    void SetUp() override {
        ASSERT_EQ(extensions("--install").status, 0);
        folder_.add("in.pdf", pdf_);
        folder_.add("in.pdfpage", link_);
    }

    test::Process inkscape(Words words, Words before = {}) const {
        before.insert(before.begin(), "/usr/bin/env");
        before.emplace_back("inkscape");
        before.insert(before.end(), words.begin(), words.end());
        test::Process process;
        process.words = std::move(before);
        process.folder = folder_.path();
        return alone(std::move(process));
    }

    test::Outcome drive(Words words) const { return test::run(inkscape(std::move(words))); }

    /// With a window on a display that nobody sees. Tests side by side look for a free one from
    /// numbers of their own.
    test::Outcome driveWindow(const std::string& artwork, const std::string& actions) const {
        const std::string number = std::to_string(100 + getpid() % 30000);
        return test::run(
            inkscape({"--with-gui", "--batch-process", artwork, "--actions=" + actions},
                     {"xvfb-run", "--auto-servernum", "--server-num=" + number}));
    }

    /// What the program makes of the same change, without Inkscape.
    std::string recoloured() const {
        folder_.add("direct.pdf", pdf_);
        std::string art = artwork("direct.pdf", 2);
        const auto at = art.find("stroke=\"#b2b2b2\"", art.find("id=\"p3\""));
        folder_.add("direct.svg", art.replace(at, 16, "stroke=\"#00ff00\""));
        EXPECT_EQ(run({"save", "direct.svg", "direct.pdf"}).status, 0);
        return drawing(artwork("direct.pdf", 2));
    }

    const std::string pdf_ = example("two-pages.pdf");
    const std::string link_ = R"({"pdf": "in.pdf", "page": 2})";
};

TEST_F(DrivenInkscape, OpensChangesAndSavesWithoutADisplay) {
    const auto outcome = drive({"in.pdfpage", "--actions=" + std::string(recolour) + saveAsLink});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_TRUE(bytes("in.pdf").starts_with(pdf_) && bytes("in.pdf") != pdf_) << outcome.errors;
    EXPECT_TRUE(holds(bytes("in.pdfpage"), path("in.pdf"))) << bytes("in.pdfpage");
    const std::string direct = recoloured();
    EXPECT_EQ(replaced(drawing(artwork("in.pdf", 2)), "in.pdf", "direct.pdf"), direct);
    EXPECT_EQ(drive({"in.pdfpage", "--export-filename=again.svg"}).status, 0);
    EXPECT_TRUE(holds(bytes("again.svg"), "#00ff00")) << "the link that was written opens the page";
    EXPECT_TRUE(isValid("in.pdf"));
    EXPECT_EQ(run({"revert", "in.pdf"}).status, 0);
    EXPECT_EQ(bytes("in.pdf"), pdf_);
}

TEST_F(DrivenInkscape, SavesTheOpenPageAgainAndAgain) {
    const auto outcome = drive({"in.pdfpage", "--actions=" + std::string(recolour) + saveAsLink +
                                                  ";select-clear;select-by-id:p4;"
                                                  "object-set-attribute:stroke,#ff00ff;" +
                                                  saveAsLink});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_TRUE(holds(artwork("in.pdf", 2), "#00ff00"));
    EXPECT_TRUE(holds(artwork("in.pdf", 2), "#ff00ff"));
    EXPECT_EQ(run({"revert", "in.pdf"}).status, 0);
    EXPECT_FALSE(holds(artwork("in.pdf", 2), "#ff00ff")) << "each save is an update of its own";
    EXPECT_EQ(run({"revert", "in.pdf"}).status, 0);
    EXPECT_EQ(bytes("in.pdf"), pdf_);
}

TEST_F(DrivenInkscape, SavesFromTheMenu) {
    const auto outcome =
        driveWindow("in.pdfpage", std::string(recolour) + "corvane.menu.save.noprefs");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_TRUE(holds(outcome.errors, "in.pdf, page 2: 1 object changed; ")) << outcome.errors;
    EXPECT_EQ(replaced(drawing(artwork("in.pdf", 2)), "in.pdf", "direct.pdf"), recoloured());
    EXPECT_EQ(bytes("in.pdfpage"), link_);
}

TEST_F(DrivenInkscape, MenuEntriesTakeTheNamedFile) {
    std::ofstream(fs::path(profile()) / "preferences.xml")
        << R"(<inkscape version="1"><group id="extensions" corvane.menu.open.pdf=")"
        << path("in.pdf") << R"(" corvane.menu.open.page="2" corvane.menu.save.pdf=")"
        << path("other.pdf") << R"("/></inkscape>)";
    folder_.add("other.pdf", pdf_);
    const auto saved =
        driveWindow("in.pdfpage", std::string(recolour) + "corvane.menu.save.noprefs");
    EXPECT_TRUE(holds(saved.errors, "other.pdf, page 2: 1 object changed; ")) << saved.errors;
    EXPECT_EQ(bytes("in.pdf"), pdf_);
    EXPECT_TRUE(holds(artwork("other.pdf", 2), "#00ff00"));
    for (int i = 0; i < 2; ++i) {
        driveWindow("in.pdfpage", "corvane.menu.open.noprefs");
    }
    EXPECT_TRUE(holds(bytes("in-page2.pdfpage"), path("in.pdf")));
    EXPECT_FALSE(fs::exists(folder_.path() / "in-page2-2.pdfpage")) << "one link for a page";
}

TEST_F(DrivenInkscape, ARefusedSaveChangesNothingAndSaysWhy) {
    folder_.add("own.svg",
                "<svg xmlns=\"http://www.w3.org/2000/svg\"><path d=\"M0 0H9V9Z\"/></svg>");
    struct Row {
        const char* what;
        const char* file;
        std::string actions;
        const char* wanted; ///< in what is said
    };
    const std::vector<Row> rows{
        {"the page is empty", "in.pdfpage", std::string("select-all;delete;") + saveAsLink,
         "nothing was saved into "},
        {"a drawing of nobody's", "own.svg", saveAsLink, "does not say which PDF it belongs to"},
    };
    for (const Row& row : rows) {
        const auto outcome = drive({row.file, "--actions=" + row.actions});
        EXPECT_NE(outcome.status, 0) << row.what;
        EXPECT_TRUE(holds(outcome.errors, row.wanted)) << row.what << outcome.errors;
        EXPECT_EQ(bytes("in.pdf"), pdf_) << row.what;
        EXPECT_EQ(bytes("in.pdfpage"), link_) << row.what;
    }
}

TEST_F(DrivenInkscape, ArtworkWithLinkedPicturesIsSavedAsALink) {
    folder_.add("invoice.pdf", example("invoice.pdf"));
    ASSERT_EQ(run({"open", "invoice.pdf", "-o", "inv.svg"}).status, 0);
    auto saving = inkscape({"inv.svg", "--export-filename=inv.pdfpage"});
    const auto unnamed = test::run(saving);
    EXPECT_TRUE(holds(unnamed.errors, "CORVANE_PDF names the PDF")) << unnamed.errors;
    EXPECT_FALSE(fs::exists(path("inv.pdfpage")));
    saving.environment.emplace_back("CORVANE_PDF", path("invoice.pdf"));
    const auto outcome = test::run(saving);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_TRUE(holds(bytes("inv.pdfpage"), path("invoice.pdf"))) << outcome.errors;
    EXPECT_TRUE(holds(artwork("invoice.pdf", 1), "<image"));
}

TEST_F(DrivenInkscape, APieceOfOutputReplacesNothing) {
    struct Row {
        const char* what;
        const char* program; ///< a shell script in the place of ours
    };
    for (const Row& row :
         {Row{"half an answer", "printf '{\"command\":\"save\",'"},
          Row{"a crash", "printf '%%PDF-1.4'; kill -9 $$"}, Row{"no answer", "exit 1"}}) {
        ASSERT_EQ(drive({"in.pdfpage", "--export-filename=art.svg"}).status, 0);
        const auto fake = folder_.add("fake", std::string("#!/bin/sh\n") + row.program + "\n");
        fs::permissions(fake, fs::perms::owner_all);
        std::ofstream(place() / "corvane_program") << fake << "\n";
        auto saving = inkscape({"art.svg", std::string("--actions=") + saveAsLink});
        saving.environment.emplace_back("CORVANE_PDF", path("in.pdf"));
        const auto outcome = test::run(saving);
        EXPECT_NE(outcome.status, 0) << row.what;
        EXPECT_TRUE(holds(outcome.errors, "gave no answer")) << row.what << outcome.errors;
        EXPECT_EQ(bytes("in.pdf"), pdf_) << row.what;
        EXPECT_EQ(bytes("in.pdfpage"), link_) << row.what;
        std::ofstream(place() / "corvane_program") << test::buildFolder().string() << "/corvane\n";
    }
    drive({"in.pdfpage", "--export-filename=in.pdf", "--export-extension=corvane.save"});
    EXPECT_EQ(bytes("in.pdf"), pdf_) << "Inkscape never writes into a PDF by our extension";
}

TEST_F(DrivenInkscape, OpensWhatALinkSaysAndNothingElse) {
    test::Process seal;
    seal.words = {"/usr/bin/env", "qpdf",         "--encrypt",       "user", "owner", "256",
                  "--",           path("in.pdf"), path("sealed.pdf")};
    ASSERT_EQ(test::run(seal).status, 0);
    struct Row {
        const char* what;
        std::string link;
        const char* page;   ///< of the environment
        const char* wanted; ///< in the artwork, or else in what is said
        bool isOpened;
    };
    const std::vector<Row> rows{
        {"a page of the environment", R"({"pdf":"in.pdf"})", "2", "data-page=\"2\"", true},
        {"the first page", R"({"pdf":"in.pdf"})", "", "data-page=\"1\"", true},
        {"a folder that has moved", R"({"pdf":"/no/such/in.pdf","page":2})", "", "data-page=\"2\"",
         true},
        {"a page that is not there", R"({"pdf":"in.pdf","page":9})", "", "page 9", false},
        {"a PDF that is not there", R"({"pdf":"gone.pdf"})", "", "gone.pdf is not there", false},
        {"a PDF that needs a password", R"({"pdf":"sealed.pdf"})", "", "CORVANE_PASSWORD", false},
        {"a PDF itself", pdf_, "", "is no link to a page", false},
        {"another type", R"({"pdf":["in.pdf"]})", "", "is no link to a page", false},
        {"nothing", "", "", "is no link to a page", false},
    };
    for (const Row& row : rows) {
        folder_.add("a.pdfpage", row.link);
        fs::remove(folder_.path() / "a.svg");
        auto opening = inkscape({"a.pdfpage", "--export-filename=a.svg"});
        opening.environment.emplace_back("CORVANE_PAGE", row.page);
        const auto outcome = test::run(opening);
        EXPECT_EQ(fs::exists(folder_.path() / "a.svg"), row.isOpened) << row.what;
        EXPECT_TRUE(holds(row.isOpened ? bytes("a.svg") : outcome.errors, row.wanted))
            << row.what << outcome.errors;
        EXPECT_EQ(bytes("a.pdfpage"), row.link) << row.what;
    }
}

} // namespace
} // namespace corvane
