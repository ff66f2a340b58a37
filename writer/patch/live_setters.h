// Of the operators that set the graphics state, those of which something is left.
#pragma once

#include "reader/content/content_trace.h"
#include "reader/document/cache.h"
#include "writer/patch/content_bytes.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Pages set colours thousands of times: what came later takes the place of what was set before.
/// However many operators there are, no more are left than the state has parts.
class LiveSetters {
public:
    /// Of a content that looks up names in `names`.
    LiveSetters(DocumentCache& cache, const Object& names, ContentBytes& bytes,
                const ContentTrace& trace)
        : cache_(cache), names_(names), bytes_(bytes), trace_(trace) {}

    /// Of the operators up to this one, in the order in which they ran.
    std::vector<TraceIndex> upTo(TraceIndex setter);

private:
    /// Parts of the state, a bit for each.
    using Parts = std::uint64_t;

    /// A list ends in that of an operator before, as far as that is left.
    struct Item {
        TraceIndex setter = 0;
        std::uint32_t next = 0; ///< 0: the end
        Parts parts = 0;
    };

    std::uint32_t listOf(TraceIndex setter);
    std::uint32_t extended(TraceIndex setter, std::uint32_t former);
    Parts partsOf(TraceIndex setter);
    Parts partsOfState(std::string_view name);

    DocumentCache& cache_;
    const Object& names_;
    ContentBytes& bytes_;
    const ContentTrace& trace_;
    std::vector<Item> items_ = {{}};
    std::vector<std::uint32_t> lists_ = {0};             // by operator: its first item
    std::map<std::string, Parts, std::less<>> ofStates_; // by the name that gs has
};

} // namespace corvane
