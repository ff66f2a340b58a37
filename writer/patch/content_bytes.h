// The decoded bytes of a content, its streams taken as one sequence.
#pragma once

#include "reader/document/cache.h"
#include "runtime/memory.h"
#include "writer/patch/path_bytes.h"

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

class ContentBytes {
public:
    /// `starts`: the first bytes of the streams, and of what would come behind the last.
    ContentBytes(DocumentCache& cache, std::vector<ObjectOwner> streams,
                 std::span<const std::uint32_t> starts)
        : cache_(&cache), streams_(std::move(streams)), starts_(starts.begin(), starts.end()) {}

    std::span<const std::uint32_t> starts() const { return starts_; }

    /// A stream, decoded when it is first asked for and kept. One that is not as long as when it
    /// was read raises `unpatchable`.
    std::string_view stream(std::size_t index);

    /// Appends the bytes, with a line end where a stream ends among them: streams are divided
    /// between tokens.
    void append(std::string& text, ByteRange range);

    /// The stream that holds the byte, which is one of the content.
    std::size_t streamAt(std::uint32_t position) const;

private:
    struct Decoded {
        std::string bytes;
        ZoneCharge charge;
    };

    DocumentCache* cache_;
    std::vector<ObjectOwner> streams_;
    std::vector<std::uint32_t> starts_;
    std::map<std::size_t, Decoded> decoded_;
};

} // namespace corvane
