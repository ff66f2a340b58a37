// The page chooser of a terminal: a numbered prompt.
#pragma once

#include "app/cli/lines.h"

#include <cstdint>
#include <optional>
#include <ostream>

namespace corvane {

/// Asks on `prompt` for a page from `first` to `last` until an answer on `answers` is one. An empty
/// line takes `proposal`; "q", the end of input and Ctrl-C cancel.
std::optional<std::int32_t> choosePage(LineSource& answers, std::ostream& prompt,
                                       std::int32_t first, std::int32_t last,
                                       std::int32_t proposal);

} // namespace corvane
