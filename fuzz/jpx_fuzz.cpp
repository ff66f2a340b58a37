// Any bytes as a JPEG 2000 picture and as a JBIG2 page, each through our glue to its library: no
// more memory than the budgets say, and rows of the size that the header promised.
#include "codecs/jbig2/jbig2.h"
#include "codecs/jpx/jpx.h"
#include "fuzz/targets.h"
#include "host/memory.h"
#include "runtime/exception.h"
#include "toolbox/state.h"

#include <vector>

namespace corvane::fuzz {

namespace {

/// Pictures beyond this take the library too long.
constexpr std::int64_t mostSamples = 1 << 20;

void requireRight(Exception code) {
    require(code == Exception::none || code == Exception::codec || code == Exception::memory ||
            code == Exception::limit);
    resetException();
    require(zoneBlocksInUse() == 0 && zoneBytesCharged() == 0);
}

} // namespace

void fuzzJpx(Bytes input) {
    const ToolboxScope scope(memoryLimit);
    const bool keepsPalette = Choices(input).below(4) == 0;
    const auto header = readJpxHeader(input, keepsPalette);
    if (!header || std::int64_t{header->width} * header->height * header->stored > mostSamples) {
        return;
    }
    requireRight(guarded([&] {
        CodecClock clock;
        const JpxPicture picture(input, *header, keepsPalette, clock);
        const std::size_t samples = header->colours + (header->hasAlpha ? 1U : 0U);
        std::vector<std::byte> row(header->width * samples * JpxPicture::deliveredBits(*header) /
                                   8);
        for (std::uint32_t y = 0; y < header->height; ++y) {
            picture.row(y, row);
        }
    }));
}

void fuzzJbig2(Bytes input) {
    const ToolboxScope scope(memoryLimit);
    Choices choices(input);
    const std::size_t split = choices.below(2) == 0 ? 0 : choices.below(64) % (input.size() + 1);
    requireRight(guarded([&] {
        CodecClock clock;
        const Jbig2Page page = decodeJbig2(input.first(split), input.subspan(split), clock);
        require(page.rows.size() == (std::size_t{page.width} + 7) / 8 * page.height);
    }));
}

} // namespace corvane::fuzz
