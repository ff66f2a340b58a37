// Where `open` leaves the images of a page, and where `save` takes them from.
#include "tests/app/cli/fake_program.h"
#include "tests/app/images/png_images.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <sys/stat.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::holds;
using Names = std::vector<std::string>;

class OpenImages : public FakeProgram {
protected:
    Names namesIn(const std::string& name) const {
        Names names;
        for (const auto& entry : fs::directory_iterator(folder_.path() / name)) {
            names.push_back(entry.path().filename());
        }
        std::ranges::sort(names);
        return names;
    }
    std::string bytes(const std::string& name) const {
        return test::fileBytes(folder_.path() / name);
    }
};

TEST_F(OpenImages, AreFilesBesideTheArtworkWrittenOnce) {
    const std::vector<std::string> words{"open", "in.pdf", "-o", "a b.svg"};
    const auto first = run("images=2", words);
    EXPECT_EQ(first.status, 0) << first.errors;
    EXPECT_TRUE(holds(first.errors, "2 images are in a b-images\n")) << first.errors;
    EXPECT_EQ(namesIn("a b-images"), (Names{"10-abcdef.png", "11-abcdef.jpg"}));
    const std::string svg = bytes("a b.svg");
    EXPECT_TRUE(holds(svg, "xlink:href=\"a%20b-images/10-abcdef.png\"")) << svg;
    EXPECT_EQ(bytes("a b-images/11-abcdef.jpg"), "pppppp");

    // A second opening finds them, and writes nothing.
    const fs::path png = folder_.path() / "a b-images/10-abcdef.png";
    const fs::path jpeg = folder_.path() / "a b-images/11-abcdef.jpg";
    const auto old = fs::file_time_type() + std::chrono::hours(1);
    fs::last_write_time(png, old);
    fs::last_write_time(jpeg, old);
    std::vector<std::string> facts = words;
    facts.emplace_back("--json");
    const auto second = run("images=2", facts);
    EXPECT_TRUE(holds(second.output, R"("images":{"folder":"a b-images","written":0,"found":2})"))
        << second.output;
    EXPECT_EQ(bytes("a b.svg"), svg);
    EXPECT_EQ(fs::last_write_time(png), old);
    EXPECT_EQ(fs::last_write_time(jpeg), old);

    // What was retouched stays, and is no image of the page any more; an empty file is replaced.
    folder_.add("a b-images/11-abcdef.jpg", "retouched");
    folder_.add("a b-images/10-abcdef.png", "");
    const auto third = run("images=2", words);
    EXPECT_TRUE(holds(third.errors, "1 image there was changed")) << third.errors;
    EXPECT_EQ(bytes("a b-images/11-abcdef.jpg"), "retouched");
    EXPECT_EQ(bytes("a b.svg"), svg) << "its digest is that of the page's image";
    folder_.add("a b-images/10-abcdef.png", "retouched");
    run("images=2", words);
    EXPECT_TRUE(holds(bytes("a b.svg"), "data-image=\"10-abcdef\" xlink")) << bytes("a b.svg");
}

TEST_F(OpenImages, GoWhereThePersonSays) {
    fs::create_directories(folder_.path() / "art");
    const auto apart =
        run("images=1", {"open", "in.pdf", "-o", "art/a.svg", "--images", "my%pictures"});
    EXPECT_EQ(apart.status, 0) << apart.errors;
    EXPECT_TRUE(holds(bytes("art/a.svg"), "\"../my%25pictures/10-abcdef.png\""));
    EXPECT_EQ(namesIn("my%pictures").size(), 1U);
    const auto out = run("images=1", {"open", "in.pdf", "-o", "-", "--images", "other"});
    EXPECT_TRUE(holds(out.output, "\"other/10-abcdef.png\""));

    fs::remove_all(folder_.path() / "art");
    for (const Names& words : {Names{"open", "in.pdf", "-o", "-"},
                               Names{"open", "in.pdf", "-o", "-", "--images=embed"}}) {
        EXPECT_TRUE(
            holds(run("images=1", words).output, "xlink:href=\"data:image/png;base64,iVBOR"));
    }
    const auto none = run("images=1", {"open", "in.pdf", "-o", "c.svg", "--images", "none"});
    EXPECT_TRUE(holds(bytes("c.svg"), "data-kept=\"2 2 10-abcdef\""));
    run("images=0", {"open", "in.pdf", "-o", "d.svg"});
    EXPECT_EQ(folder_.names(), (Names{"c.svg", "d.svg", "in.pdf", "my%pictures", "other"}));
}

TEST_F(OpenImages, NeverGoThroughLinksAndPipes) {
    fs::create_directories(folder_.path() / "a-images");
    folder_.add("victim", "");
    const fs::path png = folder_.path() / "a-images/10-abcdef.png";
    const auto refuses = [&](const char* what) {
        const auto outcome = run("images=1", {"open", "in.pdf", "-o", "a.svg"});
        EXPECT_EQ(outcome.status, 1) << what;
        EXPECT_TRUE(holds(outcome.errors, "error 18: a-images/10-abcdef.png is no regular file"))
            << what << outcome.errors;
        fs::remove(png);
    };
    fs::create_symlink("../victim", png);
    refuses("a link to an empty file");
    fs::create_symlink("../nowhere", png);
    refuses("a link to nothing");
    ASSERT_EQ(mkfifo(png.c_str(), 0600), 0);
    refuses("a pipe");
    EXPECT_EQ(bytes("victim"), "");
    EXPECT_FALSE(fs::exists(folder_.path() / "nowhere"));
}

TEST_F(OpenImages, LeaveNothingWhereOpeningFails) {
    const auto missing = run("images=2", {"open", "in.pdf", "-o", "a.svg", "--images", "no/where"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(holds(missing.errors, "error 18: no/where cannot be written")) << missing.errors;
    EXPECT_EQ(run("images=2 unfinished", {"open", "in.pdf", "-o", "a.svg"}).status, 1);
    EXPECT_EQ(run("images=2 error@4=7", {"open", "in.pdf", "-o", "a.svg"}).status, 1);
    folder_.add("a-images", "a file");
    const auto taken = run("images=1", {"open", "in.pdf", "-o", "a.svg"});
    EXPECT_EQ(taken.status, 1);
    EXPECT_TRUE(holds(taken.errors, "cannot be written")) << taken.errors;
    EXPECT_EQ(folder_.names(), (Names{"a-images", "in.pdf"}));
}

TEST_F(OpenImages, AreTakenFromAllowedFoldersWhenSaved) {
    const std::string png = test::text(test::pngOf({1, 1, 0, 8, {7}}));
    fs::create_directories(folder_.path() / "art");
    folder_.add("outside.png", png);
    folder_.add("art/inside.png", png);
    const auto save = [&](const std::string& address, std::vector<std::string> more) {
        folder_.add("art/a.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>"
                                 "<image href='" +
                                     address + "' width='4' height='4'/></svg>");
        std::vector<std::string> words{"save", "art/a.svg", "in.pdf", "--page=1", "--force"};
        words.insert(words.end(), more.begin(), more.end());
        return run("", words);
    };
    EXPECT_EQ(save("inside.png", {}).status, 0);
    EXPECT_EQ(save("../outside.png", {"--images", "."}).status, 0);
    EXPECT_EQ(save("../outside.png", {"--allow-files"}).status, 0);
    const auto refused = save("../outside.png", {});
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(holds(refused.errors,
                      "error 27: the artwork in art/a.svg cannot be read (line 1: the "
                      "image ../outside.png lies outside"))
        << refused.errors;
    EXPECT_TRUE(holds(save("gone.png", {}).errors, "the image gone.png cannot be read"));
    EXPECT_TRUE(
        holds(save("http://h/x.png", {}).errors, "image: 1 element ignored (http://h/x.png)"));
}

} // namespace
} // namespace corvane
