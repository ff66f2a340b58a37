#include "app/images/written_file.h"

#include "app/images/budget.h"
#include "app/images/png_writer.h"
#include "runtime/digest.h"

#include <algorithm>

namespace corvane {

std::optional<std::uint64_t> digestOfOwnPng(const ByteSource& file, std::string_view key) {
    constexpr std::size_t blockSize = std::size_t{64} << 10;
    // What may be the end is held back, in front of the next block.
    std::vector<std::byte> block(PngWriter::endBytes + blockSize);
    Digest before;
    std::size_t held = 0;
    std::uint64_t offset = 0;
    while (true) {
        const std::size_t count = file.readAt(offset, std::span(block).subspan(held));
        const auto filled = std::span<const std::byte>(block).first(held + count);
        offset += count;
        if (offset > image_budget::fileBytes) {
            return std::nullopt;
        }
        const std::size_t kept = std::min(filled.size(), PngWriter::endBytes);
        const auto end = filled.last(kept);
        before.feed(filled.first(filled.size() - kept));
        if (held + count < block.size()) {
            if (!PngWriter::isOurs(end, before, key)) {
                return std::nullopt;
            }
            before.feed(end);
            return before.value();
        }
        std::ranges::copy(end, block.begin());
        held = kept;
    }
}

} // namespace corvane
