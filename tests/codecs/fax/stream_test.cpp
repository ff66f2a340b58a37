#include "codecs/fax/stream.h"

#include "codecs/fax/codec.h"
#include "tests/runtime/zone_fixture.h"
#include "tests/support/fax_run.h"

namespace corvane {
namespace {

using Data = std::vector<std::byte>;

class FaxStreamTest : public ZoneTest {};

TEST_F(FaxStreamTest, SourcesAndSinksAreNotTheOther) {
    const Data data{std::byte{1}, std::byte{2}};
    test::MemoryPort port(data);
    FaxByteStream source;
    cc_fsetup(source, port, 0);
    EXPECT_EQ(cc_fputc(7, source), -1);
    EXPECT_EQ(cc_fgetc(source), 1);
    EXPECT_EQ(cc_fgetc(source), 2);
    EXPECT_FALSE(cc_feof(source));
    EXPECT_EQ(cc_fgetc(source), -1);
    EXPECT_TRUE(cc_feof(source));
    EXPECT_EQ(cc_fgetc(source), -1);
    cc_ungetc(2, source);
    EXPECT_EQ(cc_fgetc(source), 2);
    source.failed = true;
    EXPECT_EQ(cc_fgetc(source), -1);
    FaxByteStream sink;
    cc_fsetup(sink, port, 1);
    EXPECT_EQ(cc_fgetc(sink), -1);
    EXPECT_EQ(raisedBy([&] { cc_ungetc(1, sink); }), Exception::codec);
    EXPECT_EQ(cc_fputc(7, sink), 7);
    EXPECT_TRUE(port.sink().empty());
    EXPECT_TRUE(cc_ffinal(sink));
    EXPECT_EQ(port.sink(), Data{std::byte{7}});
}

TEST_F(FaxStreamTest, BytesComeBackInFrontOfABufferFilledAnew) {
    Data data(faxBufferSize + 4);
    for (std::size_t i = 0; i < data.size(); ++i) {
        data[i] = static_cast<std::byte>(i % 251);
    }
    test::MemoryPort port(data);
    FaxByteStream stream;
    cc_fsetup(stream, port, 0);
    for (std::size_t i = 0; i <= faxBufferSize; ++i) {
        ASSERT_EQ(cc_fgetc(stream), static_cast<std::int32_t>(i % 251));
    }
    for (std::size_t i = 0; i <= faxGiveBackRoom; ++i) {
        cc_ungetc(std::to_integer<std::int32_t>(data[faxBufferSize - i]), stream);
    }
    EXPECT_EQ(raisedBy([&] { cc_ungetc(0, stream); }), Exception::codec);
    EXPECT_EQ(cc_fgetc(stream), std::to_integer<std::int32_t>(data[faxBufferSize - 8]));
    cc_giveBack(stream);
    EXPECT_EQ(port.position(), faxBufferSize - 7);
}

/// A port of nothing: a source that is empty and a sink that takes no byte.
TEST_F(FaxStreamTest, APortHasOneDirection) {
    FaxPort port;
    FaxByteStream stream;
    cc_fsetup(stream, port, 0);
    EXPECT_EQ(cc_fgetc(stream), -1);
    cc_ungetc(1, stream);
    cc_giveBack(stream);
    EXPECT_EQ(stream.count, 0U);
    cc_fsetup(stream, port, 1);
    for (std::size_t i = 0; i < faxBufferSize; ++i) {
        ASSERT_EQ(cc_fputc(1, stream), 1);
    }
    EXPECT_EQ(cc_fputc(1, stream), -1);
    EXPECT_TRUE(cc_ferror(stream));
    EXPECT_EQ(cc_fputc(1, stream), -1);
}

TEST_F(FaxStreamTest, AFailedSourceEndsTheRowsAndAResetBeginsAnImage) {
    const Data rows(5, std::byte{0x0F});
    const CCParameters parameters{.columns = 8, .k = 2, .blackIs1 = true};
    const Data data = test::encodeFax(parameters, rows);
    test::MemoryPort port(data);
    FaxByteStream bytes;
    cc_fsetup(bytes, port, 0);
    CCStream stream;
    SetupCCStm(parameters, bytes, stream);
    CDReset(stream);
    CDFilBuf(stream);
    EXPECT_EQ(stream.count, 1U);
    CDFilBuf(stream); // a row is waiting
    EXPECT_EQ(stream.count, 1U);
    stream.count = 0;
    bytes.failed = true;
    CDFilBuf(stream);
    EXPECT_TRUE(stream.failed);
    EXPECT_EQ(stream.count, 0U);
    CDReset(stream);
    EXPECT_FALSE(stream.failed);
    FinalCCStm(stream);
    EXPECT_EQ(CheckCCStm(stream), 0U);
    FinalCCStm(stream);
}

TEST_F(FaxStreamTest, RowsWithAnEndMarkOfTagsBehindThem) {
    const Data rows(3, std::byte{0x0F});
    for (const std::int32_t k : {-1, 0, 2}) {
        const CCParameters parameters{.columns = 8, .rows = 3, .k = k, .blackIs1 = true};
        Data data = test::encodeFax(parameters, rows);
        const std::size_t length = data.size();
        data.resize(length + 9, std::byte{0xC3});
        const auto back = test::decodeFax(parameters, data);
        EXPECT_EQ(back.pixels, rows);
        EXPECT_EQ(back.consumed, length) << k;
    }
}

TEST_F(FaxStreamTest, TheEndIsWrittenOnce) {
    for (const std::size_t room : {SIZE_MAX, std::size_t{0}}) {
        test::MemoryPort port;
        port.limit(room);
        FaxByteStream bytes;
        cc_fsetup(bytes, port, 1);
        CCStream stream;
        SetupCCStm({.columns = 8}, bytes, stream);
        CEReset(stream);
        CEFlush(stream); // nothing to code yet
        EXPECT_EQ(CEPutEOF(stream), 0);
        EXPECT_EQ(CEPutEOF(stream), 0);
        stream.count = 0;
        CEFlush(stream);
        EXPECT_TRUE(stream.failed);
        FinalCCStm(stream);
        EXPECT_EQ(cc_ffinal(bytes), room > 0);
        EXPECT_EQ(port.sink().size(), room > 0 ? 9U : 0U);
    }
}

} // namespace
} // namespace corvane
