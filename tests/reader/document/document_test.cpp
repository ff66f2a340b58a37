// Opening files: header, cross-reference sections, indirect objects and streams.
#include "objects/stack.h"
#include "reader/syntax/syntax.h"
#include "tests/reader/reader_fixture.h"

namespace corvane {
namespace {

/// A file written by hand: "@name@" notes a place, "#name#" says it in ten digits, which is as many
/// as the name must have characters with its signs.
std::string assembled(std::string text) {
    std::map<std::string, std::string> places;
    for (std::size_t at = text.find('@'); at != std::string::npos; at = text.find('@', at)) {
        const std::size_t end = text.find('@', at + 1);
        const std::string digits = std::to_string(at);
        places[text.substr(at + 1, end - at - 1)] = std::string(10 - digits.size(), '0') + digits;
        text.erase(at, end + 1 - at);
    }
    for (std::size_t at = text.find('#'); at != std::string::npos; at = text.find('#', at)) {
        const std::size_t end = text.find('#', at + 1);
        text.replace(at, end + 1 - at, places.at(text.substr(at + 1, end - at - 1)));
    }
    return text;
}

/// Objects 1 to 3: catalog, tree, page of 9 by 9 points.
const std::string onePage =
    "%PDF-1.3\n%" + std::string(260, '-') +
    "\n@catalog0@1 0 obj<</Pages 2 0 R>>endobj\n@pagetree@2 0 obj<</Kids[3 0 R]/Count 1>>endobj\n"
    "@thepage0@3 0 obj<</Parent 2 0 R/MediaBox[0 0 9 9]>>endobj\n";
const std::string section = "xref\n0 4\n0000000000 65535 f \n#catalog0# 00000 n \n"
                            "#pagetree# 00000 n \n#thepage0# 00000 n \n";

class DocumentTest : public ReaderTest {
protected:
    std::int32_t integerIn(DocumentCache& cache, std::int32_t number, const char* key) {
        const ObjectOwner object = object_(cache, number);
        return integerObject(lookupObject(cache, object.get(), key).get());
    }
    /// Positions of the data of stream `number`.
    std::string streamData(const std::string& file, std::int32_t number) {
        DocumentCache& cache = open(file);
        const ObjectOwner stream = object_(cache, number);
        const std::span<Object> parts = elementsObject(stream.get());
        const auto start = static_cast<std::size_t>(integerObject(parts[1]));
        return file.substr(start, static_cast<std::size_t>(integerObject(parts[2])) - start);
    }
    static ObjectOwner object_(DocumentCache& cache, std::int32_t number) {
        ObjectOwner reference;
        indirectObject(reference.get(), number, 0);
        return readableObject(cache, reference.get());
    }
};

struct OpenRow {
    const char* name;
    std::string file;
    Exception original;
    Exception extended;
};

TEST_F(DocumentTest, SectionsGoodAndBad) {
    constexpr Exception none = Exception::none;
    constexpr Exception damaged = Exception::structure;
    const auto file = [](const std::string& xref, const std::string& trailer = "<</Root 1 0 R>>",
                         const std::string& end = "startxref\n#section0#\n%%EOF\n") {
        return assembled(onePage + "@section0@" + xref + "trailer\n" + trailer + "\n" + end);
    };
    const std::string encryptedBefore =
        assembled(onePage + "@section0@" + section +
                  "trailer<</Encrypt 1 0 R>>startxref 0\n"
                  "@updated0@3 0 obj<</Parent 2 0 R/MediaBox[0 0 7 7]>>endobj\n"
                  "@section1@xref\n3 1\n#updated0# 00000 n \n"
                  "trailer<</Root 1 0 R/Prev #section0#>>startxref\n#section1#\n");
    for (const OpenRow& row : {
             OpenRow{"usual", file(section), none, none},
             OpenRow{"entries of any form",
                     file("xref 0 1 0 65535 f 1 1 #catalog0# 0 n\r2 2 #pagetree# 0 n #thepage0# "
                          "0 n\n"),
                     none, none},
             OpenRow{"no startxref keyword", file(section, "<</Root 1 0 R>>", "#section0#\n"),
                     Exception::range, none},
             OpenRow{"digits in a comment behind the end",
                     file(section, "<</Root 1 0 R>>", "startxref\n#section0#\n%%EOF %7\n"), damaged,
                     none},
             OpenRow{"text behind the end",
                     file(section, "<</Root 1 0 R>>",
                          "startxref\n#section0#\n%%EOF\n" + std::string(700, '\0')),
                     damaged, none},
             OpenRow{"digits that begin with the tail",
                     file(section, "<</Root 1 0 R>>", std::string(256, '7')), damaged, none},
             OpenRow{"fewer entries than told", file("xref\n0 9\n" + section.substr(9)), damaged,
                     none},
             OpenRow{"an empty subsection", file("xref\n0 0\n" + section.substr(5)), damaged, none},
             OpenRow{"a trailer that is no dictionary", file(section, "[1 0 R]"), Exception::range,
                     none},
             OpenRow{"an odd trailer", file(section, "<</Root>>"), Exception::mark, none},
             OpenRow{"no catalog", file(section, "<</Size 4>>"), none, none},
             OpenRow{"encrypted", file(section, "<</Root 1 0 R/Encrypt<<>>>>"),
                     Exception::crossReference, Exception::crossReference},
             OpenRow{"encrypted, by an object that is not there",
                     file(section, "<</Root 1 0 R/Encrypt 77 0 R>>"), Exception::crossReference,
                     Exception::crossReference},
             OpenRow{"not encrypted", file(section, "<</Root 1 0 R/Encrypt null>>"), none, none},
             OpenRow{"section at the end of the file",
                     file(section, "<</Root 1 0 R>>", "startxref\n9999999\n"), damaged, none},
             OpenRow{"section that is none", file("obj" + section), damaged, none},
             OpenRow{"nothing behind the section", file(section, "", "#section0#"),
                     Exception::range, none},
             OpenRow{"section that goes back to itself",
                     file(section, "<</Root 1 0 R/Prev #section0#>>"), damaged, none},
             OpenRow{"Prev outside the file", file(section, "<</Root 1 0 R/Prev 99999>>"), damaged,
                     none},
             OpenRow{"Prev of the wrong type", file(section, "<</Root 1 0 R/Prev/x>>"),
                     Exception::range, none},
             OpenRow{"an object number beyond all",
                     file("xref\n8388608 1\n0000000009 00000 n \n" + section.substr(5)), damaged,
                     none},
             OpenRow{"an update, encrypted before it", encryptedBefore, Exception::crossReference,
                     Exception::crossReference},
             OpenRow{"shorter than 256 bytes",
                     "%PDF-1.3 1 0 obj<</Pages 2 0 R>>endobj 2 0 obj<</Kids[3 0 R]>>endobj "
                     "3 0 obj<</Type/Page>>endobj xref 0 0 trailer<</Root 1 0 R>>startxref 99",
                     Exception::io, none},
             OpenRow{"empty", "", Exception::io, damaged},
             OpenRow{"no number at all", std::string(300, 'x'), damaged, damaged},
         }) {
        selectRules(Profile::original);
        EXPECT_EQ(opening(row.file), row.original) << row.name;
        selectRules(Profile::extended);
        EXPECT_EQ(opening(row.file), row.extended) << row.name;
        if (row.extended == none) {
            EXPECT_EQ(countCache(*cache_), 1) << row.name;
        }
    }
}

TEST_F(DocumentTest, TheNewestSectionCounts) {
    const std::string file =
        assembled(onePage + "@anobject@5 0 obj<</A 1>>endobj\n@section0@" + section +
                  "5 1\n#anobject# 00000 n \ntrailer<</Root 1 0 R/Old 1>>startxref 0\n"
                  "@updated0@3 0 obj<</Parent 2 0 R/MediaBox[0 0 7 7]>>endobj\n"
                  "@section1@xref\n3 1\n#updated0# 00000 n \n5 1\n0000000000 00001 f \n"
                  "trailer<</Root 1 0 R/Prev #section0#/New 1>>startxref\n#section1#\n%%EOF\n");
    for (const Profile profile : {Profile::original, Profile::extended}) {
        selectRules(profile);
        DocumentCache& cache = open(file);
        pageCache(cache, 1);
        EXPECT_EQ(mediaCache(cache), (Box{0, 0, 7, 7}));
        EXPECT_EQ(cache.sectionOffsets.size(), 2U);
        EXPECT_EQ(typeObject(findEntry(cache, cache.trailer.get(), "Old")), ObjectType::null);
        EXPECT_EQ(weighXRef(), cache.sectionOffsets.front());
    }
    // An object that the update freed is gone.
    EXPECT_EQ(typeObject(object_(*cache_, 5).get()), ObjectType::null);
    EXPECT_EQ(lastIdentity(), 6);
}

TEST_F(DocumentTest, HeaderAndVersion) {
    const std::string plain = PdfBuilder::onePage("").bytes();
    struct HeaderRow {
        const char* name;
        std::string file;
        const char* version;
    };
    const std::string two = "%PDF-2.0" + plain.substr(8);
    const std::string nothing = "%XYZ-1.4" + plain.substr(8);
    for (const HeaderRow& row :
         {HeaderRow{"usual", plain, "1.4"}, HeaderRow{"two", two, "2.0"},
          HeaderRow{"none", nothing, ""},
          HeaderRow{"behind 1,000 bytes", std::string(1000, 'j') + "\n" + plain, "1.4"}}) {
        DocumentCache& cache = open(row.file);
        EXPECT_EQ(cache.version, row.version) << row.name;
        EXPECT_EQ(countCache(cache), 1) << row.name;
        EXPECT_FALSE(cache.repaired) << row.name;
        pageCache(cache, 1);
    }
    selectRules(Profile::original);
    EXPECT_EQ(opening("junk\n" + plain), Exception::structure) << "offsets do not move";
}

TEST_F(DocumentTest, IndirectObjects) {
    struct ObjectRow {
        const char* name;
        const char* body;
        Exception original;
        Exception extended;
    };
    constexpr Exception none = Exception::none;
    constexpr Exception damaged = Exception::structure;
    for (const ObjectRow& row : {
             ObjectRow{"an integer", "7", none, none},
             ObjectRow{"a reference to one", "6 0 R", none, none},
             ObjectRow{"to itself", "5 0 R", damaged, damaged},
             ObjectRow{"in circles", "7 0 R", damaged, damaged},
             ObjectRow{"to what is missing", "99 0 R", Exception::underflow, Exception::range},
             ObjectRow{"of another generation", "6 1 R", Exception::underflow, Exception::range},
             ObjectRow{"two values", "7 8", damaged, damaged},
             ObjectRow{"an unknown word", "7 frob", damaged, none},
             ObjectRow{"no value", "", Exception::underflow, Exception::range},
             ObjectRow{"an array left open", "[7", Exception::range, Exception::range},
             ObjectRow{"a closing bracket", "7 ]", Exception::mark, none},
         }) {
        PdfBuilder file = PdfBuilder::onePage("");
        file.object(5, row.body).object(6, "7").object(7, "8 0 R").object(8, "7 0 R");
        for (const Profile profile : {Profile::original, Profile::extended}) {
            selectRules(profile);
            DocumentCache& cache = open(file);
            const Exception code =
                raisedBy([&] { EXPECT_EQ(integerObject(object_(cache, 5).get()), 7); });
            EXPECT_EQ(code, profile == Profile::original ? row.original : row.extended) << row.name;
            EXPECT_EQ(countStack(), 0) << row.name;
            EXPECT_EQ(cache.input, cache.fileChain.top()) << row.name;
            // And nothing stays marked as being read.
            EXPECT_EQ(integerObject(object_(cache, 6).get()), 7) << row.name;
        }
    }
    DocumentCache& cache = open(PdfBuilder::onePage("").object(5, "7"));
    const auto offset =
        static_cast<std::int32_t>(PdfBuilder::onePage("").object(5, "7").bytes().find("5 0 obj"));
    const auto reading = [&](std::int32_t number, std::int32_t generation, ObjectPlace place) {
        return raisedBy([&] { objectCache(cache, number, generation, place); });
    };
    const ObjectPlace place = ObjectPlace::atOffset(offset);
    EXPECT_EQ(reading(5, 0, place), none);
    EXPECT_EQ(reading(6, 0, place), damaged);
    EXPECT_EQ(reading(5, 1, place), damaged);
    EXPECT_EQ(reading(5, 0, ObjectPlace::atOffset(offset + 2)), Exception::underflow);
    EXPECT_EQ(reading(5, 0, ObjectPlace::atOffset(-1)), damaged);
    EXPECT_EQ(reading(5, 0, ObjectPlace::atOffset(cache.fileLength)), damaged);
    EXPECT_EQ(reading(5, 0, ObjectPlace::inStream(4, 0)), damaged);
}

TEST_F(DocumentTest, ReferencesReadWithinReferencesHaveALimit) {
    const auto chain = [](int length) {
        PdfBuilder file = PdfBuilder::onePage("");
        for (int i = 0; i < length; ++i) {
            // Each stream's Length is in the dictionary of the next.
            file.object(10 + i,
                        "<</Length " + std::to_string(11 + i) + " 0 R>>stream\nx\nendstream");
        }
        return file.object(10 + length, "1").bytes();
    };
    selectRules(Profile::original);
    for (const int length : {1, 20}) {
        DocumentCache& cache = open(chain(length));
        EXPECT_EQ(raisedBy([&] { object_(cache, 10); }),
                  length == 1 ? Exception::none : Exception::structure);
        EXPECT_EQ(cache.work.depth, 0);
    }
}

TEST_F(DocumentTest, StreamsAndTheirLengths) {
    struct StreamRow {
        const char* name;
        std::string body;
        const char* original; ///< null: `range`
        const char* extended;
    };
    const std::string far(20000, 'd');
    for (const StreamRow& row : {
             StreamRow{"right", "<</Length 4>>stream\ndata\nendstream", "data", "data"},
             StreamRow{"CR LF", "<</Length 4>>stream\r\ndata\r\nendstream", "data", "data"},
             StreamRow{"none", "<</Length 0>>stream\n\nendstream", "", ""},
             StreamRow{"by a reference", "<</Length 6 0 R>>stream\ndata\nendstream", "data",
                       "data"},
             StreamRow{"too short", "<</Length 2>>stream\ndata\nendstream", nullptr, "data"},
             StreamRow{"too long", "<</Length 9>>stream\ndata\nendstream", nullptr, "data"},
             StreamRow{"outside the file", "<</Length 2000000000>>stream\ndata\r\nendstream",
                       nullptr, "data"},
             StreamRow{"negative", "<</Length -1>>stream\ndata\rendstream", nullptr, "data"},
             StreamRow{"missing", "<<>>stream\ndata\nendstream", nullptr, "data"},
             StreamRow{"of the wrong type", "<</Length/x>>stream\ndata\nendstream", nullptr,
                       "data"},
             StreamRow{"of an object that is missing", "<</Length 99 0 R>>stream\ndata\nendstream",
                       nullptr, "data"},
             StreamRow{"of the stream itself", "<</Length 5 0 R>>stream\ndata\nendstream", nullptr,
                       "data"},
             StreamRow{"far away", "<</Length 1>>stream\n" + far + "\nendstream", nullptr,
                       far.c_str()},
             StreamRow{"right, with endstream in the data",
                       "<</Length 14>>stream\nendstream data\nendstream", "endstream data",
                       "endstream data"},
         }) {
        PdfBuilder file = PdfBuilder::onePage("");
        file.object(5, row.body).object(6, "4");
        selectRules(Profile::original);
        std::string data = "?";
        const Exception code = raisedBy([&] { data = streamData(file.bytes(), 5); });
        if (row.original != nullptr) {
            EXPECT_EQ(code, Exception::none) << row.name;
            EXPECT_EQ(data, row.original) << row.name;
        } else {
            EXPECT_NE(code, Exception::none) << row.name;
        }
        selectRules(Profile::extended);
        EXPECT_EQ(streamData(file.bytes(), 5), row.extended) << row.name;
    }
}

TEST_F(DocumentTest, SearchingForEndsHasALimit) {
    PdfBuilder file = PdfBuilder::onePage("");
    for (int i = 10; i < 3000; ++i) {
        file.object(i, "<<>>stream\nx");
    }
    DocumentCache& cache = open(file);
    for (int i = 10; i < 3000; ++i) {
        raisedBy([&] { object_(cache, i); });
    }
    EXPECT_LT(cache.work.searchedBytes, 17 * std::int64_t{cache.fileLength});
}

} // namespace
} // namespace corvane
