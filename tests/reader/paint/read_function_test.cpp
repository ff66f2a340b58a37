#include "reader/paint/function.h"
#include "reader/syntax/syntax.h"
#include "tests/reader/reader_fixture.h"

#include <string>

namespace corvane {
namespace {

class ReadFunctionTest : public ReaderTest {
protected:
    FunctionPointer function(const PdfBuilder& file) {
        ObjectOwner reference;
        indirectObject(reference.get(), 5, 0);
        return readFunction(open(file), reference.get());
    }
};

TEST_F(ReadFunctionTest, NestedPiecesAreReadOnceAndBounded) {
    const auto nested = [&](int pieces) {
        PdfBuilder file = PdfBuilder::onePage("");
        for (int number = 5; number < 8; ++number) {
            std::string functions;
            std::string bounds;
            for (int i = 0; i < pieces; ++i) {
                functions += std::to_string(number + 1) + " 0 R ";
                bounds += i == 0 ? "" : std::to_string(i) + " ";
            }
            file.object(number, "<</FunctionType 3/Domain[0 " + std::to_string(pieces) +
                                    "]/Functions[" + functions + "]/Bounds[" + bounds + "]>>");
        }
        file.object(8, "<</FunctionType 2/Domain[0 1]/N 1>>");
        return file;
    };
    EXPECT_NE(function(nested(10)), nullptr);
    const std::int64_t places = cache_->work.places;
    EXPECT_EQ(function(nested(1000)), nullptr);
    EXPECT_LT(cache_->work.places, places + 100);
}

TEST_F(ReadFunctionTest, SizesPastTheHostsNumbers) {
    const FunctionPointer read = function(PdfBuilder::onePage("").stream(
        5, std::string(65535, '\0') + "\xFF",
        "/FunctionType 0/Domain[0 1]/Range[0 1]/Size[65536]/BitsPerSample 8"));
    ASSERT_NE(read, nullptr);
    double out = 0;
    const double half = 0.6;
    read->evaluate({&half, 1}, {&out, 1});
    EXPECT_EQ(out, 0);
    const double end = 1;
    read->evaluate({&end, 1}, {&out, 1});
    EXPECT_EQ(out, 1);
}

TEST_F(ReadFunctionTest, ResultsThatAreNoNumbers) {
    // Infinity, times a colour that does not change.
    const FunctionPointer read = function(
        PdfBuilder::onePage("").object(5, "<</FunctionType 2/Domain[0 2]/N 2000000/C0[0]/C1[0]>>"));
    ASSERT_NE(read, nullptr);
    double out = 1;
    const double end = 2;
    read->evaluate({&end, 1}, {&out, 1});
    EXPECT_EQ(out, 0);
}

TEST_F(ReadFunctionTest, SamplesAreCountedForThePage) {
    const PdfBuilder file = PdfBuilder::onePage("").stream(
        5, "", "/FunctionType 0/Domain[0 1 0 1]/Range[0 1]/Size[1024 1024]/BitsPerSample 8");
    DocumentCache& cache = open(file);
    ObjectOwner reference;
    indirectObject(reference.get(), 5, 0);
    EXPECT_EQ(raisedBy([&] {
                  for (int i = 0; i < 65; ++i) {
                      readFunction(cache, reference.get());
                  }
              }),
              Exception::limit);
}

} // namespace
} // namespace corvane
