// The revisions of a file: the file as it was made and every update that was appended since, each
// with its section of the cross-reference.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>
#include <vector>

namespace corvane {

/// One revision, by where it stands in the file, counted from the file's first byte.
struct Revision {
    std::int32_t start = 0;
    std::int32_t end = 0; ///< behind "%%EOF" and its end of line
    /// Offsets; a linearised file was made with two. None of a file that our next update mended.
    std::vector<std::int32_t> sections;
    bool ours = false; ///< begins with our line, and an object right behind it
};

/// From the oldest. Two sections are one revision if the newer one stands earlier in the file.
/// A file that was repaired raises `structure`.
std::vector<Revision> revisions(DocumentCache& cache);

/// While this lives, the cache holds the objects and the trailer of one section alone.
class SectionScope {
public:
    SectionScope(DocumentCache& cache, std::int32_t offset);
    ~SectionScope();
    SectionScope(const SectionScope&) = delete;
    SectionScope& operator=(const SectionScope&) = delete;

    const SectionFacts& facts() const { return facts_; }

private:
    explicit SectionScope(DocumentCache& cache);
    void exchange() noexcept;

    DocumentCache& cache_;
    ReferenceTableOwner references_;
    std::unique_ptr<DeferredEntries> deferred_;
    ObjectOwner trailer_;
    std::vector<bool> freed_;
    SectionFacts facts_;
};

} // namespace corvane
