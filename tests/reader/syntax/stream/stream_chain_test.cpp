// Reading in several places of one file at a time, and how much of it there may be.
#include "reader/syntax/stream/stream_chain.h"

#include "app/artwork/slots/callbacks.h"
#include "reader/page/page_content.h"
#include "reader/page/page_digest.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "tests/reader/art_text.h"
#include "tests/reader/reader_fixture.h"

namespace corvane {
namespace {

std::string repeated(std::string_view text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

std::size_t readAll(Filter& filter) {
    std::vector<std::byte> buffer(1 << 16);
    std::size_t total = 0;
    while (const std::size_t count = readFilter(filter, buffer)) {
        total += count;
    }
    return total;
}

using StreamChainTest = ReaderTest;

// Each Length is a reference to the next stream: the depth of reading is what is limited, and the
// page is one without content.
TEST_F(StreamChainTest, LengthsThatAreStreamsAreReadNoDeeperThanAllowed) {
    for (const int streams : {2, 15, 16, 17, 40}) {
        PdfBuilder file = PdfBuilder::onePage("", "/Contents 10 0 R");
        file.object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Contents 10 0 R >>");
        for (int i = 0; i < streams; ++i) {
            file.object(10 + i, "<< /Length " + std::to_string(11 + i) +
                                    " 0 R >>\nstream\n0 0 m 9 9 l S\nendstream");
        }
        file.object(10 + streams, "13");
        // As the plug-in calls it: within a block.
        EXPECT_EQ(raisedBy([&] { draw(file.bytes()); }), Exception::none) << streams;
        EXPECT_EQ(artText(document(), importedArt()), "<0,0 9,9 S>") << streams;
    }
}

// Longer than what the reader holds at a time, so that it reads on behind the colour space.
TEST_F(StreamChainTest, ContentGoesOnBehindAColourTableThatCannotBeRead) {
    const std::string paths = repeated("0 0 m 9 9 l S ", 20'000);
    for (const std::string_view table : {"/Filter /Unknown", "/Filter [/AHx /Unknown]", ""}) {
        PdfBuilder file = PdfBuilder::onePage(
            "0 0 m 9 9 l S /Table cs 0 sc " + paths,
            "/Resources << /ColorSpace << /Table [/Indexed /DeviceRGB 1 5 0 R] >> >>");
        file.stream(5, "abcdef", table);
        draw(file.bytes());
        const std::string art = artText(document(), importedArt());
        EXPECT_EQ(std::ranges::count(art, '<'), 20'001) << table;
    }
}

TEST_F(StreamChainTest, StreamsOfOneFileAreReadInTurn) {
    PdfBuilder file = PdfBuilder::onePage(repeated("one ", 9000));
    file.stream(5, repeated("74776F20", 9000) + ">", "/Filter /AHx").object(6, "(between)");
    DocumentCache& cache = open(file);
    const auto object = [&](std::int32_t number) {
        ObjectOwner reference;
        indirectObject(reference.get(), number, 0);
        return resolveObject(cache, reference.get());
    };
    const ObjectOwner first = object(4);
    const ObjectOwner second = object(5);
    StreamChain one(cache, first.get());
    StreamChain two(cache, second.get());
    std::string ones(36000, '?');
    std::string twos(36000, '?');
    for (std::size_t at = 0; at < ones.size(); at += 1000) {
        readFilter(one.top(), std::as_writable_bytes(std::span(ones).subspan(at, 1000)));
        if (at == 4000) {
            EXPECT_EQ(textObject(object(6).get()), "between");
        }
        readFilter(two.top(), std::as_writable_bytes(std::span(twos).subspan(at, 1000)));
    }
    EXPECT_TRUE(ones == repeated("one ", 9000));
    EXPECT_TRUE(twos == repeated("two ", 9000));
}

TEST_F(StreamChainTest, WhatThePageMayDeliverIsLimitedBetweenFiltersToo) {
    // The blanks reach the second filter, which delivers nothing.
    PdfBuilder file = PdfBuilder::onePage("");
    file.stream(4, repeated("\x81 ", 1000), "/Filter [/RL /AHx]").stream(5, repeated(" ", 130'000));
    for (const char* contents : {"4 0 R", "5 0 R"}) {
        file.object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Contents " +
                           std::string(contents) + " >>");
        DocumentCache& cache = open(file);
        pageCache(cache, 1);
        const std::vector<ObjectOwner> streams = contentStreams(cache);
        const auto read = [&] { readAll(StreamChain(cache, streams.front().get()).top()); };
        cache.work.pageBytes = budget::pageBytes - 140'000;
        EXPECT_EQ(raisedBy(read), Exception::none) << contents;
        EXPECT_EQ(raisedBy(read), Exception::limit) << contents;
        cache.work.pageBytes = budget::pageBytes - 1000;
        EXPECT_EQ(raisedBy([&] { digestPage(cache, streams); }), Exception::limit) << contents;
        pageCache(cache, 1);
        EXPECT_EQ(raisedBy(read), Exception::none) << contents;
    }
}

TEST_F(StreamChainTest, APageThatNamesAStreamAgainAndAgainHasItDigestedOnce) {
    PdfBuilder file = PdfBuilder::onePage(std::string(1000, ' '));
    DocumentCache& cache = open(file);
    pageCache(cache, 1);
    const ObjectOwner stream = lookupObject(cache, cache.page.get(), "Contents");
    std::vector<ObjectOwner> streams;
    for (int i = 0; i < 5000; ++i) {
        streams.push_back(resolveObject(cache, stream.get()));
    }
    digestPage(cache, streams);
    EXPECT_EQ(cache.work.pageBytes, 1000);
}

TEST_F(StreamChainTest, ThePersonMayStopAPageWithoutATokenAndItsDigest) {
    DocumentCache& cache = open(PdfBuilder::onePage(std::string(300'000, ' ')));
    pageCache(cache, 1);
    const std::vector<ObjectOwner> streams = contentStreams(cache);
    const CallbackScope stopping(document(), [] { return true; });
    EXPECT_EQ(raisedBy([&] { digestPage(cache, streams); }), Exception::cancelled);
    EXPECT_EQ(raisedBy([&] { readAll(StreamChain(cache, streams.front().get()).top()); }),
              Exception::cancelled);
}

} // namespace
} // namespace corvane
