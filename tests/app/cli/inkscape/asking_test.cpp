// The scripts of the extensions as Inkscape runs them in a window, with a person who answers.
#include "tests/app/cli/inkscape/extensions.h"
#include "tests/app/images/png_images.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::holds;

class AskingScripts : public Extensions {
protected:
    void SetUp() override {
        ASSERT_EQ(extensions("--install").status, 0);
        fs::create_directory(folder_.path() / "bin");
        fs::create_symlink("/bin/cat", folder_.path() / "bin/cat");
        folder_.add("in.pdf", pdf_);
    }

    /// A program for dialogs that gives `answer`; an empty one is a person who cancels.
    void answers(const std::string& answer, const std::string& tool = "zenity") const {
        const auto program = folder_.add(
            "bin/" + tool, "#!/bin/sh\nprintf '%s\\n' \"$@\" >> '" + path("asked") + "'\n" +
                               (answer.empty() ? "exit 1" : "echo " + answer) + "\n");
        fs::permissions(program, fs::perms::owner_all);
        folder_.add("asked", "");
    }

    test::Process scriptProcess(const std::string& name, const std::string& file, bool isSeen,
                                const std::string& document = "in.pdfpage") const {
        test::Process process;
        process.words = {"/usr/bin/python3", (place() / name).string(), path(file)};
        process.folder = place();
        process = alone(std::move(process));
        for (auto& [variable, value] : process.environment) {
            value = variable == "DISPLAY" && isSeen ? ":9" : value;
        }
        process.environment.emplace_back("PATH", path("bin"));
        process.environment.emplace_back("DOCUMENT_PATH", path(document));
        return process;
    }

    test::Outcome script(const std::string& name, const std::string& file, bool isSeen,
                         const std::string& document = "in.pdfpage") const {
        return test::run(scriptProcess(name, file, isSeen, document));
    }

    std::string emptied(const std::string& svg) const {
        std::string text = svg;
        for (auto at = text.find("<path"); at != std::string::npos; at = text.find("<path")) {
            text.erase(at, text.find("/>", at) + 2 - at);
        }
        return text;
    }

    const std::string pdf_ = example("two-pages.pdf");
};

TEST_F(AskingScripts, ALossNeedsAYes) {
    struct Row {
        const char* answer;
        bool isSeen;
        bool isSaved;
        bool isAsked;
    };
    folder_.add("in.svg", emptied(artwork("in.pdf", 2)));
    folder_.add("in.pdfpage", R"({"pdf":"in.pdf","page":2})");
    for (const Row& row : {Row{"", true, false, true}, Row{"yes", false, false, false},
                           Row{"yes", true, true, true}}) {
        answers(row.answer);
        const auto outcome = script("corvane_save.py", "in.svg", row.isSeen);
        EXPECT_EQ(outcome.status, row.isSaved ? 0 : 1) << outcome.errors;
        EXPECT_EQ(outcome.output.empty(), !row.isSaved) << "nothing takes the place of the link";
        EXPECT_EQ(bytes("in.pdf") != pdf_, row.isSaved);
        EXPECT_EQ(holds(bytes("asked"), "saving would delete 20 of 20"), row.isAsked);
        EXPECT_EQ(holds(bytes("asked"), "in.pdf, page 2: 20 objects removed; "), row.isAsked);
        EXPECT_FALSE(holds(bytes("asked"), "--force")) << "no advice for a terminal";
    }
}

TEST_F(AskingScripts, ThePageIsAskedOnlyWhereThereAreSeveral) {
    struct Row {
        const char* file;
        const char* link;
        const char* answer;
        const char* wanted; ///< in the artwork; empty: it is not opened
        bool isAsked;
    };
    folder_.add("one.pdf", example("harbour.pdf"));
    for (const Row& row :
         {Row{"in.pdf", R"({"pdf":"in.pdf"})", "2", "data-page=\"2\"", true},
          Row{"in.pdf", R"({"pdf":"in.pdf"})", "", "", true},
          Row{"in.pdf", R"({"pdf":"in.pdf","page":1})", "2", "data-page=\"1\"", false},
          Row{"one.pdf", R"({"pdf":"one.pdf"})", "2", "data-page=\"1\"", false}}) {
        answers(row.answer);
        folder_.add("in.pdfpage", row.link);
        const auto outcome = script("corvane_open.py", "in.pdfpage", true);
        EXPECT_EQ(outcome.status, *row.wanted == '\0' ? 1 : 0) << outcome.errors;
        EXPECT_TRUE(holds(outcome.output, row.wanted)) << outcome.errors;
        EXPECT_EQ(holds(bytes("asked"), "Which page"), row.isAsked) << row.link;
    }
}

TEST_F(AskingScripts, ThePasswordIsAskedOnlyWhereItIsNeeded) {
    if (!test::isInstalled("qpdf")) {
        GTEST_SKIP() << "qpdf is not installed";
    }
    test::Process seal;
    seal.words = {"/usr/bin/env", "qpdf", "--encrypt",    "Sesam-27",        "owner",
                  "256",          "--",   path("in.pdf"), path("sealed.pdf")};
    ASSERT_EQ(test::run(seal).status, 0);
    folder_.add("in.pdfpage", R"({"pdf":"sealed.pdf","page":2})");
    answers("Sesam-27");
    const auto opened = script("corvane_open.py", "in.pdfpage", true);
    EXPECT_EQ(opened.status, 0) << opened.errors;
    EXPECT_TRUE(holds(bytes("asked"), "Password of sealed.pdf"));
    folder_.add("in.svg", replaced(opened.output, "#b2b2b2", "#00ff00"));
    EXPECT_EQ(script("corvane_save.py", "in.svg", true).status, 0);
    const std::string saved = bytes("sealed.pdf");
    answers("");
    EXPECT_EQ(script("corvane_save.py", "in.svg", true).status, 1);
    EXPECT_EQ(script("corvane_open.py", "in.pdfpage", false).status, 1);
    EXPECT_EQ(bytes("sealed.pdf"), saved);
    for (const auto& entry : fs::recursive_directory_iterator(folder_.path())) {
        if (entry.is_regular_file() && entry.path().filename() != "zenity") {
            EXPECT_FALSE(holds(test::fileBytes(entry.path()), "Sesam-27")) << entry.path();
        }
    }
}

TEST_F(AskingScripts, PicturesComeFromTheFolderOfTheDocument) {
    for (const char* const folder : {"docs", "others"}) {
        fs::create_directory(folder_.path() / folder);
        folder_.add(std::string(folder) + "/pic.png", test::text(test::pngOf({.rows = {7}})));
    }
    folder_.add("docs/in.pdfpage", R"({"pdf":"../in.pdf","page":2})");
    const auto opened = script("corvane_open.py", "docs/in.pdfpage", false);
    for (const std::string& picture : {path("docs/pic.png"), path("others/pic.png")}) {
        folder_.add("in.pdf", pdf_);
        folder_.add("others/in.svg",
                    replaced(opened.output, "</svg>",
                             "<image width=\"9\" height=\"9\" xlink:href=\"" + picture +
                                 "\" xmlns:xlink=\"http://www.w3.org/1999/xlink\"/></svg>"));
        const bool isNear = picture == path("docs/pic.png");
        const auto outcome = script("corvane_save.py", "others/in.svg", false, "docs/in.pdfpage");
        EXPECT_EQ(outcome.status, isNear ? 0 : 1) << picture << outcome.errors;
        EXPECT_EQ(bytes("in.pdf") != pdf_, isNear) << picture;
    }
}

TEST_F(AskingScripts, ThePdfIsFoundWhereItWentWithTheLink) {
    folder_.add("in.pdfpage", R"({"pdf":"in.pdf","page":2})");
    const auto opened = script("corvane_open.py", "in.pdfpage", false);
    ASSERT_TRUE(holds(opened.output, "data-folder=\"" + folder_.path().string() + "\""));
    struct Row {
        const char* what;
        std::string folder; ///< that the artwork names
        const char* file;
        bool hasLink;
        bool isSaved;
    };
    folder_.add("other.pdf", pdf_);
    for (const Row& row : {Row{"beside the document", "/no/such", "in.pdf", true, true},
                           Row{"gone", "/no/such", "gone.pdf", false, false},
                           Row{"renamed, and the link knows", "/no/such", "gone.pdf", true, true},
                           Row{"a path in the name", "/", "../../in.pdf", true, true},
                           Row{"only the drawing says it", "/no/such", "in.pdf", false, false},
                           Row{"the link says another", "/no/such", "other.pdf", true, false}}) {
        folder_.add("in.pdf", pdf_);
        if (!row.hasLink) {
            fs::remove(path("in.pdfpage"));
        } else {
            folder_.add("in.pdfpage", R"({"pdf":"in.pdf","page":2})");
        }
        std::string art =
            replaced(opened.output, folder_.path().string() + "\"", row.folder + "\"");
        art = replaced(art, "\"in.pdf\"", std::string("\"") + row.file + "\"");
        folder_.add("in.svg", replaced(art, "#b2b2b2", "#00ff00"));
        const auto outcome = script("corvane_save.py", "in.svg", false);
        EXPECT_EQ(outcome.status, row.isSaved ? 0 : 1) << row.what << outcome.errors;
        EXPECT_EQ(bytes("in.pdf") != pdf_, row.isSaved) << row.what;
        EXPECT_EQ(bytes("other.pdf"), pdf_) << row.what;
    }
}

TEST_F(AskingScripts, ADrawingAloneSavesIntoNoPdfUnasked) {
    folder_.add("in.svg", replaced(artwork("in.pdf", 2), "#b2b2b2", "#00ff00"));
    struct Row {
        const char* script;
        const char* document;
        const char* link; ///< null: none is there
        const char* answer;
        bool isSaved;
        bool isAsked;
    };
    for (const Row& row :
         {Row{"corvane_save.py", "in.svg", nullptr, "", false, true},
          Row{"corvane_save.py", "in.svg", nullptr, "yes", true, true},
          Row{"corvane_save_menu.py", "in.svg", nullptr, "", false, true},
          Row{"corvane_save.py", "in.pdfpage", nullptr, "", false, true},
          Row{"corvane_save.py", "in.pdfpage", "no link", "yes", false, false},
          Row{"corvane_save.py", "in.pdfpage", R"({"pdf":"in.pdf","page":true})", "yes", false,
              false},
          Row{"corvane_save.py", "in.pdfpage", R"({"pdf":"in.pdf"})", "", true, false}}) {
        folder_.add("in.pdf", pdf_);
        fs::remove(path("in.pdfpage"));
        if (row.link != nullptr) {
            folder_.add("in.pdfpage", row.link);
        }
        answers(row.answer);
        const auto outcome = script(row.script, "in.svg", true, row.document);
        const std::string what = std::string(row.script) + " " + row.document;
        EXPECT_EQ(bytes("in.pdf") != pdf_, row.isSaved) << what << outcome.errors;
        EXPECT_EQ(holds(bytes("asked"), "Save into " + path("in.pdf") + "?"), row.isAsked) << what;
    }
}

TEST_F(AskingScripts, PicturesAreFoundFromWhereTheirAddressCounts) {
    for (const char* const folder : {"docs", "docs/a & b", "handed"}) {
        fs::create_directory(folder_.path() / folder);
    }
    folder_.add("docs/a & b/pic.png", test::text(test::pngOf({.rows = {7}})));
    folder_.add("docs/in.pdfpage", R"({"pdf":"../in.pdf","page":2})");
    const auto opened = script("corvane_open.py", "docs/in.pdfpage", false);
    struct Row {
        const char* address;
        bool isFound;
    };
    for (const Row& row :
         {Row{"href=\"a &amp; b/pic.png\"", true},
          Row{"id=\"a>b\" href='a%20%26%20b/pic.png'", true},
          Row{"xlink:href=\"../docs/a%20%26%20b/pic.png\"", true},
          Row{"xlink:href=\"a &amp; b/pic.png\"", false}, Row{"href=\"../in.pdf\"", false}}) {
        folder_.add("in.pdf", pdf_);
        folder_.add("handed/in.svg",
                    replaced(opened.output, "</svg>",
                             std::string("<image width=\"9\" height=\"9\" ") + row.address +
                                 " xmlns:xlink=\"http://www.w3.org/1999/xlink\"/></svg>"));
        const auto outcome = script("corvane_save.py", "handed/in.svg", false, "docs/in.pdfpage");
        EXPECT_EQ(outcome.status, row.isFound ? 0 : 1) << row.address << outcome.errors;
        EXPECT_EQ(bytes("in.pdf") != pdf_, row.isFound) << row.address;
    }
}

TEST_F(AskingScripts, ALinkByWayOfALinkFindsThePdfBesideItself) {
    fs::create_directory(folder_.path() / "far");
    folder_.add("in.pdfpage", R"({"pdf":"in.pdf","page":2})");
    fs::create_symlink("../in.pdfpage", folder_.path() / "far/in.pdfpage");
    const auto opened = script("corvane_open.py", "far/in.pdfpage", false);
    EXPECT_TRUE(holds(opened.output, "data-page=\"2\"")) << opened.errors;
}

TEST_F(AskingScripts, EachProgramForDialogsIsAskedInItsWay) {
    struct Row {
        const char* tool;
        const char* option;
        const char* name; ///< of the PDF, as it is shown
    };
    folder_.add("<b>&.pdf", pdf_);
    folder_.add("in.svg", emptied(artwork("<b>&.pdf", 2)));
    folder_.add("in.pdfpage", R"({"pdf":"<b>&.pdf","page":2})");
    for (const Row& row :
         {Row{"zenity", "--default-cancel\n", "<b>&.pdf, page 2"},
          Row{"kdialog", "--warningcontinuecancel\n<qt>", "&lt;b&gt;&amp;.pdf, page 2"}}) {
        fs::remove(path("bin/zenity"));
        answers("", row.tool);
        EXPECT_EQ(script("corvane_save.py", "in.svg", true).status, 1);
        EXPECT_TRUE(holds(bytes("asked"), row.option)) << bytes("asked");
        EXPECT_TRUE(holds(bytes("asked"), row.name)) << bytes("asked");
    }
    EXPECT_EQ(bytes("<b>&.pdf"), pdf_);
}

TEST_F(AskingScripts, VariablesCountOnlyWhereNobodyIs) {
    folder_.add("in.pdfpage", R"({"pdf":"in.pdf"})");
    folder_.add("other.pdf", pdf_);
    folder_.add("in.svg", replaced(artwork("in.pdf", 2), "#b2b2b2", "#00ff00"));
    for (const bool isSeen : {true, false}) {
        answers("1");
        auto opening = scriptProcess("corvane_open.py", "in.pdfpage", isSeen);
        opening.environment.emplace_back("CORVANE_PAGE", "2");
        const std::string page = isSeen ? "1" : "2";
        EXPECT_TRUE(holds(test::run(opening).output, "data-page=\"" + page + "\""));
        auto saving = scriptProcess("corvane_save.py", "in.svg", isSeen);
        saving.environment.emplace_back("CORVANE_PDF", path("other.pdf"));
        EXPECT_EQ(test::run(saving).status, 0);
        EXPECT_EQ(bytes("other.pdf") == pdf_, isSeen);
    }
}

TEST_F(AskingScripts, AFullDiskIsToldInASentence) {
    folder_.add("in.pdfpage", R"({"pdf":"in.pdf","page":2})");
    folder_.add("in.svg", replaced(artwork("in.pdf", 2), "#b2b2b2", "#00ff00"));
    auto saving = scriptProcess("corvane_save.py", "in.svg", true);
    saving.fileSize = 1024; // less than the copy of the drawing
    const auto outcome = test::run(saving);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "corvane: File too large\n");
    EXPECT_EQ(bytes("in.pdf"), pdf_);
}

TEST_F(AskingScripts, NamesControlNoTerminalAndNoDialog) {
    const std::string name = "a\x1b[2J\n\nb.pdf";
    folder_.add("in.pdfpage", R"({"pdf":"a\u001b[2J\n\nb.pdf"})");
    const auto gone = script("corvane_open.py", "in.pdfpage", true);
    EXPECT_TRUE(holds(gone.errors, R"(a\x1b[2J\n\nb.pdf is not there)")) << gone.errors;
    folder_.add(name, pdf_);
    answers("");
    script("corvane_open.py", "in.pdfpage", true);
    EXPECT_TRUE(holds(bytes("asked"), R"(Which page of a\x1b[2J\n\nb.pdf)")) << bytes("asked");
}

} // namespace
} // namespace corvane
