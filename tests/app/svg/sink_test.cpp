#include "app/svg/sink.h"

#include "tests/app/svg/art_builder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace corvane::test {
namespace {

/// Counts calls, and fails from the second on.
class FailingSink final : public ByteSink {
public:
    std::error_code write(std::string_view bytes) override {
        sizes.push_back(bytes.size());
        return sizes.size() < 2 ? std::error_code{} : std::make_error_code(std::errc::io_error);
    }
    std::vector<std::size_t> sizes;
};

std::unique_ptr<ArtBuilder> longArt() {
    auto art = std::make_unique<ArtBuilder>();
    for (int i = 0; i < 20'000; ++i) {
        art->path(art->layerArt(), box(1, 2, 30, 40 + i % 100), filled());
    }
    return art;
}

TEST(TextOutput, TextOfAnySizeArrivesWhole) {
    StringSink sink;
    TextOutput out(sink);
    std::string wanted;
    for (std::size_t size :
         {std::size_t{1}, TextOutput::blockSize - 3, TextOutput::blockSize * 2 + 5}) {
        const std::string text(size, static_cast<char>('a' + size % 26));
        out.text(text);
        out.number(3 * fixedOne / 2);
        wanted += text + "1.5";
    }
    EXPECT_FALSE(out.flush());
    EXPECT_EQ(sink.text(), wanted);
}

TEST(WriteSvg, StopsAtTheFirstFailureAndTellsIt) {
    FailingSink sink;
    EXPECT_EQ(writeSvg(longArt()->document, {}, sink), std::errc::io_error);
    ASSERT_EQ(sink.sizes.size(), 2U);
    EXPECT_GT(sink.sizes[0], std::size_t{64} * 1024);
}

TEST(WriteSvg, AFullDeviceIsNamed) {
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(full, 0);
    DescriptorSink sink(full);
    EXPECT_EQ(writeSvg(ArtBuilder().document, {}, sink), std::errc::no_space_on_device);
    close(full);
}

TEST(WriteSvg, APipeWithoutReaderIsNamed) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    close(ends[0]);
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    DescriptorSink sink(ends[1]);
    EXPECT_EQ(writeSvg(ArtBuilder().document, {}, sink), std::errc::broken_pipe);
    close(ends[1]);
    std::signal(SIGPIPE, before);
}

} // namespace
} // namespace corvane::test
