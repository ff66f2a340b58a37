// Bytes as choices of a grammar: they make a small file whose cross-reference is right and in which
// a reference, a chain or a loop of references, or a value of a wrong type stands wherever a value
// may. The file is looked into, opened, and saved into.
#include "fuzz/support/plugin_host.h"
#include "fuzz/support/recipe.h"
#include "fuzz/support/sound_save.h"
#include "tests/support/pdf_builder.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::fuzz {

namespace {

/// Objects of one file; a chain that would pass it leads nowhere.
constexpr int mostObjects = 300;
constexpr std::uint32_t longestChain = 40;
constexpr std::uint32_t mostSections = 24;

constexpr std::array<std::string_view, 10> wrongValues = {
    "null", "-1", "2147483647", "99999999999", "1.5", "/Name", "(text)", "[]", "<<>>", "true"};

constexpr std::array<std::string_view, 12> linkKeys = {
    "Parent",  "Kids",   "Pages",  "Contents",  "Resources",  "PieceInfo",
    "Private", "Length", "Filter", "ExtGState", "ColorSpace", "Root"};

constexpr std::string_view content =
    "q /CS0 cs 0.5 scn /CS1 CS 1 0 0 SCN /CS2 cs 1 scn /GS0 gs /GS1 gs\n0 0 m 90 90 l S\n"
    "/P0 scn 0 0 9 9 re f /X0 Do /S0 sh /M0 /N0 BDC EMC BT /F0 9 Tf (t) Tj ET Q\n"
    "0 0 m 9 0 l 9 9 l h f\n";

std::string reference(int number) {
    return std::to_string(number) + " 0 R";
}

/// An array or a dictionary. A chain of `add` takes its choices from the left to the right, which
/// operands of "+" need not.
class Composite {
public:
    Composite& add(const std::string& element) {
        text_.append(element).append(" ");
        return *this;
    }
    Composite& add(std::string_view key, const std::string& element) {
        text_.append("/").append(key).append(" ");
        return add(element);
    }

    std::string array() const { return "[" + text_ + "]"; }
    std::string dictionary() const { return "<< " + text_ + ">>"; }
    std::string stream(std::string_view data) const {
        return dictionary() + "\nstream\n" + std::string(data) + "\nendstream";
    }
    const std::string& entries() const { return text_; }

private:
    std::string text_;
};

/// Objects 1 to 3 are the catalog, the root of the page tree and the first page.
class Grammar {
public:
    explicit Grammar(Recipe& recipe) : recipe_(recipe) {}

    std::string file() {
        // The page comes first: the bytes at the front of an input decide about it.
        const std::string contents = value(streams(3), 3);
        file_.object(3, page(contents, 3));
        const std::string kids = Composite().add(value("3 0 R", 2)).add(value("3 0 R", 2)).array();
        Composite root;
        root.add("Type", "/Pages")
            .add("Kids", value(kids, 2))
            .add("Parent", value("null", 2))
            .add("Count", value("1", 2));
        inherited(root, 2);
        file_.object(2, root.dictionary());
        file_.object(
            1, Composite().add("Type", "/Catalog").add("Pages", value("2 0 R", 1)).dictionary());
        if (recipe_.below(2) == 1) {
            objectStream();
        }
        return sections();
    }

private:
    int add(const std::string& body) {
        file_.object(next_, body);
        return next_++;
    }

    /// What stands where `right` should, in the object `owner`.
    std::string value(const std::string& right, int owner) {
        switch (recipe_.below(8)) {
        case 3:
            return reference(next_ < mostObjects ? add(right) : owner);
        case 4:
            return reference(static_cast<int>(recipe_.below(static_cast<std::size_t>(next_) + 2)));
        case 5:
            return reference(owner);
        case 6:
            return chain(right, owner);
        case 7:
            return recipe_.oneOf(wrongValues);
        default:
            return right;
        }
    }

    std::string chain(const std::string& right, int owner) {
        const int length = 1 + static_cast<int>(recipe_.below(longestChain));
        const std::uint32_t kind = recipe_.below(10);
        const std::uint32_t end = recipe_.below(4);
        if (next_ + length >= mostObjects) {
            return reference(mostObjects + 1);
        }
        const int first = next_;
        next_ += length;
        for (int i = 0; i < length - 1; ++i) {
            file_.object(first + i, link(kind, reference(first + i + 1)));
        }
        const std::array<std::string, 4> ends = {right, reference(first),
                                                 reference(mostObjects + 1), reference(owner)};
        const std::string& last = ends[end];
        file_.object(first + length - 1, end == 0 ? last : link(kind, last));
        return reference(first);
    }

    /// An object of a chain; kind 9: each of another kind.
    std::string link(std::uint32_t kind, const std::string& next) {
        constexpr std::string_view data = "0 0 m 9 9";
        switch (kind == 9 ? recipe_.below(9) : kind) {
        case 0:
            return Composite().add("Length", next).stream(data);
        case 1:
            return next;
        case 2:
            return Composite().add(next).array();
        case 3:
            return Composite().add(recipe_.oneOf(linkKeys), next).dictionary();
        case 4:
            return Composite().add("Length", "9").add("Filter", next).stream(data);
        case 5:
            return Composite()
                .add("Length", "9")
                .add("Filter", "/FlateDecode")
                .add("DecodeParms", next)
                .stream(data);
        case 6:
            return Composite().add("/Indexed").add(next).add("1").add(next).array();
        case 7:
            return Composite().add("/ICCBased").add(next).array();
        default:
            return Composite()
                .add("Length", "9")
                .add("N", next)
                .add("Alternate", next)
                .stream(data);
        }
    }

    /// A content stream, or an array of some.
    std::string streams(int owner) {
        const std::uint32_t count = recipe_.below(4);
        if (count == 0) {
            return contentStream();
        }
        Composite array;
        for (std::uint32_t i = 0; i < count; ++i) {
            array.add(value(contentStream(), owner));
        }
        return array.array();
    }

    std::string contentStream() {
        const int number = next_++;
        Composite stream;
        stream.add("Length", value(std::to_string(content.size()), number));
        if (recipe_.below(2) == 1) {
            const std::string names = Composite()
                                          .add(value("/ASCIIHexDecode", number))
                                          .add(value("/A85", number))
                                          .array();
            const std::string parameters = Composite().add(value("null", number)).array();
            stream.add("Filter", value(names, number))
                .add("DecodeParms", value(parameters, number));
        }
        file_.object(number, stream.stream(content));
        return reference(number);
    }

    std::string page(const std::string& contents, int number) {
        Composite page;
        page.add("Type", "/Page").add("Parent", value("2 0 R", number)).add("Contents", contents);
        inherited(page, number);
        if (recipe_.below(2) == 1) {
            const std::string record = Composite()
                                           .add("Origin", value("<0011223344556677>", number))
                                           .add("Page", value("300", number))
                                           .add("Content", value("400", number))
                                           .dictionary();
            const std::string ours = Composite().add("Private", value(record, number)).dictionary();
            const std::string pieces = Composite().add("Corvane", value(ours, number)).dictionary();
            page.add("PieceInfo", value(pieces, number))
                .add("LastModified", value("(D:2026)", number))
                .add("Annots", value(Composite().add(value("<<>>", number)).array(), number))
                .add("UserUnit", value("2", number));
        }
        return page.dictionary();
    }

    /// Adds what a page may inherit.
    void inherited(Composite& node, int owner) {
        const std::string box =
            Composite().add("0").add(value("0", owner)).add("612").add(value("792", owner)).array();
        node.add("MediaBox", value(box, owner))
            .add("CropBox", value(box, owner))
            .add("Rotate", value("90", owner))
            .add("Resources", value(resources(owner), owner));
    }

    std::string resources(int owner) {
        if (recipe_.below(2) == 0) {
            return "<<>>";
        }
        const auto one = [&](std::string_view name, const std::string& right) {
            return value(Composite().add(name, value(right, owner)).dictionary(), owner);
        };
        return Composite()
            .add("ColorSpace", value(colourSpaces(owner), owner))
            .add("ExtGState", value(graphicsStates(owner), owner))
            .add("XObject", one("X0", "<< /Subtype /Form >>"))
            .add("Font", one("F0", "<<>>"))
            .add("Pattern", one("P0", "<<>>"))
            .add("Shading", one("S0", "<<>>"))
            .add("Properties", one("N0", "<<>>"))
            .add("ProcSet", value("[/PDF]", owner))
            .dictionary();
    }

    std::string colourSpaces(int owner) {
        const int profile = add(Composite()
                                    .add("Length", "0")
                                    .add("N", value("3", owner))
                                    .add("Alternate", value("/DeviceRGB", owner))
                                    .stream(""));
        const std::string function = Composite()
                                         .add("FunctionType", "2")
                                         .add("Domain", "[0 1]")
                                         .add("C0", value("[0 0 0]", owner))
                                         .add("C1", value("[1 0 0]", owner))
                                         .add("N", value("1", owner))
                                         .dictionary();
        const std::string separation = Composite()
                                           .add("/Separation")
                                           .add("/Spot")
                                           .add(value("/DeviceRGB", owner))
                                           .add(value(function, owner))
                                           .array();
        const std::string indexed = Composite()
                                        .add("/Indexed")
                                        .add(value("/DeviceRGB", owner))
                                        .add("1")
                                        .add(value("<FF0000 00FF00>", owner))
                                        .array();
        return Composite()
            .add("CS0", value(separation, owner))
            .add("CS1", value(Composite().add("/ICCBased").add(reference(profile)).array(), owner))
            .add("CS2", value(indexed, owner))
            .add("DefaultGray", value(separation, owner))
            .add("DefaultRGB", value("[/DeviceN [/A /B /C] /DeviceRGB 9 0 R]", owner))
            .dictionary();
    }

    std::string graphicsStates(int owner) {
        const std::string dash =
            Composite().add(value("[3 1]", owner)).add(value("0", owner)).array();
        const std::string state =
            Composite().add("LW", value("3", owner)).add("D", value(dash, owner)).dictionary();
        return Composite()
            .add("GS0", value(state, owner))
            .add("GS1", value("<<>>", owner))
            .dictionary();
    }

    void objectStream() {
        const int number = next_++;
        file_.object(number, Composite()
                                 .add("Type", "/ObjStm")
                                 .add("N", value("1", number))
                                 .add("First", value("4", number))
                                 .add("Extends", value("null", number))
                                 .add("Length", value("8", number))
                                 .stream("9 0 <<>>"));
    }

    /// Entries of a trailer.
    Composite trailer() {
        Composite trailer;
        trailer.add("Size", "400").add("Root", value("1 0 R", 1)).add("Info", value("<<>>", 1));
        if (recipe_.below(4) == 3) {
            trailer.add("XRefStm", value("300", 1));
        }
        return trailer;
    }

    /// The file and some empty updates, each with a Prev.
    std::string sections() {
        struct Section {
            std::string previous; ///< empty: the place of the one before
            Composite trailer;
        };
        // Values of trailers make objects too, so all are made before the file is.
        std::vector<Section> updates(recipe_.below(mostSections));
        for (Section& update : updates) {
            update.previous = value("", 1);
            update.trailer = trailer();
        }
        const std::string oldest = value("", 1);
        Composite first = trailer();
        if (!oldest.empty()) {
            first.add("Prev", oldest);
        }
        file_.trailer(first.entries());
        std::string bytes = file_.bytes();
        std::size_t place = std::stoul(bytes.substr(bytes.rfind("startxref") + 10));
        for (Section& update : updates) {
            update.trailer.add("Prev",
                               update.previous.empty() ? std::to_string(place) : update.previous);
            place = bytes.size();
            bytes += "xref\n0 0\ntrailer\n" + update.trailer.dictionary() + "\nstartxref\n" +
                     std::to_string(place) + "\n%%EOF\n";
        }
        return bytes;
    }

    Recipe& recipe_;
    test::PdfBuilder file_;
    int next_ = 4;
};

} // namespace

void fuzzGrammar(Bytes input) {
    Recipe recipe(input);
    const Profile profile = recipe.below(4) == 3 ? Profile::original : Profile::extended;
    const std::string file = Grammar(recipe).file();
    const Bytes bytes = std::as_bytes(std::span(file));
    {
        PluginHost host(bytes, profile, 1);
        for (const Selector selector :
             {Selector::check, Selector::prepare, Selector::info, Selector::log}) {
            host.call(selector);
        }
    }
    requireSoundSave(bytes, profile, [&](std::uint32_t limit) { return recipe.below(limit); });
}

} // namespace corvane::fuzz
