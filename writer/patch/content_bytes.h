// The decoded bytes of a page's content, its streams taken as one sequence.
#pragma once

#include "reader/content/content_trace.h"
#include "reader/page/page_base.h"
#include "runtime/memory.h"
#include "writer/patch/path_bytes.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace corvane {

class ContentBytes {
public:
    ContentBytes(DocumentCache& cache, const PageBase& base, const ContentTrace& trace)
        : cache_(cache), base_(base), trace_(trace) {}

    /// A stream, decoded when it is first asked for. One that is not as long as when it was read
    /// raises `unpatchable`.
    std::string_view stream(std::size_t index);

    /// Appends the bytes, with a space where a stream ends among them: streams are divided between
    /// tokens.
    void append(std::string& text, ByteRange range);

    /// The stream that holds the byte, which is one of the content.
    std::size_t streamAt(std::uint32_t position) const;

private:
    struct Decoded {
        std::string bytes;
        ZoneCharge charge;
    };

    DocumentCache& cache_;
    const PageBase& base_;
    const ContentTrace& trace_;
    std::map<std::size_t, Decoded> streams_;
};

} // namespace corvane
