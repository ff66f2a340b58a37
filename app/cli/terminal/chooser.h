// The page chooser of a terminal: a numbered prompt.
#pragma once

#include "app/cli/terminal/lines.h"
#include "host/front.h"

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

namespace corvane {

/// Asks on `prompt` for a page from `first` to `last`, with a text like "Page to open", until a
/// line of `answers` is such a page. An empty line takes `proposal`; "q", the end of input and
/// Ctrl-C cancel.
std::optional<std::int32_t> choosePage(LineSource& answers, std::ostream& prompt,
                                       std::string_view what, std::int32_t first, std::int32_t last,
                                       std::int32_t proposal);

/// A line for each page, with its size and its title; of many pages the first ones.
std::string pageList(std::int32_t first, std::int32_t last, PageProxies& proxies);

} // namespace corvane
