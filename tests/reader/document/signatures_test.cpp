#include "reader/document/signatures.h"

#include "runtime/budget.h"
#include "tests/reader/reader_fixture.h"
#include "tests/support/signed_file.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

class SignaturesTest : public ReaderTest {
protected:
    /// Count, of the file, of a revision, certified.
    std::string facts(const std::string& bytes) {
        const SignatureFacts facts = signaturesOf(open(bytes));
        return std::to_string(facts.count) + " " + std::to_string(facts.ofFile) + " " +
               std::to_string(facts.ofRevision) + (facts.certified ? " certified" : "");
    }
};

const std::string more = "7 0 obj\n" + std::string(100, ' ') + "null\nendobj\n";

TEST_F(SignaturesTest, FieldsThatHoldOne) {
    const std::string direct = "<</FT/Sig/V<</Type/Sig>>>>";
    struct Row {
        const char* what;
        std::string fields;
        std::string wanted;
        std::string catalog = {};
    };
    for (const Row& row : {
             Row{"none", "null", "0 0 0"},
             Row{"no array", "7", "0 0 0"},
             Row{"a field", "[5 0 R]", "1 1 0"},
             Row{"a field twice", "[5 0 R 5 0 R]", "1 1 0"},
             Row{"the type from above", "[<</FT/Sig/Kids[<</V 6 0 R>>]>>]", "1 1 0"},
             Row{"type and value from above", "[<</V 6 0 R/Kids[<</FT/Sig>><</FT/Sig>>]>>]",
                 "1 1 0"},
             Row{"another type below", "[<</FT/Sig/Kids[<</FT/Tx/V 6 0 R>>]>>]", "0 0 0"},
             Row{"no value", "[<</FT/Sig>><</FT/Sig/V null>><</FT/Sig/V 99 0 R>>]", "0 0 0"},
             Row{"no range", "[" + direct + direct + "5 0 R]", "3 1 0"},
             Row{"behind damage", "[7<</FT 7/Kids 7>><</Kids[8 0 R]>>99 0 R 5 0 R]", "1 1 0"},
             Row{"a loop", "[8 0 R]", "1 1 0"},
             Row{"damaged ranges",
                 "[<</FT/Sig/V<</ByteRange[0 9 9]>>>><</FT/Sig/V<</ByteRange[0(a)9 9]>>>>"
                 "<</FT/Sig/V<</ByteRange[0 9 9 2147483647]>>>>"
                 "<</FT/Sig/V<</ByteRange[9 9 9 9]>>>>]",
                 "4 0 0"},
             Row{"certified by the catalog", "[5 0 R]", "1 1 0 certified",
                 "/Perms<</DocMDP 6 0 R>>"},
             Row{"a catalog that certifies nothing", "[5 0 R]", "1 1 0",
                 "/Perms<</DocMDP null/UR3 6 0 R>>"},
             Row{"certified by the signature",
                 "[<</FT/Sig/V<</Reference[7<</TransformMethod/FieldMDP>>"
                 "<</TransformMethod/DocMDP>>]>>>>]",
                 "1 0 0 certified"},
         }) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(facts(test::signedFile(row.fields, row.catalog)), row.wanted);
    }
}

TEST_F(SignaturesTest, WhatTheyCover) {
    const std::string file = test::signedFile("[5 0 R]");
    EXPECT_EQ(facts(file + "\r\n"), "1 1 0") << "an end of line does not count";
    const std::string appended = file + more + file.substr(file.rfind("startxref"));
    EXPECT_EQ(facts(appended), "1 0 1");
    EXPECT_EQ(facts(test::signedFile("[5 0 R]", "", -1)), "1 1 0") << "the last end of line is not";
    EXPECT_EQ(facts(test::signedFile("[5 0 R]", "", -5)), "1 0 0") << "in the middle of the mark";
    EXPECT_EQ(facts(test::signedFile("[5 0 R]", "", +1)), "1 0 0") << "more than there is";
}

TEST_F(SignaturesTest, FormsWithoutEndAreGivenUp) {
    // Each level has the one below it three times.
    PdfBuilder builder = PdfBuilder::onePage("");
    builder.object(1, "<</Type/Catalog/Pages 2 0 R/AcroForm<</Fields 10 0 R>>>>");
    for (int number = 10; number < 30; ++number) {
        const std::string kids = "<</Kids " + std::to_string(number + 1) + " 0 R>>";
        builder.object(number, "[" + kids + kids + kids + "]");
    }
    const std::string bytes = builder.bytes();
    EXPECT_EQ(raisedBy([&] { signaturesOf(open(bytes)); }), Exception::limit);
}

} // namespace
} // namespace corvane
