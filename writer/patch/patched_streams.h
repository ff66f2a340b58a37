// The content streams of a patched page: those of the base as they are, those with a patch written
// again, and new ones.
#pragma once

#include "reader/page/page_base.h"
#include "writer/page/page_object.h"
#include "writer/patch/content_bytes.h"
#include "writer/patch/content_patch.h"
#include "writer/patch/patch.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// One stream of the new content.
struct PatchedStream {
    std::optional<std::size_t> base; ///< which stream of the base it is, or was
    std::vector<Patch> patches;      ///< to that one, in its own bytes; none: it stays as it is
    std::string text;                ///< of a new one
    std::int32_t number = 0;         ///< of the object, where it is written
    std::int32_t length = 0;         ///< of the object that holds its length
};

/// Divides the patches among the streams and numbers those that are written. What stands between
/// two streams becomes a stream of its own; but a page of one short stream keeps one. The texts of
/// the patches are moved out of the content; their charge stays there.
std::vector<PatchedStream> divideContent(ContentPatch& page, const PageBase& base);
/// All patches in the one stream that a form is.
PatchedStream joinContent(ContentPatch& form);

/// What was written, for the page object and for the person.
struct WrittenStreams {
    std::vector<ContentPart> parts;
    std::int64_t bytes = 0; ///< as they stand in the file
};

/// Writes the streams to the cache's output. What was compressed is compressed again, and so is new
/// content where that is shorter, unless the host wants it plain.
WrittenStreams writeStreams(DocumentCache& cache, const PageBase& base, ContentBytes& bytes,
                            std::span<const PatchedStream> streams);

/// Whether a stream that was patched is compressed: as the former one was.
bool compressesPatched(DocumentCache& cache, const Object& former);
/// Ends the object of such a stream, whose dictionary is open: writes its Length and the former
/// bytes with the patches. Bytes of the data as they stand in the file.
std::int64_t finishPatched(DocumentCache& cache, const PatchedStream& stream,
                           std::string_view former, bool compresses);

} // namespace corvane
