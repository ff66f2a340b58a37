// The operands of an operator that shows text, as bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace corvane {

/// Pieces of the bytes of one such operator; they live as long as these.
struct ShowBytes {
    std::string_view word;                  ///< Tj, TJ, ' or "
    std::vector<std::string_view> before;   ///< of ": its word spacing and character spacing
    std::vector<std::string_view> elements; ///< of the array, or the one string
};

/// Nothing where the bytes are not an operator that shows text, with operands of the right kinds in
/// front of it. What comes before those, and would be dropped, is passed over.
std::optional<ShowBytes> showBytes(std::string_view bytes);

} // namespace corvane
