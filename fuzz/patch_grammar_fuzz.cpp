// Bytes as choices of a grammar of page content, balanced and unbalanced; the page is edited as the
// first bytes say, and saved.
#include "fuzz/support/patch_page.h"
#include "fuzz/support/recipe.h"
#include "fuzz/support/sound_save.h"

#include <algorithm>

namespace corvane::fuzz {

namespace {

constexpr std::size_t bytesOfEdits = 24;
constexpr std::size_t mostStatements = 80;
constexpr std::size_t mostStreams = 8;

constexpr std::array<std::string_view, 5> boxes = {
    "/MediaBox [0 0 612 792]", "/MediaBox [0 0 612 792] /Rotate 90",
    "/MediaBox [-50 -50 500 500] /CropBox [0 0 100 100]",
    "/MediaBox [0.5 0.25 200 100] /Rotate 270 /UserUnit 2", "/MediaBox [0 0 30000 30000]"};

constexpr std::array<std::string_view, 24> numbers = {"0",       "1",
                                                      "9",       "50",
                                                      "99.5",    "-7",
                                                      "+3",      ".5",
                                                      "-.25",    "4.",
                                                      "00012",   "1e3",
                                                      "--5",     "6-2",
                                                      "1.2.3",   "99999999999",
                                                      "-0",      "0.001",
                                                      "100.125", "32000",
                                                      "-32769",  "0.3333333333333",
                                                      "200",     "+-1"};

constexpr std::array<std::string_view, 10> matrices = {
    "1 0 0 1 10 20", "2 0 0 .5 0 0",  "0 1 -1 0 50 50",      "0 0 0 0 0 0",
    "1 1 1 1 0 0",   "1e9 0 0 1 0 0", "99999 0 0 99999 0 0", ".00001 0 0 .00001 9 9",
    "1 0 .5 1 0 0",  "-1 0 0 1 100 0"};

constexpr std::array<std::string_view, 12> painters = {"f",  "S",  "B", "f*", "b", "s",
                                                       "b*", "B*", "F", "n",  "E", "F*"};

constexpr std::array<std::string_view, 20> setters = {"1 0 0 rg",
                                                      ".5 g",
                                                      "0 1 0 0 k",
                                                      "0 0 1 RG",
                                                      ".25 G",
                                                      "3 w",
                                                      "[3 1] 0 d",
                                                      "1 J",
                                                      "2 j",
                                                      "4 M",
                                                      "50 i",
                                                      "/GS0 gs",
                                                      "/GS1 gs",
                                                      "/GS2 gs",
                                                      "/CS0 cs .5 scn",
                                                      "/CS1 CS 1 SCN",
                                                      "/Pattern cs /P0 scn",
                                                      "/CS2 cs 1 0 0 /P0 scn",
                                                      "/Perceptual ri",
                                                      "/None gs"};

constexpr std::array<std::string_view, 16> texts = {"/F0 9 Tf",
                                                    "(text) Tj",
                                                    "[(a) -9 (b)] TJ",
                                                    "(line) '",
                                                    "1 2 (more) \"",
                                                    "9 9 Td",
                                                    "1 0 0 1 5 5 Tm",
                                                    "T*",
                                                    "3 Tr",
                                                    "7 Tr",
                                                    "0 Tr",
                                                    "4 Tr",
                                                    "14 TL",
                                                    "2 Tc",
                                                    "(\\)\\\\) Tj",
                                                    "<48 69> Tj"};

constexpr std::array<std::string_view, 8> images = {"BI /W 2 /H 2 /BPC 8 /CS /G ID abcd EI",
                                                    "BI /W 1 /H 1 /IM true ID x EI",
                                                    "BI /W 9 /H 9 /F /AHx ID 00FF> EI",
                                                    "BI /W 2 /H 2 ID a EI b EI",
                                                    "BI /W 2",
                                                    "EI",
                                                    "BI q 5 w ID zz EI",
                                                    "ID (no end"};

constexpr std::array<std::string_view, 10> strays = {
    "/X0 Do", "/S0 sh", "unknown", "1 2 3 xyz", "5 6", "]", "BX", "EX", "/MC0 /P MP", "9 l"};

/// What readers take differently, and what swallows bytes behind it.
constexpr std::array<std::string_view, 10> damages = {"(open", "<41", "<<", "[", ")",
                                                      ">>",    "}",   "{",  "<", "/"};

class ContentGrammar {
public:
    explicit ContentGrammar(Recipe& recipe) : recipe_(recipe) {}

    std::vector<std::string> streams() {
        for (std::size_t i = 0; i < mostStatements && !recipe_.isEmpty(); ++i) {
            statement();
        }
        return std::move(streams_);
    }

private:
    /// Adds words one by one, so that a stream may end behind each.
    void add(std::string_view text) {
        while (!text.empty()) {
            const std::size_t end = std::min(text.find(' '), text.size());
            streams_.back().append(text.substr(0, end)).append(separator_);
            text.remove_prefix(std::min(end + 1, text.size()));
            if (untilCut_ > 0 && --untilCut_ == 0 && streams_.size() < mostStreams) {
                streams_.emplace_back();
            }
        }
    }

    void add(std::size_t count, std::string_view word) {
        for (std::size_t i = 0; i < count; ++i) {
            add(recipe_.oneOf(numbers));
        }
        add(word);
    }

    void construct() {
        switch (recipe_.below(8)) {
        case 0:
            return add(2, "m");
        case 1:
            return add(6, "c");
        case 2:
            return add(4, "v");
        case 3:
            return add(4, "y");
        case 4:
            return add("h");
        case 5:
            return add("10 10 40 30 re");
        default:
            return add(2, "l");
        }
    }

    void path() {
        switch (recipe_.below(3)) {
        case 0:
            add("0 0 m 90 0 l 90 90 l");
            break;
        case 1:
            add("5 5 60 60 re");
            break;
        default:
            add(2, "m");
        }
        for (std::uint32_t count = recipe_.below(4); count > 0; --count) {
            construct();
        }
    }

    void clipPath() {
        path();
        add(recipe_.below(3) == 0 ? "W*" : "W");
        add(recipe_.below(3) == 0 ? recipe_.oneOf(painters) : "n");
    }

    /// State and the like between the operators of a path.
    void interruptedPath() {
        path();
        statement();
        construct();
        add(recipe_.oneOf(painters));
    }

    void text() {
        add("BT");
        for (std::uint32_t count = recipe_.below(5); count > 0; --count) {
            add(recipe_.oneOf(texts));
        }
        if (recipe_.below(6) == 0) {
            statement();
        }
        if (recipe_.below(6) != 0) {
            add("ET");
        }
    }

    void mark() {
        switch (recipe_.below(5)) {
        case 0:
            return add("/OC /MC0 BDC");
        case 1:
            return add("/Span <</MCID 1>> BDC");
        case 2:
            return add("/Artifact BMC");
        default:
            return add("EMC");
        }
    }

    void layout() {
        switch (recipe_.below(4)) {
        case 0:
            untilCut_ = 1 + recipe_.below(20);
            return;
        case 1:
            separator_ = "\n";
            return;
        case 2:
            separator_ = " ";
            return;
        default:
            streams_.back() += "% a remark (\n";
        }
    }

    void statement() {
        if (++depth_ < 20) {
            switch (recipe_.below(24)) {
            case 0:
            case 1:
            case 2:
            case 3:
            case 4:
                path();
                add(recipe_.oneOf(painters));
                break;
            case 5:
            case 6:
                add("q");
                break;
            case 7:
            case 8:
                add("Q");
                break;
            case 9:
                add(recipe_.oneOf(matrices));
                add("cm");
                break;
            case 10:
            case 11:
                clipPath();
                break;
            case 12:
            case 13:
                add(recipe_.oneOf(setters));
                break;
            case 14:
                text();
                break;
            case 15:
                add(recipe_.oneOf(images));
                break;
            case 16:
            case 17:
                mark();
                break;
            case 18:
                add(recipe_.oneOf(strays));
                break;
            case 19:
                interruptedPath();
                break;
            case 20:
            case 21:
                layout();
                break;
            case 22:
                add(recipe_.oneOf(recipe_.below(4) == 0 ? damages : strays));
                break;
            default:
                add(recipe_.oneOf(texts));
            }
        }
        --depth_;
    }

    Recipe& recipe_;
    std::vector<std::string> streams_ = {""};
    std::string_view separator_ = " ";
    std::uint32_t untilCut_ = 0; ///< words until the stream ends; 0: it goes on
    int depth_ = 0;
};

} // namespace

void fuzzPatchGrammar(Bytes input) {
    const std::size_t length = std::min(bytesOfEdits, input.size());
    Recipe edits(input.first(length));
    Recipe recipe(input.subspan(length));
    const std::string page = recipe.oneOf(boxes);
    const std::string file = patchPage(ContentGrammar(recipe).streams(), page);
    requireSoundSave(std::as_bytes(std::span(file)), Profile::extended,
                     [&](std::uint32_t limit) { return edits.below(limit); });
}

} // namespace corvane::fuzz
