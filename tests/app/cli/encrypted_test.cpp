// Encrypted files: those that another program makes, opened and saved into with the real program.
#include "tests/app/cli/saving.h"
#include "tests/support/pdf_builder.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::holds;
using Words = std::vector<std::string>;

/// Strings wherever a save may carry them: in inherited resources, in an object of notes, in a
/// pattern, which is copied when what it fills is moved, and in a form, when what it holds is
/// changed.
std::string pageWithStrings() {
    test::PdfBuilder file;
    return file.object(1, "<< /Type /Catalog /Pages 2 0 R >>")
        .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 /Resources 5 0 R >>")
        .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 300 300] /Contents 4 0 R "
                   "/PieceInfo 8 0 R /LastModified (D:20200101000000Z) >>")
        .stream(4, "BT /F1 24 Tf 20 250 Td (Hello) Tj ET /I cs 1 sc 20 150 60 60 re f\n"
                   "/Pattern cs /P scn 1 0 0 RG 120 150 60 60 re B\n"
                   "/A gs /Fm Do")
        .object(5, "<< /Font << /F1 6 0 R >> /Pattern << /P 7 0 R >> /ColorSpace << /I [/Indexed "
                   "/DeviceRGB 1 (\\377\\000\\000\\000\\(\\377)] >> "
                   "/ExtGState << /A << /ca .5 >> >> /XObject << /Fm 9 0 R >> >>")
        .object(6, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
        .stream(7, "/I cs 1 sc 0 0 5 5 re f 0 sc 5 5 5 5 re f",
                "/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 10 10] "
                "/XStep 10 /YStep 10 /Resources << /ColorSpace << /I [/Indexed /DeviceRGB 1 "
                "<FF0000 0000FF>] >> >>")
        .stream(9, "/I cs 1 sc 100 20 20 60 re f 0 1 0 rg 20 20 60 60 re f",
                "/Type /XObject /Subtype /Form /BBox [0 0 300 300] /Resources << /ColorSpace << /I "
                "[/Indexed /DeviceRGB 1 (\\000\\000\\000\\(\\377)] >> >>")
        .object(8, "<< /Other << /LastModified (D:20200101000000Z) /Private (my notes) >> >>")
        .bytes();
}

/// Its artwork, the object with the pattern moved, and a gradient in the transparent one.
std::string edited(const std::string& svg) {
    const auto red = svg.find("stroke=\"#ff0000\"");
    EXPECT_NE(red, std::string::npos);
    std::string moved = svg;
    moved.insert(moved.rfind("<path", red) + 5, " transform=\"translate(30 20)\"");
    const std::string green = "fill=\"#00ff00\"";
    const auto at = moved.find(green);
    EXPECT_NE(at, std::string::npos);
    moved.replace(at, green.size(), "fill=\"url(#blend)\"");
    return moved.insert(moved.find('>', moved.find("<svg")) + 1,
                        "<linearGradient id=\"blend\"><stop stop-color=\"#f00\"/>"
                        "<stop offset=\"1\" stop-color=\"#00f\"/></linearGradient>");
}

class Encrypted : public Saving {
protected:
    void SetUp() override {
        if (!test::isInstalled("qpdf") || !test::isInstalled("mutool")) {
            GTEST_SKIP() << "needs qpdf and mutool";
        }
        folder_.add("plain.pdf", pageWithStrings());
    }

    test::Outcome other(Words words) const {
        test::Process process;
        words.insert(words.begin(), "/usr/bin/env");
        process.words = std::move(words);
        process.folder = folder_.path();
        return test::run(process);
    }

    void encrypt(const Words& options, const std::string& user = "user",
                 const std::string& owner = "owner") const {
        Words words{
            "qpdf", "--allow-weak-crypto", "--object-streams=" + objectStreams_, "--encrypt", user,
            owner};
        words.insert(words.end(), options.begin(), options.end());
        words.insert(words.end(), {"--", "plain.pdf", "in.pdf"});
        const auto outcome = other(words);
        ASSERT_EQ(outcome.status, 0) << outcome.errors;
    }

    std::string objectStreams_ = "disable";

    std::string opened(const std::string& pdf, const std::string& password) const {
        const auto outcome =
            run({"open", pdf, "--page", "1", "-o", "-", "--quiet", "--password", password});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        return outcome.output;
    }

    /// Saves a string of artwork; what is said on standard error.
    std::string saved(const std::string& svg, Words options) const {
        folder_.add("art.svg", svg);
        options.insert(options.begin(), {"save", "art.svg", "in.pdf"});
        return run(options).errors;
    }

    /// The file as others open it by this password is `wanted`.
    void expectSound(const std::string& password, const test::Drawing& wanted) const {
        const auto check = other({"qpdf", "--password=" + password, "--check", "in.pdf"});
        EXPECT_EQ(check.status, 0) << check.output << check.errors;
        const auto drawn =
            other({"mutool", "draw", "-q", "-p", password, "-F", "ppm", "-o", "in.ppm", "in.pdf"});
        EXPECT_EQ(drawn.status, 0);
        EXPECT_FALSE(holds(drawn.errors, "error")) << drawn.errors;
        ASSERT_EQ(
            other({"qpdf", "--qdf", "--password=" + password, "--decrypt", "in.pdf", "out.pdf"})
                .status,
            0);
        EXPECT_EQ(test::difference(test::draw(folder_.path() / "out.pdf", 1), wanted, 0), 0.0);
        EXPECT_TRUE(holds(bytes("out.pdf"), "(my notes)"));
        EXPECT_TRUE(holds(bytes("out.pdf"), "(D:20261118"));
        if (test::isInstalled("pdftotext")) {
            const std::string option = password == "owner" ? "-opw" : "-upw";
            EXPECT_EQ(other({"pdftotext", option, password, "in.pdf", "-"}).output.substr(0, 5),
                      "Hello");
        }
    }
};

TEST_F(Encrypted, EveryRevisionIsOpenedAndSavedInto) {
    folder_.add("in.pdf", bytes("plain.pdf"));
    const std::string plainArt = artwork("in.pdf", 1);
    saved(edited(plainArt), {});
    const auto wanted = test::draw(folder_.path() / "in.pdf", 1);
    for (const Words& options :
         {Words{"40"}, Words{"128", "--use-aes=n"}, Words{"128", "--use-aes=n"},
          Words{"128", "--force-V4"}, Words{"128", "--use-aes=y"},
          Words{"128", "--use-aes=y", "--cleartext-metadata"}, Words{"256", "--force-R5"},
          Words{"256"}, Words{"256", "--cleartext-metadata"}}) {
        SCOPED_TRACE(options.back());
        objectStreams_ = objectStreams_ == "disable" ? "generate" : "disable";
        encrypt(options);
        const std::string old = bytes("in.pdf");
        const std::string art = opened("in.pdf", "owner");
        EXPECT_EQ(drawing(opened("in.pdf", "user")), drawing(art));
        EXPECT_TRUE(holds(art, "fill=\"#0028ff\"")) << "a colour out of a string";
        for (const std::string password : {"user", "owner"}) {
            folder_.add("in.pdf", old);
            const std::string said = saved(edited(art), {"--password", password});
            EXPECT_TRUE(holds(said, "2 objects changed, 3 kept")) << said;
        }
        EXPECT_TRUE(bytes("in.pdf").starts_with(old));
        EXPECT_FALSE(holds(bytes("in.pdf"), "my notes"));
        EXPECT_FALSE(holds(bytes("in.pdf"), "(D:20261118")) << "our own strings, too";
        expectSound("user", wanted);
        expectSound("owner", wanted);
        EXPECT_TRUE(holds(run({"log", "in.pdf", "--password", "user"}).output, "2026-11-18"));
        // Drawn anew, uncompressed.
        std::string changed = art;
        changed.replace(changed.find("data-digest=\"") + 13, 4, "0000");
        const std::size_t text = changed.find("<text");
        changed.erase(text, changed.find("</text>") + 7 - text);
        EXPECT_TRUE(
            holds(saved(changed, {"--page", "1", "--force", "--plain", "--password", "user"}),
                  "objects)"));
        EXPECT_FALSE(holds(bytes("in.pdf"), " re f")) << "no plain content";
        EXPECT_EQ(other({"qpdf", "--password=user", "--check", "in.pdf"}).status, 0);
    }
}

TEST_F(Encrypted, WhatWasSavedAlreadyIsNotSavedAgain) {
    for (const Words& options : {Words{"40"}, Words{"128", "--use-aes=y"}, Words{"256"}}) {
        for (const std::string streams : {"disable", "generate"}) {
            SCOPED_TRACE(options[0] + streams);
            objectStreams_ = streams;
            encrypt(options);
            const std::string art = edited(opened("in.pdf", "user"));
            folder_.add("art.svg", art);
            auto saving = process({"save", "art.svg", "in.pdf", "--password", "user", "--quiet"});
            saving.environment.clear(); // without a fixed date, vectors come from chance
            const std::string old = bytes("in.pdf");
            ASSERT_EQ(test::run(saving).status, 0);
            const std::string once = bytes("in.pdf");
            EXPECT_NE(once, old);
            ASSERT_EQ(test::run(saving).status, 0);
            EXPECT_EQ(bytes("in.pdf"), once);
            folder_.add("art.svg", opened("in.pdf", "user"));
            ASSERT_EQ(test::run(saving).status, 0);
            EXPECT_EQ(bytes("in.pdf"), once) << "the page as it stands";
            folder_.add("art.svg", replaced(art, "translate(30 20)", "translate(31 20)"));
            ASSERT_EQ(test::run(saving).status, 0);
            EXPECT_NE(bytes("in.pdf"), once);
        }
    }
}

TEST_F(Encrypted, Passwords) {
    struct Row {
        std::string user;
        std::string owner;
        Words options;
        std::string given;
        bool opens;
    };
    const std::string longest(127, 'p');
    for (const Row& row : {
             Row{"", "owner", {"256"}, "wrong", true},
             Row{"", "owner", {"40"}, "", true},
             Row{"user", "owner", {"256"}, "User", false},
             Row{"user", "owner", {"40"}, "", false},
             Row{longest, "o", {"256"}, longest, true},
             Row{longest, "o", {"256"}, longest + "more", true},
             Row{longest, "o", {"256"}, longest.substr(1), false},
             Row{longest, "o", {"128", "--use-aes=y"}, longest.substr(0, 32), true},
             Row{longest, "o", {"128", "--use-aes=y"}, longest.substr(0, 31), false},
             Row{"пароль 密码", "o", {"256"}, "пароль 密码", true},
             // As SASLprep has it, and as programs write it that do not know of that.
             Row{"IX \u00E9", "o", {"256"}, "\u2168\u2003\u00ADe\u0301", true},
             Row{"\u2168e\u0301", "o", {"256"}, "\u2168e\u0301", true},
             Row{"IX", "o", {"256"}, "ix", false},
             Row{"o", "\u00AD", {"256"}, "\u00AD", true},
             Row{std::string(125, 'p') + "\u00E9",
                 "o",
                 {"256"},
                 std::string(125, 'p') + "e\u0301",
                 true},
             Row{"Grüße – €", "o", {"128", "--use-aes=y"}, "Grüße – €", true},
             Row{"user", "Ægir", {"40"}, "Ægir", true},
         }) {
        SCOPED_TRACE(row.user + " " + row.given);
        encrypt(row.options, row.user, row.owner);
        auto opening = process({"open", "in.pdf", "-o", "-", "--quiet"});
        opening.environment.emplace_back("CORVANE_PASSWORD", row.given);
        const auto outcome = test::run(opening);
        EXPECT_EQ(outcome.status, row.opens ? 0 : 1) << outcome.errors;
        EXPECT_EQ(holds(outcome.errors, "error 7: that is not a password"), !row.opens);
    }
}

TEST_F(Encrypted, WherePasswordsComeFrom) {
    encrypt({"256"});
    folder_.add("word", "user\r\nother\n");
    EXPECT_EQ(run({"check", "in.pdf", "--password-file", "word"}).status, 0);
    auto piped = process({"check", "in.pdf", "--password-file", "-"});
    piped.input = "owner";
    EXPECT_EQ(test::run(piped).status, 0);
    EXPECT_TRUE(holds(run({"check", "in.pdf"}).output + run({"open", "in.pdf"}).errors,
                      "error 7: the file is encrypted and needs a password"));
    EXPECT_TRUE(holds(run({"open", "in.pdf", "--password-file", "none"}).errors, "error 18"));
    EXPECT_TRUE(holds(run({"open", "in.pdf", "--password", "user", "--profile", "original"}).errors,
                      "error 7: the file is encrypted;"));
    EXPECT_EQ(run({"save", "-", "in.pdf", "--password-file", "-"}).status, 2);

    auto asked = process({"open", "in.pdf", "-o", "a.svg"});
    asked.onTerminal = true;
    asked.input = "wrong\nuser\n";
    const auto opened = test::run(asked);
    EXPECT_EQ(opened.status, 0) << opened.errors;
    EXPECT_TRUE(holds(opened.errors, "That is not its password")) << opened.errors;
    asked.input = "1\n2\n3\nuser\n";
    asked.words.back() = "b.svg";
    EXPECT_TRUE(holds(test::run(asked).errors, "error 7: that is not a password"));
    asked.input.clear();
    asked.interruptOn = "Its password:";
    EXPECT_EQ(test::run(asked).status, 130);
}

TEST_F(Encrypted, ChangesThatAreNotPermittedAreRefused) {
    encrypt({"256", "--modify=annotate"}, "");
    const std::string old = bytes("in.pdf");
    const std::string art = edited(opened("in.pdf", "x"));
    for (const Words& options : {Words{}, Words{"--force"}, Words{"--dry-run"}}) {
        EXPECT_TRUE(holds(saved(art, options), "error 32: the owner of this encrypted file"));
    }
    EXPECT_EQ(bytes("in.pdf"), old);
    EXPECT_TRUE(holds(saved(art, {"--password", "owner"}), "2 objects changed"));
}

TEST_F(Encrypted, PermissionsCountAsFarAsTheKeyProvesThem) {
    for (const std::string what : {"nothing", "P", "Perms"}) {
        SCOPED_TRACE(what);
        encrypt({"256", what == "P" ? "--modify=annotate" : "--modify=all"}, "");
        std::string file = bytes("in.pdf");
        if (what == "Perms") {
            file = replaced(file, "/Perms", "/Perm_");
        } else if (what == "P") {
            const auto at = file.find("/P -") + 4;
            const auto end = file.find_first_not_of("0123456789", at);
            file.replace(at, end - at, std::string(end - at - 1, '0') + "4");
        }
        folder_.add("in.pdf", file);
        const std::string art = edited(opened("in.pdf", "x"));
        const std::string said = saved(art, {});
        EXPECT_EQ(holds(said, "error 32"), what != "nothing") << said;
        const std::string kept = saved(art, {"--password", "owner"});
        EXPECT_TRUE(holds(kept, what == "nothing" ? "nothing to save" : "3 kept")) << kept;
    }
}

TEST_F(Encrypted, AFixedDateGivesTheSameBytes) {
    for (const Words& options : {Words{"128", "--use-aes=y"}, Words{"256"}}) {
        encrypt(options);
        folder_.add("copy.pdf", bytes("in.pdf"));
        const std::string art = edited(opened("in.pdf", "user"));
        saved(art, {"--password", "user"});
        const std::string once = bytes("in.pdf");
        EXPECT_GT(once.size(), bytes("copy.pdf").size());
        folder_.add("in.pdf", bytes("copy.pdf"));
        saved(art, {"--password", "user"});
        EXPECT_EQ(bytes("in.pdf"), once);
    }
}

} // namespace
} // namespace corvane
