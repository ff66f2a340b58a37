// Cross-reference streams and object streams that are not as they should be.
#include "reader/syntax/syntax.h"
#include "tests/reader/reader_fixture.h"
#include "tests/support/revision_writer.h"

namespace corvane {
namespace {

using test::RevisionWriter;
using test::Section;

class StreamSectionTest : public ReaderTest {
protected:
    /// Catalog, tree and page.
    static RevisionWriter onePage() {
        RevisionWriter file;
        file.object(1, "<</Pages 2 0 R>>")
            .object(2, "<</Kids[3 0 R]/Count 1>>")
            .object(3, "<</Parent 2 0 R/MediaBox[0 0 9 9]>>");
        return file;
    }
    static std::string replaced(std::string text, const std::string& from, const std::string& to) {
        const std::size_t at = text.rfind(from);
        EXPECT_NE(at, std::string::npos) << from;
        return text.replace(at, from.size(), to);
    }
    /// Object 5: an integer, "null", or the code that reading it raises.
    std::string five(RevisionWriter& file) {
        DocumentCache& cache = open(file.end(Section::stream).bytes());
        EXPECT_FALSE(cache.repaired);
        std::string text;
        const Exception code = raisedBy([&] {
            ObjectOwner reference;
            indirectObject(reference.get(), 5, 0);
            const ObjectOwner object = readableObject(cache, reference.get());
            text = typeObject(object.get()) == ObjectType::null
                       ? "null"
                       : std::to_string(integerObject(object.get()));
        });
        EXPECT_EQ(countStack(), 0);
        EXPECT_EQ(cache.work.depth, 0);
        EXPECT_EQ(cache.input, cache.fileChain.top());
        return code == Exception::none ? text : "code " + std::to_string(static_cast<int>(code));
    }
};

TEST_F(StreamSectionTest, SectionsWithoutAFormAreSearchedFor) {
    RevisionWriter writer = onePage();
    const std::string file = writer.end(Section::stream).bytes();
    const std::string place = file.substr(file.rfind("startxref") + 10, 3);
    struct Row {
        std::string from;
        std::string to;
        bool isRead;
    };
    const std::string index = "/Index[1 4 ]";
    const std::string widths = "/W[1 3 2]";
    for (const Row& row : {
             Row{index, index, true},
             Row{index, "/Index[1 99]", true},
             Row{index, "/Index[1 4 7]", true},
             Row{index, "/Index[1 4 0 0]", true},
             Row{index, "/Index[1 3]", true},
             Row{index, "/Index[1 -4]", false},
             Row{index, "/Index[-1 4]", false},
             Row{index, "/Index[8388606 4]", false},
             Row{index, "/Index[2147483647 4]", false},
             Row{index, "/Index[/a 4]", false},
             Row{index, "/Index 4", false},
             Row{index, "", false}, // entries from 0 on: the catalog is no catalog
             Row{widths, "/W[1 3 2 0]", true},
             Row{widths, "/W[1 3 1 1]", true},
             Row{widths, "/W[1 3]", false},
             Row{widths, "/W[1 9 2]", false},
             Row{widths, "/W[-1 3 4]", false},
             Row{widths, "/W[0 0 0]", false},
             Row{widths, "/W[4294967297 3 2]", false},
             Row{widths, "/W[/a 3 2]", false},
             Row{widths, "/W 6", false},
             Row{widths, "", false},
             Row{"/Root", "/Prev " + place + "/Root", false},
             Row{"/Type/XRef", "/Type/XRef/Prev 99999999", false},
             Row{"/Length", "/Filter/None/Length", false},
         }) {
        SCOPED_TRACE(row.to);
        const DocumentCache& cache = open(replaced(file, row.from, row.to));
        EXPECT_EQ(cache.repaired, !row.isRead);
        EXPECT_EQ(cache.pages.size(), 1U);
    }
    EXPECT_EQ(opening(replaced(file, "/Root", "/Encrypt 9 0 R/Root")), Exception::crossReference);
}

TEST_F(StreamSectionTest, WhatObjectStreamsHold) {
    struct Row {
        const char* entries;
        const char* data;
        const char* value; ///< of object 5, which the cross-reference has at index 0
    };
    for (const Row& row : {
             Row{"/N 1/First 4", "5 0 7", "7"},
             Row{"/N 9/First 4", "5 0 7", "7"},
             Row{"/N 2/First 8", "4 0 5 2 6 7", "7"},
             Row{"/N 2/First 8", "5 2 4 0 6 7", "7"},
             Row{"/N 3/First 12", "5 2 9 1 4 0 6 7", "7"},
             Row{"/N 2/First 9", "4 99 5 0 7", "7"},
             Row{"/N 2/First 8", "5 0 4 2 1 0 R", "1"},
             Row{"/N 1/First 4", "5 0 8 0 R", "70"},
             Row{"/N 1/First 4", "5 0 7 endobj", "7"},
             Row{"/N 1/First 4", "5 0 null", "null"},
             Row{"/N 1/First 4", "5 0  ", "null"},
             Row{"/N 2/First 8", "5 0 4 0 7", "7"},
             Row{"/N 1/First 4", "4 0 7", "code 12"},
             Row{"/N 0/First 4", "5 0 7", "code 12"},
             Row{"/N 1/First 5", "5 0 7", "code 12"},
             Row{"/N 1/First 99", "5 0 7", "code 12"},
             Row{"/N 1/First 4", "5 9 7", "code 12"},
             Row{"/N -1/First 4", "5 0 7", "code 12"},
             Row{"/First 4", "5 0 7", "code 12"},
             Row{"/N 1", "5 0 7", "code 12"},
             Row{"/N 1/First 4", "5 0 <</Length 1>>stream\nx\nendstream", "code 12"},
             Row{"/N 1/First 4", "5 0 [1 2", "code 15"},
             Row{"/N 1/First 4/Filter 5 0 R", "5 0 7", "7"},
             Row{"/N 5 0 R/First 4", "5 0 7", "code 12"},
             Row{"/N 1/First 4/Length 5 0 R", "5 0 7", "7"},
         }) {
        SCOPED_TRACE(row.data);
        RevisionWriter file = onePage();
        const std::string length =
            std::string_view(row.entries).find("Length") == std::string_view::npos
                ? "/Length " + std::to_string(std::string_view(row.data).size())
                : "";
        file.object(6, "<<" + length + row.entries + ">>stream\n" + row.data + "\nendstream")
            .object(8, "70")
            .entry(5, 2, 6, 0);
        EXPECT_EQ(five(file), row.value) << row.entries;
    }
}

TEST_F(StreamSectionTest, ObjectStreamsStandInTheFile) {
    for (const int stream : {3, 5, 6, 7, 99}) {
        RevisionWriter file = onePage();
        file.member(7, 6, "<</N 1/First 4>>").entry(5, 2, stream, 0);
        EXPECT_EQ(five(file), "code 12") << stream;
    }
    RevisionWriter file = onePage();
    file.entry(5, 2, 0, 0);
    EXPECT_EQ(five(file), "null");
}

TEST_F(StreamSectionTest, ObjectStreamsAreDecodedOnce) {
    RevisionWriter file = onePage();
    for (int number = 10; number < 1010; ++number) {
        file.member(5 + number % 4, number, std::to_string(number));
    }
    DocumentCache& cache = open(file.end(Section::stream).bytes());
    for (int round = 0; round < 2; ++round) {
        for (int number = 10; number < 1010; ++number) {
            ObjectOwner reference;
            indirectObject(reference.get(), number, 0);
            ASSERT_EQ(integerObject(resolveObject(cache, reference.get()).get()), number);
        }
        flushReference(*cache.references);
    }
    EXPECT_LT(cache.work.unpackedBytes, cache.fileLength);
}

} // namespace
} // namespace corvane
