// The operators of a page's content, as its bytes have them.
#pragma once

#include "fuzz/support/plugin_host.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvane::fuzz {

/// An operator with its operands; at the end of the content perhaps operands alone.
struct PageOperation {
    std::string operands;   ///< raw tokens, a space behind each
    std::string word;       ///< of ID with the data behind it
    std::int64_t start = 0; ///< of the first token, in the content as one sequence of streams
    std::int64_t end = 0;   ///< behind the word
};

/// Those of the first page of the host's file. Nothing where a stream cannot be read to its end, or
/// the content is too large to look at.
std::optional<std::vector<PageOperation>> pageOperations(PluginHost& host);

} // namespace corvane::fuzz
