#include "writer/patch/image_ends.h"

#include "filters/token/character.h"
#include "reader/image/inline_image.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

namespace {

bool isBlank(std::string_view text) {
    return std::ranges::all_of(text, isSpace);
}

class ImageEnds {
public:
    ImageEnds(const ContentTrace& trace, ContentBytes& bytes, std::vector<Patch>& patches)
        : trace_(trace), bytes_(bytes), patches_(patches) {}

    void keep() {
        for (std::size_t i = 0; i < patches_.size(); ++i) {
            Patch& patch = patches_[i];
            if (patch.range.start < patch.range.end && isBlank(patch.text) &&
                isBehindImage(patch.range.start) && !mayFollowImage(left(i))) {
                patch.text = "\nq Q\n";
            }
        }
    }

private:
    bool isBehindImage(std::uint32_t place) {
        const auto behind = std::ranges::upper_bound(trace_.events(), place, {}, &TraceEvent::end);
        if (behind == trace_.events().begin()) {
            return false;
        }
        const TraceEvent& last = *std::prev(behind);
        return last.role == OperatorRole::endImage && isBlank(between(last.end, place));
    }

    /// What will stand behind the patch: of the bytes that stay, as far as readers look.
    std::string left(std::size_t patch) {
        std::uint32_t from = patches_[patch].range.end;
        while (++patch < patches_.size() && isBlank(between(from, patches_[patch].range.start))) {
            if (!isBlank(patches_[patch].text)) {
                return patches_[patch].text;
            }
            from = patches_[patch].range.end;
        }
        return between(from, from + imageFollowBytes);
    }

    /// As far as the stream goes.
    std::string between(std::uint32_t from, std::uint32_t to) {
        const std::span<const std::uint32_t> starts = bytes_.starts();
        const auto next = std::ranges::upper_bound(starts, from);
        to = next == starts.end() ? from : std::min(to, *next);
        std::string text;
        if (from < to) {
            bytes_.append(text, {from, to});
        }
        return text;
    }

    const ContentTrace& trace_;
    ContentBytes& bytes_;
    std::vector<Patch>& patches_;
};

} // namespace

void keepImageEnds(const ContentTrace& trace, ContentBytes& bytes, std::vector<Patch>& patches) {
    ImageEnds(trace, bytes, patches).keep();
}

} // namespace corvane
