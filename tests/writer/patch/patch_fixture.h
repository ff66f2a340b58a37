// A host that opens a page, edits its artwork as an editor would, and saves it as patches.
#pragma once

#include "runtime/fixed.h"
#include "tests/writer/patch/seen_artwork.h"
#include "tests/writer/save_fixture.h"

#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

/// Edits of a document. Objects are numbered from the back.
class Artist {
public:
    explicit Artist(Document& edited) : document(edited) {
        const test::SeenList list(document);
        objects = list.objects;
        clips = list.clips;
        texts = list.texts;
    }

    Art at(std::size_t index) const { return objects.at(index); }
    void raise(Art art, Art over) { document.reorder(art, Placement::inFront, over); }
    void lower(Art art, Art under) { document.reorder(art, Placement::behind, under); }
    void remove(Art art) { document.dispose(art); }
    Art copy(Art art, double dx = 0, double dy = 0) {
        const Art twin = document.duplicate(art, Placement::inFront, art);
        move(twin, dx, dy);
        return twin;
    }
    void move(Art art, double dx, double dy) {
        if (document.kind(art) != ArtKind::path) {
            for (Art child = document.firstChild(art); child != Art::null;
                 child = document.nextSibling(child)) {
                move(child, dx, dy);
            }
            return;
        }
        const auto shift = [&](Point& point) {
            point.x += fixedFromReal(dx);
            point.y += fixedFromReal(dy);
        };
        const Segments old = document.segments(art);
        std::vector<Segment> segments(old.begin(), old.end());
        for (Segment& segment : segments) {
            shift(segment.anchor);
            shift(segment.in);
            shift(segment.out);
        }
        document.writeSegments(art, 0, segments);
    }
    template <class Change>
    void style(Art art, Change change) {
        const auto apply = [&](Art path) {
            PathStyle style = document.style(path);
            change(style);
            document.setStyle(path, style);
        };
        if (document.kind(art) == ArtKind::path) {
            return apply(art);
        }
        for (Art path = document.firstChild(art); path != Art::null;
             path = document.nextSibling(path)) {
            apply(path);
        }
    }
    void fill(Art art, double black) {
        style(art, [&](PathStyle& style) {
            style.fillPaint = 1;
            style.fill = {};
            style.fill.component[0] = fixedFromReal(black);
        });
    }
    /// A rectangle in front of `over`, which may be null, filled with gray.
    Art add(double x, double y, double width, double height, Art over = Art::null) {
        const bool isTop = over == Art::null;
        const Art path =
            document.make(ArtKind::path, isTop ? Placement::inside : Placement::inFront,
                          isTop ? document.layerArt(document.firstLayer()) : over);
        std::vector<Segment> segments;
        for (const auto& [dx, dy] :
             {std::pair(0.0, 0.0), {width, 0.0}, {width, height}, {0.0, height}}) {
            const Point corner{fixedFromReal(x + dx), fixedFromReal(y + dy)};
            segments.push_back({corner, corner, corner, 1});
        }
        document.setSegmentCount(path, 4);
        document.writeSegments(path, 0, segments);
        document.setClosed(path, true);
        fill(path, 0.25);
        return path;
    }
    Art group(std::vector<Art> members) {
        const Art group = document.make(ArtKind::group, Placement::inFront, members.back());
        for (const Art member : members) {
            document.reorder(member, Placement::inside, group);
        }
        return group;
    }
    /// A group that clips to the path, which is in front of its members.
    Art clip(std::vector<Art> members, Art path) {
        const Art made = group(members);
        style(path, [](PathStyle& style) {
            style.clip = 1;
            style.fillPaint = 0;
        });
        document.reorder(path, Placement::inside, made);
        document.setClipped(made, true);
        return made;
    }
    /// The clip goes; what it clipped stays.
    void release(Art group) {
        document.setClipped(group, false);
        document.dispose(document.firstChild(group));
    }

    Document& document;
    std::vector<Art> objects;
    std::vector<Art> clips;
    std::int32_t texts = 0; ///< runs of text
};

class PatchTest : public SaveTest {
protected:
    void SetUp() override {
        SaveTest::SetUp();
        extension_.plainContent = true;
        extension_.artworkDigest = &digest_;
        extension_.artworkName = &name_;
        extension_.missing = [](void* context, const MissingArt& art) {
            static_cast<PatchTest*>(context)->missing_.push_back(art);
        };
    }

    /// Opens a page with resources for all that the tests draw.
    void openPage(std::string_view content, std::string_view entries = "") {
        openFile(withResources(
                     PdfBuilder::onePage(content, std::string(resources) + std::string(entries)))
                     .bytes());
    }
    /// Streams 10, 11, ... are the page's content.
    void openStreams(const std::vector<std::string>& streams) {
        PdfBuilder file = withResources(PdfBuilder());
        std::string contents;
        int number = 10;
        for (const std::string& stream : streams) {
            file.stream(number, stream);
            contents += std::to_string(number++) + " 0 R ";
        }
        file.object(1, "<< /Type /Catalog /Pages 2 0 R >>")
            .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>")
            .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Contents [" +
                           contents + "] " + std::string(resources) + " >>");
        openFile(file.bytes());
    }
    void openFile(const std::string& file) {
        use("in.pdf", file);
        file_ = file;
        ASSERT_EQ(open(), 0U);
        front_.taken();
        digest_ = identity_;
    }

    Artist artist() { return Artist(*document_); }
    std::vector<test::SeenPath> seen() { return test::SeenList(*document_).paths; }

    /// Saves, opens again, and compares with the artwork.
    void expectSaved(test::SeenTolerance tolerance = {}) {
        const std::vector<test::SeenPath> edited = seen();
        ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
        ASSERT_EQ(bytes().substr(0, file_.size()), file_);
        ASSERT_TRUE(saved_.back().isPatched);
        ASSERT_EQ(open(), 0U);
        const std::string difference = differenceOf(edited, seen(), tolerance);
        EXPECT_TRUE(difference.empty()) << difference << newContent();
    }

    /// What the save counted: kept, changed, added, removed, moved.
    std::string facts() const {
        const SavedFacts& facts = saved_.back();
        std::string text;
        for (const std::int32_t count :
             {facts.kept, facts.changed, facts.added, facts.removed, facts.moved}) {
            text += (text.empty() ? "" : " ") + std::to_string(count);
        }
        return text;
    }

    /// The body of the newest object of that number.
    std::string object(const std::string& number) const {
        const std::string file = bytes();
        const std::size_t at = file.rfind("\n" + number + " 0 obj");
        return at == std::string::npos ? "" : file.substr(at, file.find("endobj", at) - at);
    }
    /// The numbers of the page's content streams.
    std::vector<std::string> contentNumbers(const std::string& page = "3") const {
        const std::string body = object(page);
        std::istringstream words(body.substr(body.find("/Contents") + 9));
        std::vector<std::string> numbers;
        for (std::string word; words >> word && word != "]" && word[0] != '/';) {
            word.erase(0, word.find_first_not_of("["));
            if (!word.empty() && word != "0" && word != "R" && word != "R]") {
                numbers.push_back(word);
            }
        }
        return numbers;
    }
    std::string newContent() const {
        std::string content;
        for (const std::string& number : contentNumbers()) {
            const std::string body = object(number);
            const std::size_t start = body.find("stream\n") + 7;
            content += body.substr(start, body.rfind("\nendstream") - start) + "\n";
        }
        return content;
    }
    void expectInOrder(const std::vector<std::string>& pieces) const {
        const std::string content = newContent();
        std::size_t from = 0;
        for (const std::string& piece : pieces) {
            const std::size_t at = content.find(piece, from);
            ASSERT_NE(at, std::string::npos) << piece << " is not in:\n" << content;
            from = at + piece.size();
        }
    }

    static constexpr std::string_view resources =
        "/Resources << /Font << /F 20 0 R /V 24 0 R /T 26 0 R >> /XObject << /X 21 0 R >> "
        "/Properties << /L "
        "22 0 R >> "
        "/ExtGState << /Half << /ca .5 /CA .5 >> /Full << /ca 1 /CA 1 >> /Wide << /LW 7 /D [[5 3] "
        "1] >> /B << /LW 1 /Font [20 0 R 10] >> >> "
        "/Pattern << /P 23 0 R >> /ColorSpace << /I [/Separation /All /DeviceRGB << "
        "/FunctionType 2 /Domain [0 1] /C0 [1 1 1] /C1 [.2 0 .4] /N 2 >>] >> >>";
    static PdfBuilder withResources(PdfBuilder file) {
        file.object(20, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
            .stream(21, "0 0 9 9 re f", "/Type /XObject /Subtype /PS")
            .object(22, "<< /Type /OCG /Name (L) >>")
            .stream(23, "0 0 2 2 re f",
                    "/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 4 4] "
                    "/XStep 4 /YStep 4 /Resources << >>")
            .object(24, "<< /Type /Font /Subtype /Type0 /BaseFont /Gothic /Encoding /Identity-V "
                        "/DescendantFonts [<< /Type /Font /Subtype /CIDFontType2 /BaseFont /Gothic "
                        "/DW2 [880 -900] >>] /ToUnicode 25 0 R >>")
            .stream(25, "beginbfrange <0000> <007F> <0000> endbfrange")
            .object(26, "<< /Type /Font /Subtype /Type3 /FontMatrix [.1 0 0 .1 0 0] /CharProcs << "
                        "/a 27 0 R >> /Encoding << /Differences [97 /a /b] >> /FirstChar 97 "
                        "/Widths [10 10] >>")
            .stream(27, "10 0 0 0 8 8 d1 0 0 8 1 re f 2 1 4 4 re f");
        return file;
    }

    std::string file_; ///< as it was opened
    std::uint64_t digest_ = 0;
    std::uint64_t name_ = 1;
    std::vector<MissingArt> missing_;
};

} // namespace corvane
