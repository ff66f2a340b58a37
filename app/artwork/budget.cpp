#include "app/artwork/budget.h"

#include "app/artwork/error.h"

#include <charconv>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <system_error>

namespace corvane {

std::int64_t artworkLimit() {
    constexpr std::int64_t mebibyte = 1 << 20;
    const char* const variable = std::getenv("CORVANE_ART_MB");
    const std::string_view text = variable ? variable : "";
    std::int64_t mebibytes = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), mebibytes);
    const bool sensible = error == std::errc() && end == text.data() + text.size() &&
                          mebibytes >= 1 &&
                          mebibytes <= std::numeric_limits<std::int64_t>::max() / mebibyte;
    return (sensible ? mebibytes : 2048) * mebibyte;
}

void ArtworkBudget::charge(std::int64_t bytes) {
    if (bytes > limit_ - used_) {
        throw ArtworkError("the artwork is larger than CORVANE_ART_MB allows");
    }
    used_ += bytes;
}

} // namespace corvane
