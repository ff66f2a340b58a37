// The operands of an operator that shows text, as bytes.
#pragma once

#include "reader/content/content_trace.h"
#include "writer/patch/content_bytes.h"

#include <cstdint>
#include <optional>
#include <string>
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

/// The same of an operator of the page; what was asked for last is kept, since one operator may
/// show thousands of runs. Raises `unpatchable` where it cannot be told, or has not as many
/// elements.
class ShownOperators {
public:
    ShownOperators(ContentBytes& bytes, const ContentTrace& trace) : bytes_(bytes), trace_(trace) {}

    const ShowBytes& at(TraceIndex event, std::int32_t elements);

private:
    ContentBytes& bytes_;
    const ContentTrace& trace_;
    TraceIndex event_ = 0;
    std::string text_;
    std::optional<ShowBytes> show_;
};

} // namespace corvane
