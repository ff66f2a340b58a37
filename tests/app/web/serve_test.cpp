// What the page does is what the command line does.
#include "tests/app/cli/saving.h"
#include "tests/app/web/served.h"
#include "tests/support/pdf_builder.h"

#include <gtest/gtest.h>
#include <regex>

namespace corvane {
namespace {

using test::holds;
using test::JsonValue;
using test::Reply;
using test::Served;

const Served::Environment fixedDate{{"SOURCE_DATE_EPOCH", "1795000000"}};

class Serve : public Saving {
protected:
    static std::string member(const Reply& reply, const std::string& name) {
        const JsonValue object = reply.json();
        const JsonValue* const value = object.find(name);
        return value == nullptr                          ? "none"
               : value->kind == JsonValue::Kind::boolean ? (value->truth ? "true" : "false")
                                                         : value->text;
    }
};

TEST_F(Serve, PagesAreOpenedSavedAndTakenBack) {
    const std::string original = example("two-pages.pdf");
    folder_.add("a.pdf", original);
    folder_.add("b.pdf", original);
    const Served served(folder_.path(), {"a.pdf"}, fixedDate);
    EXPECT_EQ(member(served.get("/api/files/1"), "pageCount"), "2");

    const std::string svg = served.opened(2);
    ASSERT_TRUE(holds(svg, "<svg")) << svg;
    const std::string page = "/api/files/1/pages/2/";
    EXPECT_EQ(member(served.post(page + "trial", svg), "nothing"), "true");
    const Reply refused = served.post("/api/files/1/pages/1/trial", withLine(svg));
    EXPECT_EQ(refused.status, 200);
    EXPECT_EQ(refused.error(), 21) << "the artwork is that of another page";
    const Reply trial = served.post(page + "trial", withLine(svg));
    EXPECT_EQ(member(trial, "added"), "1") << trial.body;
    EXPECT_EQ(bytes("a.pdf"), original) << "a trial changes nothing";
    const std::string before = served.get(page + "picture").body;

    const Reply saved = served.post(page + "save", withLine(svg));
    EXPECT_EQ(saved.error(), 0) << saved.body;
    EXPECT_EQ(member(saved, "length"), std::to_string(bytes("a.pdf").size()));
    folder_.add("b.svg", withLine(svg));
    ASSERT_EQ(run({"save", "b.svg", "b.pdf"}).status, 0);
    EXPECT_EQ(bytes("a.pdf"), bytes("b.pdf")) << "the command line saves the same bytes";

    const std::string after = served.get(page + "picture").body;
    const auto paths = [](const std::string& text) {
        const std::regex path("<path");
        return std::distance(std::sregex_iterator(text.begin(), text.end(), path), {});
    };
    EXPECT_EQ(paths(after), paths(before) + 1);
    EXPECT_EQ(paths(served.get(page + "picture?update=0").body), paths(before));
    EXPECT_EQ(paths(served.get(page + "picture?update=1").body), paths(after));
    EXPECT_EQ(served.get(page + "picture?update=2").status, 404);

    EXPECT_EQ(served.get("/api/files/1/log").json().find("updates")->items.size(), 2U);
    EXPECT_EQ(served.post("/api/files/1/revert").error(), 0);
    EXPECT_EQ(bytes("a.pdf"), original);
    EXPECT_EQ(paths(served.get(page + "picture").body), paths(before)) << "not the one kept";
    EXPECT_NE(served.post("/api/files/1/revert").error(), 0);
}

TEST_F(Serve, TheSecondOfTwoTabsIsRefused) {
    folder_.add("a.pdf", example("two-pages.pdf"));
    const Served served(folder_.path(), {"a.pdf"});
    const std::string one = withLine(served.opened(1));
    const std::string other = replaced(withLine(served.opened(1)), "M1 1H3", "M1 2H3");
    const std::string save = "/api/files/1/pages/1/save";
    EXPECT_EQ(served.post(save, one).error(), 0);
    const Reply second = served.post(save, other);
    EXPECT_EQ(second.status, 200);
    EXPECT_EQ(second.error(), 29) << second.body;
    EXPECT_EQ(served.post(save, one).error(), 0) << "the first goes on";
    EXPECT_EQ(served.post(save + "?force=yes", other).error(), 0);
}

TEST_F(Serve, AFileThatIsNotAsTheTrialFoundItIsLeftAlone) {
    folder_.add("a.pdf", example("two-pages.pdf"));
    const Served served(folder_.path(), {"a.pdf"});
    const std::string svg = withLine(served.opened(1));
    const std::string save = "/api/files/1/pages/1/save?size=";
    const std::string length = std::to_string(bytes("a.pdf").size());
    EXPECT_EQ(served.post(save + std::to_string(bytes("a.pdf").size() - 1), svg).error(), 24);
    EXPECT_EQ(bytes("a.pdf"), example("two-pages.pdf"));
    EXPECT_EQ(served.post(save + length, svg).error(), 0);
    EXPECT_EQ(served.post(save + length, svg).error(), 24) << "it was saved once";
    const std::string saved = bytes("a.pdf");
    EXPECT_EQ(served.post("/api/files/1/revert?size=" + length).error(), 24);
    EXPECT_EQ(bytes("a.pdf"), saved);
    EXPECT_EQ(served.post("/api/files/1/revert?size=" + std::to_string(saved.size())).error(), 0);
    EXPECT_EQ(bytes("a.pdf"), example("two-pages.pdf"));
    std::filesystem::remove(folder_.path() / "a.pdf");
    for (const std::string& path : {save + length, std::string("/api/files/1/pages/1/save"),
                                    std::string("/api/files/1/pages/1/trial")}) {
        EXPECT_EQ(served.post(path, svg).error(), 19) << path;
    }
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "a.pdf")) << "none is made";
}

TEST_F(Serve, APageOfAnotherStartIsRefused) {
    folder_.add("a.pdf", example("two-pages.pdf"));
    const Served served(folder_.path(), {"a.pdf"});
    const JsonValue list = served.get("/api/files").json();
    const JsonValue* const start = list.find("start");
    ASSERT_NE(start, nullptr);
    const auto header = [](const std::string& token) { return "Corvane-Start: " + token + "\r\n"; };
    EXPECT_EQ(served.get("/api/files/1", header(start->text)).status, 200);
    EXPECT_EQ(served.get("/api/files/1", header(std::string(32, '0'))).status, 401);
    EXPECT_EQ(served.post("/api/alive", "", header("0")).status, 401);
}

TEST_F(Serve, WhatCannotBeDoneIsSaidAsTheCommandLineSaysIt) {
    folder_.add("a.pdf", example("two-pages.pdf"));
    folder_.add("no.pdf", "no PDF at all");
    folder_.add("broken.pdf", replaced(example("two-pages.pdf"), "startxref", "startxxxx"));
    const Served served(folder_.path(), {"a.pdf", "no.pdf", "broken.pdf"});
    struct Row {
        std::string path;
        std::string body;
        int status;
        int code;
    };
    for (const Row& row : {
             Row{"/api/files/1/pages/1/save", "no artwork", 200, 27},
             Row{"/api/files/1/pages/1/save", "", 200, 27},
             Row{"/api/files/1/pages/9/save", "<svg xmlns='http://www.w3.org/2000/svg'/>", 200, 15},
             Row{"/api/files/2/pages/1/trial", "<svg xmlns='http://www.w3.org/2000/svg'/>", 200,
                 20},
         }) {
        const Reply reply = served.post(row.path, row.body);
        EXPECT_EQ(reply.status, row.status) << row.path << reply.body;
        EXPECT_EQ(reply.error(), row.code) << row.path << reply.body;
    }
    const Reply info = served.get("/api/files/2");
    EXPECT_EQ(info.status, 200);
    EXPECT_EQ(info.error(), 20) << info.body;
    EXPECT_EQ(served.get("/api/files/2/pages/1/picture").status, 422);
    const Reply open = served.post("/api/files/2/pages/1/open");
    EXPECT_EQ(open.status, 200);
    EXPECT_TRUE(open.body.starts_with("{\"artwork\":null,\"report\":{\"command\":\"open\""));
    EXPECT_TRUE(holds(open.body, "\"code\":20"));

    const std::string svg = served
                                .raw("GET /api/artworks/" + std::string(32, '0') + " HTTP/1.1\r\n" +
                                     served.host() + served.cookie() + "\r\n")
                                .body;
    EXPECT_TRUE(holds(svg, "no such artwork"));
    std::string damaged;
    {
        const JsonValue opening = served.post("/api/files/3/pages/1/open").json();
        damaged = served.get("/api/artworks/" + opening.find("artwork")->text).body;
    }
    const std::string mend = "/api/files/3/pages/1/trial";
    EXPECT_NE(served.post(mend, withLine(damaged)).error(), 0)
        << "a repaired file is not saved into";
    EXPECT_EQ(served.post(mend + "?mend=yes", withLine(damaged)).error(), 0);
}

TEST_F(Serve, AFoldersFilesAreThoseThatAreThere) {
    std::filesystem::create_directory(folder_.path() / "deep");
    folder_.add("b.PDF", example("harbour.pdf"));
    folder_.add("a \"1\".pdf", example("two-pages.pdf"));
    folder_.add("notes.txt", "no PDF");
    folder_.add("deep/c.pdf", example("harbour.pdf"));
    const Served served(folder_.path(), {".", "deep/c.pdf"});
    const auto names = [&] {
        std::string text;
        const JsonValue list = served.get("/api/files").json();
        for (const JsonValue& file : list.find("files")->items) {
            text += file.find("id")->text + " " + file.find("name")->text + "; ";
        }
        return text;
    };
    EXPECT_EQ(names(), "1 a \"1\".pdf; 2 b.PDF; 3 c.pdf; ");
    EXPECT_EQ(served.get("/api/files/4").status, 404);
    folder_.add("a.pdf", example("harbour.pdf"));
    folder_.add("c.pdf", example("two-pages.pdf"));
    std::filesystem::remove(folder_.path() / "b.PDF");
    EXPECT_EQ(names(), "1 a \"1\".pdf; 4 a.pdf; 5 ./c.pdf; 3 deep/c.pdf; ")
        << "numbers stay, and files of one name are told apart";
    EXPECT_EQ(member(served.get("/api/files/5"), "pageCount"), "2");
    EXPECT_EQ(served.get("/api/files/2").error(), 19);

    for (const Served::Words& words : {Served::Words{"none.pdf"}, {"deep/d"}, {}}) {
        auto command = process({"serve", "--no-browser"});
        command.words.insert(command.words.end(), words.begin(), words.end());
        EXPECT_NE(test::run(command).status, 0);
    }
    std::filesystem::create_directory(folder_.path() / "empty");
    EXPECT_TRUE(holds(run({"serve", "empty"}).errors, "no PDF in the folder"));
}

TEST_F(Serve, PagesOwnPicturesAreThoseThatCanBeRead) {
    test::PdfBuilder file;
    file.object(1, "<< /Pages 2 0 R >>")
        .object(2, "<< /Kids [3 0 R 4 0 R 5 0 R] /Count 3 /MediaBox [0 0 200 100] >>")
        .object(3, "<< /Type /Page /Parent 2 0 R /Thumb 6 0 R >>")
        .object(4, "<< /Type /Page /Parent 2 0 R >>")
        .object(5, "<< /Type /Page /Parent 2 0 R /Thumb 7 0 R >>")
        .stream(6, "abcdef", "/Width 2 /Height 1 /BitsPerComponent 8 /ColorSpace /DeviceRGB")
        .stream(7, "x", "/Width 99999 /Height 99999 /BitsPerComponent 8 /ColorSpace /DeviceRGB");
    folder_.add("a.pdf", file.bytes());
    const Served served(folder_.path(), {"a.pdf"});
    const std::string pages = "/api/files/1/pages/";
    const Reply picture = served.get(pages + "1/thumbnail");
    EXPECT_EQ(picture.status, 200);
    EXPECT_TRUE(picture.body.starts_with("\x89PNG")) << picture.head;
    EXPECT_EQ(served.get(pages + "2/thumbnail").status, 422) << "it has none";
    EXPECT_EQ(served.get(pages + "3/thumbnail").status, 422) << "too large";
    EXPECT_EQ(served.get(pages + "4/thumbnail").status, 422) << "no such page";
    const JsonValue info = served.get("/api/files/1").json();
    const auto& listed = info.find("pages")->items;
    ASSERT_EQ(listed.size(), 3U);
    EXPECT_NE(listed[0].find("thumbnail"), nullptr);
    EXPECT_EQ(listed[1].find("thumbnail"), nullptr);
}

TEST_F(Serve, PasswordsComeWithRequests) {
    if (!test::isInstalled("qpdf")) {
        GTEST_SKIP() << "needs qpdf";
    }
    folder_.add("plain.pdf", example("two-pages.pdf"));
    test::Process locking;
    locking.words = {"/usr/bin/env", "qpdf", "--encrypt", "w\u00f6rd %41+", "owner",
                     "256",          "--",   "plain.pdf", "a.pdf"};
    locking.folder = folder_.path();
    ASSERT_EQ(test::run(locking).status, 0);
    const std::string right = "Corvane-Password: w%C3%B6rd%20%2541%2B\r\n";
    const std::string page = "/api/files/1/pages/1/";
    const Served served(folder_.path(), {"a.pdf"});
    EXPECT_EQ(served.get("/api/files/1").error(), 7);
    EXPECT_EQ(served.get("/api/files/1", "Corvane-Password: wrong\r\n").error(), 7);
    EXPECT_EQ(served.get("/api/files/1", right).error(), 0);
    EXPECT_EQ(served.get(page + "picture", right).status, 200);
    EXPECT_EQ(served.get(page + "picture?update=0", right).status, 200);
    const JsonValue opening = served.post(page + "open", "", right).json();
    const std::string svg = served.get("/api/artworks/" + opening.find("artwork")->text).body;
    EXPECT_EQ(served.post(page + "save", withLine(svg), right).error(), 0);
    const std::string longest = "Corvane-Password: " + std::string(7000, 'x') + "\r\n";
    EXPECT_EQ(served.get("/api/files/1", longest).error(), 7);

    folder_.add("word", "owner\n");
    const Served stated(folder_.path(), {"a.pdf", "--password-file", "word"});
    EXPECT_EQ(stated.get("/api/files/1").error(), 0) << "the one given at the start";
    EXPECT_EQ(stated.get("/api/files/1", "Corvane-Password: wrong\r\n").error(), 7);
}

TEST_F(Serve, ThePageIsCompiledInOrComesFromAFolder) {
    folder_.add("a.pdf", example("two-pages.pdf"));
    Served served(folder_.path(), {"a.pdf"});
    const Reply script = served.get("/app.js");
    EXPECT_TRUE(holds(script.head, "text/javascript"));
    EXPECT_EQ(script.body, test::fileBytes(test::buildFolder() / "web-bundle" / "app.js"));
    EXPECT_TRUE(holds(served.get("/").body, "src=\"/app.js\""));
    EXPECT_TRUE(holds(served.get("/app.css").head, "text/css"));
    EXPECT_EQ(served.end(), 0);

    folder_.add("app.js", "mine");
    const Served other(folder_.path(), {"a.pdf"}, {{"CORVANE_WEB_FOLDER", folder_.path()}});
    EXPECT_EQ(other.get("/app.js").body, "mine");
    EXPECT_EQ(other.get("/app.css").status, 404);
}

} // namespace
} // namespace corvane
