// What is read, written and read again is the same artwork.
#include "reader/page/page_matrix.h"
#include "tests/writer/walk_fixture.h"

#include <array>
#include <random>

namespace corvane {
namespace {

std::string colourText(const Colour& colour) {
    std::string text = std::to_string(static_cast<int>(colour.kind)) + "/" +
                       std::to_string(static_cast<int>(colour.origin));
    for (const Fixed amount : colour.component) {
        text += " " + std::to_string(amount);
    }
    return text;
}

/// All of a style that can be seen.
std::string styleText(const PathStyle& style) {
    std::string text = std::to_string(style.resolution);
    if (style.fillPaint != 0) {
        text += " fill " + colourText(style.fill);
    }
    if (style.strokePaint != 0) {
        text += " stroke " + colourText(style.stroke);
        for (const Fixed value : {style.lineWidth, style.miterLimit, Fixed{style.cap},
                                  Fixed{style.join}, style.dashPhase}) {
            text += " " + std::to_string(value);
        }
        for (int i = 0; i < style.dashCount; ++i) {
            text += " dash " + std::to_string(style.dash[i]);
        }
    }
    return text + "\n";
}

std::string stylesText(const Document& document, Art container) {
    std::string text;
    for (Art art = document.firstChild(container); art != Art::null;
         art = document.nextSibling(art)) {
        text += document.kind(art) == ArtKind::path ? styleText(document.style(art))
                                                    : stylesText(document, art);
    }
    return text;
}

/// Every segment as it is stored: `artText` rounds.
void appendSegments(const Document& document, Art container, std::vector<Segment>& segments) {
    for (Art art = document.firstChild(container); art != Art::null;
         art = document.nextSibling(art)) {
        if (document.kind(art) == ArtKind::path) {
            for (const Segment& segment : document.segments(art)) {
                segments.push_back(segment);
            }
        } else {
            appendSegments(document, art, segments);
        }
    }
}

/// Page content that is made of everything the reader keeps, chosen by chance.
class RandomContent {
public:
    explicit RandomContent(unsigned seed) : random_(seed) {}

    std::string text() {
        for (int i = 0; i < 40; ++i) {
            addStep();
        }
        return text_;
    }

private:
    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    std::string number() { return std::to_string(below(90000) / 128.0); }
    std::string level() { return std::to_string(below(257) / 256.0); }
    std::string point() { return number() + " " + number() + " "; }
    template <std::size_t size>
    void addOne(const std::array<const char*, size>& words) {
        text_ += words[static_cast<std::size_t>(below(size))];
        text_ += "\n";
    }

    void addStep() {
        switch (below(9)) {
        case 0:
            text_ += "q\n";
            return;
        case 1:
            text_ += "Q\n";
            return;
        case 2:
            addPath();
            text_ += below(2) == 0 ? "W " : "W* ";
            addOne(std::array{"n", "f", "F", "S"});
            return;
        case 3:
        case 4:
            addStyle();
            return;
        default:
            addPath();
            addOne(std::array{"f", "f*", "F", "S", "s", "B", "B*", "b", "b*", "n"});
        }
    }

    void addStyle() {
        switch (below(9)) {
        case 0:
            text_ += level() + (below(2) == 0 ? " g\n" : " G\n");
            return;
        case 1:
            text_ += level() + " " + level() + " " + level() + (below(2) == 0 ? " rg\n" : " RG\n");
            return;
        case 2:
            text_ += level() + " " + level() + " 0 1" + (below(2) == 0 ? " k\n" : " K\n");
            return;
        case 3:
            text_ += number() + " w\n";
            return;
        case 4:
            addOne(std::array{"0 J", "1 J", "2 J", "0 j", "1 j", "2 j"});
            return;
        case 5:
            text_ += "[" + number() + " " + number() + "] " + number() + " d\n";
            return;
        case 6:
            text_ += std::to_string(1 + below(9000) / 128.0) + " M\n";
            return;
        case 7:
            text_ += std::to_string(below(3300) / 128.0) + " i\n";
            return;
        default:
            addOne(std::array{"[] 0 d", "2 0 0 2 1 1 cm", ".5 .25 -.25 .5 3 4 cm"});
        }
    }

    void addPath() {
        for (int subpaths = 1 + below(3) / 2; subpaths > 0; --subpaths) {
            const std::string start = point();
            text_ += below(8) == 0 ? start + point() + "re\n" : start + "m\n";
            for (int steps = 1 + below(4); steps > 0; --steps) {
                addSegment();
            }
            if (below(6) == 0) {
                text_ += start + "l\n"; // an end on the start, closed or not
            }
            addOne(std::array{"", "h"});
        }
    }

    void addSegment() {
        switch (below(4)) {
        case 0:
            text_ += point() + point() + point() + "c\n";
            return;
        case 1:
            text_ += point() + point() + (below(2) == 0 ? "v\n" : "y\n");
            return;
        default:
            text_ += point() + "l\n";
        }
    }

    std::mt19937 random_;
    std::string text_;
};

class RoundTripTest : public WalkTest {
protected:
    struct Artwork {
        std::string art;
        std::string styles;
        std::vector<Segment> segments;
        friend bool operator==(const Artwork&, const Artwork&) = default;
    };

    Artwork drawn(std::string_view content,
                  const std::string& pageEntries = "/MediaBox[0 0 612 792]") {
        PdfBuilder file = PdfBuilder::onePage(content);
        file.object(3, "<</Type/Page/Parent 2 0 R/Contents 4 0 R" + pageEntries + ">>");
        draw(file.bytes());
        Artwork artwork{
            artText(document(), importedArt()), stylesText(document(), importedArt()), {}};
        appendSegments(document(), importedArt(), artwork.segments);
        return artwork;
    }

    /// Writes what is open and reads it again; the page that comes of it is `former`.
    std::string again(const Artwork& former,
                      const std::string& pageEntries = "/MediaBox[0 0 612 792]") {
        const std::string written = write(leadBack());
        const Artwork artwork = drawn(written, pageEntries);
        EXPECT_EQ(artwork.art, former.art);
        EXPECT_EQ(artwork.styles, former.styles);
        EXPECT_TRUE(artwork == former) << written;
        return written;
    }

    /// From the artboard to the page that is open.
    RealMatrix leadBack() { return inverse(pageMatrix(*cache_).exact).value(); }
};

TEST_F(RoundTripTest, KeepsWhatIsEasilyLost) {
    const char* const contents[] = {
        // Ends on the start: closed by a line, by a curve, not closed, one after the other.
        "0 0 m 9 0 l 9 9 l 0 0 l h S",
        "0 0 m 9 0 l 9 9 l 0 0 l 0 0 l h S",
        "0 0 m 9 0 l 9 9 l 0 0 l S",
        "0 0 m 9 0 l 1 1 2 2 0 0 c h f",
        "5 5 m 1 1 2 2 5 5 c h f",
        "5 5 m h 5 5 m 5 5 l h 5 5 m 5 5 l S",
        // Controls on one end only, on both, beyond.
        "0 0 m 1 2 3 4 v 5 6 7 8 y 1 1 2 2 3 3 c h S",
        "0 0 m 0 0 0 0 9 9 c 9 9 9 9 0 0 c s",
        // Groups, clips, groups in clips, and clips that nothing bounds.
        "q 0 0 m 9 9 l S Q q 1 1 m 2 2 l S 3 3 m 4 4 l S Q",
        "q q 0 0 m 9 9 l S Q 1 1 m 2 2 l S Q",
        "q 0 0 5 5 re W* n 1 1 m 2 2 l S q 1 1 m 3 3 l S 2 2 m 3 3 l h f Q Q 1 1 m 2 2 l S",
        "0 0 9 9 re 3 3 3 3 re W n 1 1 m 2 2 l S 4 4 1 1 re W n 1 1 m 2 2 l S",
        "0 0 9 9 re W f 1 1 m 2 2 l S",
        // Unpainted paths stay where they are.
        "0 0 9 9 re n 1 1 m 2 2 l S 0 0 m 3 3 l 4 5 l n",
        // Colours of each kind, levels that are no round numbers, amounts out of range.
        ".1 g 0 0 9 9 re f .3 .7 .11 rg 0 0 9 9 re f .1 .2 .3 .4 k 0 0 9 9 re f",
        "1 1 1 rg 0 0 9 9 re f 0 0 0 rg 0 0 9 9 re f .33333 .33333 .33333 RG 0 0 m 9 9 l S",
        "1.5 g 0 0 9 9 re f -.5 1.5 0 0 k 0 0 9 9 re f",
        // Even-odd, flatness, dashes.
        "0 0 9 9 re 2 2 3 3 re f* 0 0 9 9 re 2 2 3 3 re B*",
        "7 i 0 0 m 9 9 l S 3.3 i 0 0 m 9 9 l S 23.9 i 0 0 m 9 9 l S 99 i 0 0 m 9 9 l S",
        "[] 3 d 0 0 m 9 9 l S [1 2 3 4 5 6] 3 d 0 0 m 9 9 l S [0 0] 0 d 0 0 m 9 9 l S",
        // Numbers at the ends of 16.16.
        "32767.99 -32768 m .00002 -.00002 l 0 32767 l S",
    };
    for (const char* const content : contents) {
        SCOPED_TRACE(content);
        const Artwork artwork = drawn(content);
        EXPECT_NE(artwork.art, "");
        const std::string written = again(artwork);
        EXPECT_EQ(write(), written) << "written a second time";
    }
}

TEST_F(RoundTripTest, KeepsRandomPages) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(seed);
        const Artwork artwork = drawn(RandomContent(seed).text());
        again(artwork);
        ASSERT_FALSE(HasFailure());
    }
}

TEST_F(RoundTripTest, LeadsBackToTurnedAndMovedPages) {
    for (const char* const entries :
         {"/MediaBox[10.5 -20.25 400 500]", "/MediaBox[0 0 300 400]/Rotate 90",
          "/MediaBox[1 2 300 400]/Rotate 180/CropBox[11 12 77.7 88.8]",
          "/Rotate 270/MediaBox[-1000 -2000 3000 4000]"}) {
        SCOPED_TRACE(entries);
        const Artwork artwork = drawn(RandomContent(7).text(), entries);
        again(artwork, entries);
    }
}

} // namespace
} // namespace corvane
