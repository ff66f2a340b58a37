// The page object that a save writes: what it keeps, and its boxes.
#include "tests/writer/save_fixture.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

const std::string line = "0 0 m 9 0 l S";

/// The content that the newest update of a file holds.
std::string contentIn(const std::string& file) {
    const std::size_t at = file.rfind("stream\n", file.rfind("endstream") - 1);
    return file.substr(at, file.find("endstream", at) - at);
}

class SavedPageTest : public SaveTest {
protected:
    std::string savedPage(const std::string& entries) {
        return pageIn(saved(PdfBuilder::onePage(line, entries).bytes()));
    }
    std::vector<Point> anchors() {
        std::vector<Point> points;
        const Art path = firstPath();
        if (path != Art::null) {
            for (const Segment& segment : document_->segments(path)) {
                points.push_back(segment.anchor);
            }
        }
        return points;
    }
};

TEST_F(SavedPageTest, EntriesAreKeptInTheirOwnBytes) {
    struct Row {
        const char* entry;
        const char* kept; ///< null: as it is
    };
    for (const Row& row : {
             Row{"/Annots [7 0 R <</Rect[0 0 1.123456789 2]>>]", nullptr},
             Row{"/Annots 7 0 R", nullptr},
             Row{"/Big 12345678901234567890", nullptr},
             Row{"/Exact 0.000000123456789", nullptr},
             Row{"/Group<</S/Transparency/CS/DeviceRGB>>",
                 "/Group <</S/Transparency/CS/DeviceRGB>>\n"},
             Row{"/Str (a\\)\r\n(b)\\\\)", "/Str (a\\)\r\n(b)\\\\)\n"},
             Row{"/Hex<41 4\n2>", "/Hex <41 4\n2>\n"},
             Row{"/Name/Value", "/Name /Value\n"},
             Row{"/Odd#20Key true", "/Odd#20Key true\n"},
             Row{"/Dup 1 /Dup 2", "/Dup 2\n"},
             Row{"/Rem % a comment\n 5", "/Rem % a comment\n 5\n"},
             Row{"/Two 7 0 R /Three 3", "/Two 7 0 R\n/Three 3\n"},
             Row{"/UserUnit 2.5", nullptr},
             Row{"/Rotate 0", nullptr},
             Row{"/BleedBox[ 1 1 5 5]", "/BleedBox [ 1 1 5 5]\n"},
         }) {
        const std::string page = savedPage(row.entry);
        EXPECT_THAT(page, HasSubstr("\n" + (row.kept != nullptr ? std::string(row.kept)
                                                                : row.entry + std::string("\n"))));
    }
    const std::string page = savedPage(
        "/Thumb 9 0 R/LastModified(D:19990101000000Z)/Resources<</Font 9 0 R>>/Type/Page");
    for (const char* gone : {"Thumb", "1999", "Font", "/Contents 4 0 R"}) {
        EXPECT_THAT(page, Not(HasSubstr(gone)));
    }
    EXPECT_EQ(page.find("/Type"), page.rfind("/Type"));
}

TEST_F(SavedPageTest, NotesOfOtherProgramsAreKept) {
    const std::string other = "/Other <</LastModified(D:1)/Private 1.23456789>>\n";
    EXPECT_THAT(savedPage("/PieceInfo<</Corvane<</Private 3>>" + other + ">>"),
                HasSubstr("/PieceInfo <<\n" + other + "/Corvane <<"));
    for (const char* pieces : {"8 0 R", "9 0 R"}) {
        const std::string file = PdfBuilder::onePage(line, std::string("/PieceInfo ") + pieces)
                                     .object(8, "<<" + other + ">>")
                                     .object(9, "8 0 R")
                                     .bytes();
        EXPECT_THAT(pageIn(saved(file)), HasSubstr("/PieceInfo <<\n" + other + "/Corvane <<"));
    }
    for (const char* pieces : {"99 0 R", "null", "7", "[]"}) {
        EXPECT_THAT(savedPage(std::string("/PieceInfo ") + pieces),
                    HasSubstr("/PieceInfo <<\n/Corvane <<"));
    }
    // What nobody can read would make the page unreadable too.
    for (const char* damaged :
         {"<</Other endobj 5>>", "<</Other[<<]>>>>", "<</Other 5 endobj>>", "<</Other<</A(>>>>"}) {
        const std::string file =
            PdfBuilder::onePage(line, "/PieceInfo 8 0 R").object(8, damaged).bytes();
        EXPECT_THAT(pageIn(saved(file)), HasSubstr("/PieceInfo <<\n/Corvane <<")) << damaged;
        EXPECT_EQ(open(), 0U) << damaged;
    }
}

struct GeometryRow {
    const char* name;
    const char* page;
    const char* parent = "";
};

TEST_F(SavedPageTest, GeometryStaysAndArtworkLiesWhereItWas) {
    for (const GeometryRow& row : {
             GeometryRow{"upright", "/MediaBox[0 0 200 100]"},
             GeometryRow{"turned by 90", "/MediaBox[0 0 200 100]/Rotate 90"},
             GeometryRow{"turned by 180", "/MediaBox[0 0 200 100]/Rotate 180"},
             GeometryRow{"turned by 270", "/MediaBox[0 0 200 100]/Rotate 270"},
             GeometryRow{"turned by -90", "/MediaBox[0 0 200 100]/Rotate -90"},
             GeometryRow{"off the origin", "/MediaBox[-30 17 170 117]/CropBox[0 20 100 100]"},
             GeometryRow{"off the origin and turned", "/MediaBox[-30.5 17.25 170 117]/Rotate 90"},
             GeometryRow{"no decimal number", "/MediaBox[.33333 -0.123456 170.1 117.7]/Rotate 270"},
             GeometryRow{"corners the other way round", "/MediaBox[200 100 0 0]/Rotate 90"},
             GeometryRow{"inherited", "", "/MediaBox[-5 5 200 100]/Rotate 270/CropBox[0 9 99 50]"},
             GeometryRow{"user unit", "/MediaBox[0 0 200 100]/UserUnit 10"},
             GeometryRow{"larger than the classic limits", "/MediaBox[0 0 9000 9]"},
             GeometryRow{"no box at all", ""},
         }) {
        SCOPED_TRACE(row.name);
        const std::string file =
            PdfBuilder::onePage("20 30 m 90 60.5 l S")
                .object(2, std::string("<</Kids[3 0 R]/Count 1") + row.parent + ">>")
                .object(3,
                        std::string("<</Type/Page/Parent 2 0 R/Contents 4 0 R") + row.page + ">>")
                .bytes();
        use("in.pdf", file);
        ASSERT_EQ(open(), 0U);
        const std::uint64_t identity = identity_;
        const std::vector<Point> before = anchors();
        ASSERT_EQ(before.size(), 2U);
        edit();
        saved_.clear();
        extension_.artworkDigest = &identity;
        ASSERT_EQ(save(), 0U);
        ASSERT_EQ(saved_.size(), 1U);
        const std::string first = bytes();
        ASSERT_EQ(save(), 0U);
        extension_.artworkDigest = nullptr;
        EXPECT_EQ(contentIn(bytes()), contentIn(first));
        // Opened again it is the same, exactly.
        ASSERT_EQ(open(), 0U);
        EXPECT_EQ(anchors(), before);
        std::string page = pageIn(first.substr(file.size()));
        page.resize(page.find("/PieceInfo"));
        EXPECT_EQ(page.find("MediaBox") != std::string::npos,
                  std::string(row.page).find("MediaBox") != std::string::npos);
        EXPECT_THAT(front_.taken(), ElementsAre());
    }
}

TEST_F(SavedPageTest, ANewSizeIsWrittenAnew) {
    struct Row {
        const char* name;
        ArtboardSize size;
        Rect crop;
        const char* written;
        const char* original;
        std::vector<std::string> seen;
        std::vector<std::string> seenOriginal;
    };
    const auto points = [](int value) { return value * fixedOne; };
    const Rect none{};
    for (const Row& row : {
             Row{"usual",
                 {points(300), points(400)},
                 none,
                 "[ 212 0 612 300 ]",
                 "[ 0 0 300 400 ]",
                 {},
                 {}},
             Row{"lower than the classic limit",
                 {points(720), points(36)},
                 none,
                 "[ 576 0 612 720 ]",
                 "[ 0 0 720 72 ]",
                 {},
                 {"write 1002 in in.pdf"}},
             Row{"too small, too large",
                 {points(1), points(20000)},
                 none,
                 "[ -13788 0 612 3 ]",
                 "[ 0 0 72 3240 ]",
                 {"write 1002 in in.pdf"},
                 {"write 1002 in in.pdf"}},
         }) {
        for (const bool modern : {true, false}) {
            SCOPED_TRACE(row.name);
            modern ? extended() : original();
            use("in.pdf", PdfBuilder::onePage(line, "/Rotate 90/UserUnit 2/TrimBox[0 0 5 5]")
                              .trailer("/Root 1 0 R/Info 1 0 R")
                              .bytes());
            ASSERT_EQ(open(), 0U);
            const std::uint64_t identity = identity_;
            document_->page().setArtboard(row.size);
            document_->page().setBounds(row.crop);
            const std::size_t former = bytes().size();
            extension_.artworkDigest = &identity;
            ASSERT_EQ(save(), 0U);
            extension_.artworkDigest = nullptr;
            const std::string page = pageIn(bytes().substr(former));
            const std::string box = modern ? row.written : row.original;
            EXPECT_THAT(page, HasSubstr("\n/MediaBox " + box + "\n/CropBox " + box + "\n"));
            EXPECT_THAT(page, HasSubstr(modern ? "/Rotate 90\n" : "/Rotate 0\n"));
            EXPECT_THAT(page, Not(HasSubstr("TrimBox")));
            EXPECT_EQ(page.find("UserUnit") != std::string::npos, modern);
            EXPECT_EQ(front_.taken(), modern ? row.seen : row.seenOriginal);
        }
    }
}

/// What came from no page has the size on paper that it says, whatever the page's unit is.
TEST_F(SavedPageTest, ArtworkOfNoPageIsInPoints) {
    const auto at = [](int x, int y) { return Point{x * fixedOne, y * fixedOne}; };
    struct Row {
        const char* page;
        Point corner; ///< of the artwork
        const char* box;
        std::vector<Point> line; ///< from its lower left to that corner, opened again
    };
    for (const Row& row : {
             Row{"/MediaBox[0 0 200 100]/UserUnit 4",
                 at(800, 400),
                 "[0 0 200 100]",
                 {at(0, 0), at(200, 100)}},
             Row{"/MediaBox[0 0 200 100]/CropBox[20 10 120 60]/Rotate 90/UserUnit 4",
                 at(200, 400),
                 "[0 0 200 100]",
                 {at(10, 80), at(60, 180)}},
             Row{"/MediaBox[0 0 200 100]/UserUnit 4",
                 at(200, 100),
                 "[ 0 0 50 25 ]",
                 {at(0, 0), at(50, 25)}},
             Row{"/MediaBox[0 0 200 100]/UserUnit .5",
                 at(60, 40),
                 "[ 0 0 120 80 ]",
                 {at(0, 0), at(120, 80)}},
         }) {
        SCOPED_TRACE(row.page);
        use("in.pdf",
            PdfBuilder::onePage("20 30 m 90 60 l S")
                .object(3, std::string("<</Parent 2 0 R/Contents 4 0 R") + row.page + ">>")
                .bytes());
        ASSERT_EQ(open(), 0U);
        document_->page().setArtboard({row.corner.x, row.corner.y});
        document_->page().setBounds({0, row.corner.y, row.corner.x, 0});
        document_->writeSegments(firstPath(), 0,
                                 std::vector{Segment{}, {row.corner, row.corner, row.corner}});
        const std::size_t former = bytes().size();
        ASSERT_EQ(save(), 0U);
        EXPECT_THAT(pageIn(bytes().substr(former)),
                    HasSubstr(std::string("/MediaBox ") + row.box + "\n"));
        ASSERT_EQ(open(), 0U);
        EXPECT_EQ(anchors(), row.line);
    }
}

TEST_F(SavedPageTest, ANewSizeMovesNothing) {
    struct Row {
        const char* page;
        const char* boxes; ///< of an artboard of 300 by 400.5, cropped to 10, 20, 200, 300.25
    };
    for (const Row& row : {
             Row{"/MediaBox[0 0 200 100]", "[ 0 0 300 400.5 ]\n/CropBox [ 10 20 200 300.25 ]"},
             Row{"/MediaBox[0 0 200 100]/Rotate 90",
                 "[ -200.5 0 200 300 ]\n/CropBox [ -100.25 10 180 200 ]"},
             Row{"/MediaBox[0 0 200 100]/Rotate 180",
                 "[ -100 -300.5 200 100 ]\n/CropBox [ 0 -200.25 190 80 ]"},
             Row{"/MediaBox[0 0 200 100]/Rotate 270",
                 "[ 0 -200 400.5 100 ]\n/CropBox [ 20 -100 300.25 90 ]"},
             Row{"/MediaBox[-30.5 17.25 170 117]/CropBox[0 20 100 100]",
                 "[ -30.5 17.25 269.5 417.75 ]\n/CropBox [ -20.5 37.25 169.5 317.5 ]"},
             Row{"/MediaBox[-30.5 17.25 170 117]/Rotate 90",
                 "[ -230.5 17.25 170 317.25 ]\n/CropBox [ -130.25 27.25 150 217.25 ]"},
             Row{"/MediaBox[-30.5 17.25 170 117]/Rotate 180",
                 "[ -130 -283.5 170 117 ]\n/CropBox [ -30 -183.25 160 97 ]"},
             Row{"/MediaBox[.33333 -0.123456 170.1 117.7]/Rotate 270",
                 "[ .33333 -182.3 400.83333 117.7 ]\n/CropBox [ 20.33333 -82.3 300.58333 107.7 ]"},
             Row{"/MediaBox[40000 0 40200 100]",
                 "[ 40000 0 40300 400.5 ]\n/CropBox [ 40010 20 40200 300.25 ]"},
         }) {
        SCOPED_TRACE(row.page);
        use("in.pdf", PdfBuilder::onePage("20 30 m 90 60.5 l S")
                          .object(3, std::string("<</Parent 2 0 R/Contents 4 0 R/Annots[7 0 R]") +
                                         row.page + ">>")
                          .bytes());
        ASSERT_EQ(open(), 0U);
        const std::vector<Point> before = anchors();
        ASSERT_EQ(save(), 0U);
        const std::string unchanged = contentIn(bytes());
        const Rect bounds{10 * fixedOne, 300 * fixedOne + fixedOne / 4, 200 * fixedOne,
                          20 * fixedOne};
        document_->page().setArtboard({300 * fixedOne, 400 * fixedOne + fixedOne / 2});
        document_->page().setBounds(bounds);
        ASSERT_EQ(save(), 0U);
        EXPECT_THAT(bytes(), HasSubstr(std::string("/MediaBox ") + row.boxes + "\n"));
        // The page's own space is as before, and so is what lies in it: annotations for instance.
        EXPECT_EQ(contentIn(bytes()), unchanged);
        ASSERT_EQ(open(), 0U);
        EXPECT_EQ(anchors(), before);
        EXPECT_EQ(document_->page().bounds(), bounds);
        EXPECT_THAT(front_.taken(), ElementsAre());
    }
}

TEST_F(SavedPageTest, ANewSizeStaysThroughAllSavesOfOneArtwork) {
    for (const char* entries :
         {"/CropBox[10 10 90 90]", "/Rotate 90", "/Rotate 180/TrimBox[0 0 5 5]",
          "/MediaBox[-30.5 17.25 170 117]/Rotate 270"}) {
        SCOPED_TRACE(entries);
        use("in.pdf", PdfBuilder::onePage("20 30 m 90 60.5 l S", entries).bytes());
        ASSERT_EQ(open(), 0U);
        const std::uint64_t opened = identity_;
        extension_.artworkDigest = &opened;
        const std::vector<Point> before = anchors();
        const ArtboardSize size = document_->page().artboard();
        const Rect bounds = document_->page().bounds();
        const auto boxes = [&] {
            const std::size_t former = bytes().size();
            EXPECT_EQ(save(), 0U);
            const std::string page = pageIn(bytes().substr(former));
            const std::size_t at = page.find("/MediaBox");
            return page.substr(at, page.find("/Contents") - at);
        };
        document_->page().setArtboard({300 * fixedOne, 400 * fixedOne});
        document_->page().setBounds(
            {-50 * fixedOne, 350 * fixedOne, 250 * fixedOne, -50 * fixedOne});
        const std::string first = boxes();
        for (int i = 0; i < 2; ++i) {
            edit();
            EXPECT_EQ(boxes(), first);
        }
        const std::string file = bytes();
        EXPECT_EQ(save(), 0U);
        EXPECT_EQ(bytes(), file) << "it is as the artwork has it";
        // The former size again: the page has the boxes that it had.
        document_->page().setArtboard(size);
        document_->page().setBounds(bounds);
        EXPECT_NE(boxes(), first);
        extension_.artworkDigest = nullptr;
        ASSERT_EQ(open(), 0U);
        EXPECT_EQ(anchors(), before);
        EXPECT_EQ(document_->page().bounds(), bounds);
        EXPECT_EQ(document_->page().artboard().width, size.width);
        EXPECT_EQ(document_->page().artboard().height, size.height);
        EXPECT_THAT(front_.taken(), ElementsAre());
    }
}

TEST_F(SavedPageTest, ANewSizeEndsWhereIntegersDo) {
    use("in.pdf",
        PdfBuilder::onePage(line, "/MediaBox[2147483500 0 2147483600 100]/Rotate 0").bytes());
    ASSERT_EQ(open(), 0U);
    document_->page().setArtboard({300 * fixedOne, 400 * fixedOne});
    document_->page().setBounds({});
    ASSERT_EQ(save(), 0U);
    EXPECT_THAT(bytes(), HasSubstr("/MediaBox [ 2147483500 0 2147483647 400 ]\n"));
}

TEST_F(SavedPageTest, CropAreas) {
    struct Row {
        const char* name;
        Rect crop; ///< whole points: left, top, right, bottom
        const char* written;
        bool warns;
    };
    for (const Row& row : {
             Row{"inside", {10, 300, 200, 20}, "[ 10 20 200 300 ]", false},
             Row{"the page", {0, 400, 300, 0}, "[ 0 0 300 400 ]", false},
             Row{"empty", {10, 20, 10, 20}, "[ 0 0 300 400 ]", false},
             Row{"sticking out", {-10, 500, 200, 20}, "[ 0 20 200 400 ]", true},
             Row{"outside", {1000, 1100, 1200, 1000}, "[ 0 0 200 100 ]", true},
             Row{"outside and small", {1000, 1002, 1001, 1000}, "[ 0 0 3 3 ]", true},
         }) {
        use("in.pdf", PdfBuilder::onePage(line).bytes());
        ASSERT_EQ(open(), 0U);
        document_->page().setArtboard({300 * fixedOne, 400 * fixedOne});
        document_->page().setBounds({row.crop.left * fixedOne, row.crop.top * fixedOne,
                                     row.crop.right * fixedOne, row.crop.bottom * fixedOne});
        ASSERT_EQ(save(), 0U) << row.name;
        EXPECT_THAT(bytes(), HasSubstr(std::string("/CropBox ") + row.written)) << row.name;
        EXPECT_EQ(front_.taken().size(), row.warns ? 1U : 0U) << row.name;
    }
}

} // namespace
} // namespace corvane
