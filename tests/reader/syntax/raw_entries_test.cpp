// Entries of dictionaries as the bytes of the file.
#include "reader/syntax/raw_entries.h"

#include "runtime/budget.h"
#include "tests/reader/reader_fixture.h"

#include <gmock/gmock.h>

namespace corvane {
namespace {

class RawEntriesTest : public ReaderTest {
protected:
    /// Object 5 of a file as "key|value" in order; the code where it raises.
    std::string entries(const std::string& body) {
        DocumentCache& cache =
            open(PdfBuilder::onePage("").object(5, body).object(6, "<</In 6>>").object(7, "6 0 R"));
        std::string text;
        const Exception code = raisedBy([&] {
            for (const RawEntry& entry : rawEntries(cache, 5, 0)) {
                text += entry.key + "|" + rawValue(cache, entry) + ";";
            }
        });
        EXPECT_EQ(cache.input, cache.fileChain.top()) << "the file is read as before";
        return code == Exception::none ? text : std::to_string(static_cast<int>(code));
    }
};

TEST_F(RawEntriesTest, ValuesOfEveryKind) {
    struct Row {
        const char* body;
        const char* entries;
    };
    for (const Row& row : {
             Row{"<<>>", ""},
             Row{"<</A 1/B 2.50>>", "A|1;B|2.50;"},
             Row{"<< /A 1 0 R /B 2 0 R/C 3>>", "A|1 0 R;B|2 0 R;C|3;"},
             Row{"<</A/B/C true/D null>>", "A|/B;C|true;D|null;"},
             Row{"<</A[1[2 <</B(])>>]{}]/B<0A 0B>/C()>>", "A|[1[2 <</B(])>>]{}];B|<0A 0B>;C|();"},
             Row{"<</A<</B<</C<<>>>>>>/B(>>)>>", "A|<</B<</C<<>>>>>>;B|(>>);"},
             Row{"<</A%x\n1%y\n/B 2 % >>\n>>", "A|%x\n1;B|2;"},
             Row{"<</#41 1/A 2/ 3>>", "A|2;|3;"},
             Row{"6 0 R", "In|6;"},
             Row{"7 0 R", "In|6;"},
             Row{"5 0 R", "12"},
             Row{"99 0 R", "12"},
             Row{"[1]", "12"},
             Row{"7", "12"},
             Row{"<</A>>", "12"},
             Row{"<</A 1 2", "12"},
             Row{"<</A]>>", "12"},
             Row{"<<1 2>>", "12"},
             Row{"<</A[", "12"},
         }) {
        EXPECT_EQ(entries(row.body), row.entries) << row.body;
    }
    EXPECT_EQ(entries("<</A " + std::string(513, '[') + std::string(513, ']') + ">>"), "12");
    EXPECT_EQ(entries("<</A(" + std::string(budget::keptEntryBytes, 'x') + ")>>"), "1");
}

TEST_F(RawEntriesTest, DictionariesWithin) {
    DocumentCache& cache = open(PdfBuilder::onePage("")
                                    .object(5, "<</A<</B 1.0>>/C 7 0 R/D 3/E 8 0 R/F[<</G 1>>]>>")
                                    .object(6, "<</In 6>>")
                                    .object(7, "6 0 R"));
    std::string text;
    for (const RawEntry& entry : rawEntries(cache, 5, 0)) {
        text += entry.key + ":";
        for (const RawEntry& inner : rawEntries(cache, entry)) {
            text += inner.key + "|" + rawValue(cache, inner);
        }
        text += ";";
    }
    EXPECT_EQ(text, "A:B|1.0;C:In|6;D:;E:;F:;");
    EXPECT_EQ(raisedBy([&] { rawEntries(cache, 5, 1); }), Exception::structure);
    findReference(*cache.references, 5, 0)->move(ObjectPlace::inStream(6, 0));
    EXPECT_EQ(raisedBy([&] { rawEntries(cache, 5, 0); }), Exception::structure);
}

TEST_F(RawEntriesTest, OfEqualKeysTheOneThatCounts) {
    const std::string body = "<</A 1/B 2/A<</A 3/A 4>>/#41 5/C 6>>";
    EXPECT_EQ(entries(body), "A|5;B|2;C|6;");
    selectRules(Profile::original);
    EXPECT_EQ(entries(body), "A|1;B|2;#41|5;C|6;");
}

} // namespace
} // namespace corvane
