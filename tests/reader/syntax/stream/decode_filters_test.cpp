// Content in every encoding that a stream's dictionary can name, drawn through the whole reader.
#include "reader/syntax/stream/decode_filters.h"

#include "filters/coding/hex.h"
#include "objects/stack.h"
#include "reader/syntax/stream/stream_filters.h"
#include "reader/syntax/syntax.h"
#include "tests/filters/decode_check.h"
#include "tests/filters/lzw_reference.h"
#include "tests/reader/art_text.h"
#include "tests/reader/reader_fixture.h"

#include <vector>
#include <zlib.h>

namespace corvane {
namespace {

using namespace test;

constexpr std::string_view drawing = "0 0 m 10 20 l 30 40 l S";

std::string hexEncoded(std::string_view plain) {
    return encoded([] { return setupHex(AsciiMode::write); }, plain, 8192) + ">";
}

std::string deflated(std::string_view plain) {
    std::vector<Bytef> data(compressBound(plain.size()));
    uLongf size = data.size();
    const std::vector<Bytef> copy(plain.begin(), plain.end());
    EXPECT_EQ(compress2(data.data(), &size, copy.data(), copy.size(), 6), Z_OK);
    return {data.begin(), data.begin() + static_cast<std::ptrdiff_t>(size)};
}

class DecodeFiltersTest : public ReaderTest {
protected:
    /// The page's art, and the warnings, of a content stream with these entries.
    std::string drawn(std::string_view content, std::string_view entries,
                      const std::string& other = "null") {
        PdfBuilder file = PdfBuilder::onePage("");
        file.stream(4, content, entries).object(5, other);
        const std::string warned = draw(file.bytes());
        return warned + artText(document(), importedArt());
    }

    /// The code that linking the filters of a stream with these entries raises.
    Exception linking(Profile profile, std::string_view entries) {
        PdfBuilder file = PdfBuilder::onePage("");
        file.stream(4, "", entries);
        DocumentCache& cache = open(file.bytes());
        selectRules(profile);
        const Exception code = raisedBy([&] {
            pushReference(cache, 4);
            const ObjectOwner stream(popStack());
            Chain chain(cache.fileChain.top());
            linkFilters(cache, chain, *stream);
        });
        clearStack();
        selectRules(Profile::extended);
        return code;
    }

    static void pushReference(DocumentCache& cache, std::int32_t number) {
        Object reference;
        indirectObject(reference, number, 0);
        const ObjectOwner owner(reference);
        pushStack(resolveObject(cache, *owner).release());
    }
};

TEST_F(DecodeFiltersTest, ContentInAnyEncodingDrawsTheSame) {
    const std::string wanted = drawn(drawing, "");
    ASSERT_NE(wanted, "");
    const std::string run =
        std::string(1, static_cast<char>(drawing.size() - 1)) + std::string(drawing) + "\x80";
    const std::string rows = "\x02" + std::string(drawing); // one PNG row, up
    struct Row {
        const char* name;
        std::string content;
        std::string entries;
        std::string other = "null";
    };
    const std::string columns = "/Columns " + std::to_string(drawing.size());
    const Row table[] = {
        {"hexadecimal", hexEncoded(drawing), "/Filter /ASCIIHexDecode"},
        {"abbreviated", hexEncoded(drawing), "/Filter /AHx"},
        {"base-85", R"(0H`%lD'1Pe+>PVnC`kMf+>bbpC`lX~>)", "/Filter /ASCII85Decode"},
        {"LZW", lzwEncode(drawing), "/Filter /LZWDecode"},
        {"run length", run, "/Filter [/RunLengthDecode]"},
        {"deflate", deflated(drawing), "/Filter /FlateDecode"},
        {"two", hexEncoded(lzwEncode(drawing)), "/Filter [/AHx /LZW]"},
        {"three", hexEncoded(hexEncoded(deflated(drawing))), "/Filter [/AHx /AHx /Fl]"},
        {"no filters", std::string(drawing), "/Filter []"},
        {"null", std::string(drawing), "/Filter null /DecodeParms null"},
        {"null parameters", hexEncoded(deflated(drawing)),
         "/Filter [/AHx /Fl] /DecodeParms [null null]"},
        {"parameters for one", hexEncoded(deflated(rows)),
         "/Filter [/AHx /Fl] /DecodeParms [null << /Predictor 12 " + columns + " >>]"},
        {"predictor of LZW", lzwEncode(rows),
         "/Filter /LZW /DecodeParms << /Predictor 15 " + columns + " >>"},
        {"filter elsewhere", hexEncoded(drawing), "/Filter 5 0 R", "/AHx"},
        {"filters elsewhere", hexEncoded(drawing), "/Filter 5 0 R", "[/AHx]"},
        {"an element elsewhere", hexEncoded(drawing), "/Filter [5 0 R]", "/AHx"},
        {"parameters elsewhere", deflated(rows), "/Filter /Fl /DecodeParms 5 0 R",
         "<< /Predictor 12 " + columns + " >>"},
        {"identity", hexEncoded(drawing),
         "/Filter [/Crypt /AHx] /DecodeParms [<< /Name /Identity >> null]"},
        {"identity unnamed", std::string(drawing), "/Filter /Crypt"},
        {"data behind the end", hexEncoded(drawing) + " 41 trailing", "/Filter /AHx"},
    };
    for (const Row& row : table) {
        EXPECT_EQ(drawn(row.content, row.entries, row.other), wanted) << row.name;
    }
}

TEST_F(DecodeFiltersTest, EarlyChangeIsRead) {
    // Long enough for the width to grow, which it does one code later without early change.
    std::string plain(drawing);
    while (plain.size() < 3000) {
        plain += " " + std::to_string(plain.size()) + " 7 m";
    }
    const std::string data = lzwEncode(plain);
    ASSERT_EQ(lzwDecode(data, 1).bytes, plain);
    ASSERT_NE(lzwDecode(data, 0).bytes, plain);
    const std::string wanted = drawn(plain, "");
    EXPECT_EQ(drawn(data, "/Filter /LZW /DecodeParms << /EarlyChange 1 >>"), wanted);
    EXPECT_NE(drawn(data, "/Filter /LZW /DecodeParms << /EarlyChange 0 >>"), wanted);
}

TEST_F(DecodeFiltersTest, NamesAndParametersThatAreRefused) {
    struct Row {
        const char* entries;
        Exception original;
        Exception extended;
    };
    constexpr Exception none = Exception::none;
    constexpr Exception range = Exception::range;
    std::string many = "/Filter [";
    for (int i = 0; i < 17; ++i) {
        many += "/AHx ";
    }
    many += "]";
    const Row table[] = {
        {"/Filter /AHx", none, none},
        {"/Filter /A85", none, none},
        {"/Filter /LZW", none, none},
        {"/Filter /RL", none, none},
        {"/Filter /CCF", none, none},
        {"/Filter /DCT", none, none},
        {"/Filter [/A85 /DCT] /DecodeParms [null null]", none, none},
        {"/Filter /CCITTFaxDecode /DecodeParms << /K -1 /Columns 100 /BlackIs1 true >>", none,
         none},
        {"/Filter /CCF /DecodeParms << /K true >>", range, range},
        {"/Filter /CCF /DecodeParms << /BlackIs1 1 >>", range, range},
        {"/Filter /CCF /DecodeParms /K", range, none},
        {"/Filter /Fl", range, none},
        {"/Filter /FlateDecode", range, none},
        {"/Filter /Crypt", range, none},
        {"/Filter /Crypt /DecodeParms << /Name /StdCF >>", range, range},
        {"/Filter /Flate", range, range},
        {"/Filter /JPXDecode", range, range},
        {"/Filter 12", range, range},
        {"/Filter [null]", range, range},
        {"/Filter /LZW /DecodeParms << /Predictor 12 /Columns 0 >>", none, range},
        {"/Filter /LZW /DecodeParms << /Predictor /Up >>", none, range},
        {"/Filter /LZW /DecodeParms (text)", none, none},
        {many.c_str(), Exception::structure, Exception::structure},
    };
    for (const Row& row : table) {
        EXPECT_EQ(linking(Profile::original, row.entries), row.original) << row.entries;
        EXPECT_EQ(linking(Profile::extended, row.entries), row.extended) << row.entries;
    }
}

TEST_F(DecodeFiltersTest, AStreamThatIsCutShortDrawsWhatThereIs) {
    std::string plain(drawing);
    std::uint32_t state = 1;
    while (plain.size() < 20'000) {
        state = state * 1664525U + 1013904223U;
        plain += " " + std::to_string(state >> 20) + " w";
    }
    const std::string data = deflated(plain);
    EXPECT_NE(drawn(data.substr(0, data.size() / 2), "/Filter /Fl").find(","), std::string::npos);
}

} // namespace
} // namespace corvane
