// The operators of the file's syntax on the operand stack, and the utilities made of them.
#include "reader/syntax/syntax.h"

#include "filters/buffer.h"
#include "filters/memory_filter.h"
#include "objects/stack.h"
#include "reader/syntax/keywords.h"
#include "reader/syntax/token_push.h"
#include "reader/syntax/utility.h"
#include "tests/reader/reader_fixture.h"

#include <gmock/gmock.h>

namespace corvane {
namespace {

std::string objectText(const Object& object);

std::string elementsText(const Object& object) {
    std::string text;
    for (const Object& element : elementsObject(object)) {
        text += (text.empty() ? "" : " ") + objectText(element);
    }
    return text;
}

std::string objectText(const Object& object) {
    switch (object.type) {
    case ObjectType::null:
        return "null";
    case ObjectType::mark:
        return "mark";
    case ObjectType::boolean:
        return booleanObject(object) ? "true" : "false";
    case ObjectType::integer:
        return std::to_string(integerObject(object));
    case ObjectType::fixed:
        return std::to_string(fixedObject(object)) + "f";
    case ObjectType::reference:
        return "R(" + elementsText(object) + ")";
    case ObjectType::literal:
        return "/" + std::string(literalObject(object));
    case ObjectType::text:
        return "(" + std::string(textObject(object)) + ")";
    case ObjectType::block: {
        std::string text = "<";
        for (const std::byte byte : blockObject(object)) {
            text += std::to_string(std::to_integer<int>(byte)) + ".";
        }
        return text + ">";
    }
    case ObjectType::array:
        return "[" + elementsText(object) + "]";
    case ObjectType::dictionary:
        return "<<" + elementsText(object) + ">>";
    case ObjectType::stream:
        return "stream(" + elementsText(object) + ")";
    default:
        return "?";
    }
}

class SyntaxTest : public ReaderTest {
protected:
    void SetUp() override {
        ReaderTest::SetUp();
        PdfBuilder file = PdfBuilder::onePage("");
        file.object(5, "<</Key 6 0 R/Other 8>>").object(6, "7").object(7, "[6 0 R 5 0 R]");
        open(file);
    }

    /// Pushes what the syntax says, words by the tables of objects and cross-references.
    void push(std::string_view input) {
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(std::as_bytes(std::span(input))));
        auto owner = setupToken();
        TokenFilter& tokens = *owner;
        chain.link(std::move(owner));
        TokenPusher pusher(*cache_);
        for (TokenType type = tokens.readToken(); type != TokenType::end;
             type = tokens.readToken()) {
            if (type != TokenType::keyword) {
                pusher.push(type, tokens);
                continue;
            }
            const Keyword* keyword = objectKeywords().find(tokens.bytes());
            keyword = keyword != nullptr ? keyword : crossReferenceKeywords().find(tokens.bytes());
            keyword->handler(*cache_);
        }
    }

    static std::string stackText() {
        std::string text;
        for (std::int32_t i = countStack() - 1; i >= 0; --i) {
            text += (text.empty() ? "" : " ") + objectText(indexStack(i));
        }
        return text;
    }
};

struct SyntaxRow {
    std::string_view input;
    OperatorHandler handler; ///< run when all is pushed; null: none
    std::string_view wanted;
    Exception fault = Exception::none;
};

TEST_F(SyntaxTest, ConstructsQueriesAndEntries) {
    constexpr Exception range = Exception::range;
    constexpr Exception type = Exception::type;
    constexpr Exception mark = Exception::mark;
    constexpr Exception few = Exception::underflow;
    for (const Profile profile : {Profile::original, Profile::extended}) {
        selectRules(profile);
        for (const SyntaxRow& row : {
                 SyntaxRow{"<48 65 6c6C 6F> <4> <>", nullptr, "<72.101.108.108.111.> <64.> <>"},
                 SyntaxRow{"<4x>", nullptr, "", type},
                 SyntaxRow{"[1 [(x)] {1 2} /A null true]", nullptr, "[1 [(x)] [1 2] /A null true]"},
                 SyntaxRow{"<</A 1/B[2]/A 3>>", nullptr, "<</A 1 /B [2] /A 3>>"},
                 SyntaxRow{"<</A 1/B>>", nullptr, "", mark},
                 SyntaxRow{"1 ]", nullptr, "", mark},
                 SyntaxRow{"[1 >>", nullptr, "", mark},
                 SyntaxRow{"{1 ]", nullptr, "", mark},
                 SyntaxRow{"5 0 R 1.5 false", nullptr, "R(5 0) 98304f false"},
                 SyntaxRow{"5 R", nullptr, "", few},
                 SyntaxRow{"/x 0 R", nullptr, "", range},
                 SyntaxRow{"1 2", voidOperator, "1 2"},
                 SyntaxRow{"1 2", submergeOperator, "1 2"},
                 SyntaxRow{"1 2", surfaceOperator, "1 2"},
                 SyntaxRow{"1 2", duplicateOperator, "1 2 2"},
                 SyntaxRow{"[1 (x)]", copyOperator, "[1 (x)]"},
                 SyntaxRow{"[1 (x)] [1 (x)]", equalOperator, "true"},
                 SyntaxRow{"[1 (x)] [(x) 1]", equalOperator, "false"},
                 SyntaxRow{"1", equalOperator, "", few},
                 SyntaxRow{"[1 2 3]", countOperator, "3"},
                 SyntaxRow{"<</A 1/B 2/C 3>>", countOperator, "3"},
                 SyntaxRow{"7", countOperator, "", range},
                 SyntaxRow{"[1 (b) 3] 1", indexOperator, "(b)"},
                 SyntaxRow{"[1] 1", indexOperator, "", type},
                 SyntaxRow{"[1] -1", indexOperator, "", type},
                 SyntaxRow{"<<>> 0", indexOperator, "", range},
                 SyntaxRow{"<</A 1/B(2)>> 1", entryOperator, "/B (2)"},
                 SyntaxRow{"<</A 1/B(2)>> 2", entryOperator, "", type},
                 SyntaxRow{"<</A 1>> 2147483647", entryOperator, "", type},
                 SyntaxRow{"<</A 1>> -1", entryOperator, "", type},
                 SyntaxRow{"<</A 1/B(2)/C 3>> /A", lookupOperator, "1"},
                 SyntaxRow{"<<(A) 1/B(2)>> /A", lookupOperator, "null"},
                 SyntaxRow{"[] /A", lookupOperator, "", range},
                 SyntaxRow{"<</A 1/B(2)>> 1.0", tableOperator, "(2)"},
                 SyntaxRow{"<</A 1/B(2)>> 0.5", tableOperator, "", range},
                 SyntaxRow{"<</A 1/B(2)>> 2.0", tableOperator, "", type},
                 SyntaxRow{"<</A 1/B(2)>> 1", tableOperator, "", range},
                 SyntaxRow{"7 0 R", resolveOperator, "[R(6 0) R(5 0)]"},
                 SyntaxRow{"9 9 0 0 f", nullptr, "10 8"},
                 SyntaxRow{"9 2 0 0 f 0 0 n", nullptr, ""},
                 SyntaxRow{"9 3 17 0 n", nullptr, "10 2"},
                 SyntaxRow{"9 3 17 n", nullptr, "", few},
                 SyntaxRow{"8388607 1 0 0 n", nullptr, ""},
                 SyntaxRow{"8388608 1 0 0 n", nullptr, "", Exception::structure},
                 SyntaxRow{"-1 1 0 0 f", nullptr, "", Exception::structure},
                 SyntaxRow{"<<>> startxref", nullptr, "<<>>"},
                 SyntaxRow{"1 startxref", nullptr, "", range},
                 SyntaxRow{"<<>> endstream", nullptr, "", range},
                 SyntaxRow{"7", contextOperator, "", range},
                 SyntaxRow{"null", contextOperator, ""},
                 SyntaxRow{"/A", listingOperator, "null"},
                 SyntaxRow{"/A /B", resourceOperator, "null"},
                 SyntaxRow{"<</ProcSet[/PDF/Text]/Font<</F 6 0 R>>/Bad 7/Odd[7]>>", contextOperator,
                           ""},
                 SyntaxRow{"/ProcSet /Text", resourceOperator, "true"},
                 SyntaxRow{"/ProcSet /ImageC", resourceOperator, "false"},
                 SyntaxRow{"/Font /F", resourceOperator, "7"},
                 SyntaxRow{"/Font /G", resourceOperator, "null"},
                 SyntaxRow{"/XObject /F", resourceOperator, "null"},
                 SyntaxRow{"/Bad /F", resourceOperator, "", range},
                 SyntaxRow{"/Odd /F", resourceOperator, "", range},
                 SyntaxRow{"/Font", listingOperator, "<</F R(6 0)>>"},
             }) {
            const Exception code = raisedBy([&] {
                push(row.input);
                if (row.handler != nullptr) {
                    EXPECT_EQ(row.handler(*cache_), 0);
                }
            });
            EXPECT_EQ(code, row.fault) << row.input;
            if (code == Exception::none) {
                EXPECT_EQ(stackText(), row.wanted) << row.input;
            }
            clearStack();
        }
    }
}

TEST_F(SyntaxTest, FailedAllocationsLeaveNothing) {
    for (const std::string_view input : {"<48656c6c6f>", "[1 [2] (x)]", "<</A<</B 1>>>>"}) {
        EXPECT_GT(failEachAllocation([&] {
                      const StackGuard guard;
                      push(input);
                  }),
                  1)
            << input;
    }
}

TEST_F(SyntaxTest, Utilities) {
    struct UtilityRow {
        std::string_view input;
        void (*utility)(DocumentCache&);
        std::string_view wanted;
        Exception fault = Exception::none;
    };
    for (const UtilityRow& row : {
             UtilityRow{"7 0 R", [](DocumentCache& c) { indexUtility(c, 0, true); }, "7"},
             UtilityRow{"7 0 R", [](DocumentCache& c) { indexUtility(c, 0, false); }, "R(6 0)"},
             UtilityRow{"5 0 R", [](DocumentCache& c) { indexUtility(c, 0, false); }, "",
                        Exception::range},
             UtilityRow{"5 0 R", [](DocumentCache& c) { entryUtility(c, 0, true); }, "/Key 7"},
             UtilityRow{"5 0 R", [](DocumentCache& c) { lookupUtility(c, "Key", false); },
                        "R(6 0)"},
             UtilityRow{"5 0 R", [](DocumentCache& c) { lookupUtility(c, "Key", true); }, "7"},
             UtilityRow{"5 0 R", [](DocumentCache& c) { lookupUtility(c, "None", true); }, "null"},
             UtilityRow{"<</W 1/Width 2>>",
                        [](DocumentCache& c) { abbrevUtility(c, "Width", "W"); }, "2"},
             UtilityRow{"<</W 1/Width null>>",
                        [](DocumentCache& c) { abbrevUtility(c, "Width", "W"); }, "1"},
             UtilityRow{"<<>>", [](DocumentCache& c) { abbrevUtility(c, "Width", "W"); }, "null"},
             UtilityRow{"[1.2 2 3 40000]",
                        [](DocumentCache& c) {
                            const PixelRect rect = rectUtility(c);
                            EXPECT_EQ(rect.left, 1);
                            EXPECT_EQ(rect.bottom, 2);
                            EXPECT_EQ(rect.right, 3);
                            EXPECT_EQ(rect.top, 32767);
                        },
                        ""},
             UtilityRow{"[1 2 3]", [](DocumentCache& c) { rectUtility(c); }, "", Exception::type},
         }) {
        EXPECT_EQ(raisedBy([&] {
                      push(row.input);
                      row.utility(*cache_);
                  }),
                  row.fault)
            << row.input;
        EXPECT_EQ(row.fault == Exception::none ? stackText() : "", row.wanted) << row.input;
        clearStack();
    }
}

TEST_F(SyntaxTest, LinesOfAnyEnd) {
    const std::string text = "first\r\nsecond\n" + std::string(300, 'x') + "\rlast";
    for (const bool buffered : {false, true}) {
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(std::as_bytes(std::span(text))));
        if (buffered) {
            chain.link(setupBuffer(16));
        }
        std::array<char, 256> line{};
        std::vector<std::string> lines;
        while (readToLine(line, *chain.top())) {
            lines.emplace_back(line.data());
        }
        EXPECT_THAT(lines, ::testing::ElementsAre("first", "", "second", std::string(255, 'x'),
                                                  std::string(45, 'x'), "last"));
    }
}

} // namespace
} // namespace corvane
