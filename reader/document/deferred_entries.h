// Entries of long cross-reference sections, entered when an object near them is asked for: of a
// large file a page needs a few.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>
#include <functional>
#include <span>
#include <utility>
#include <vector>

namespace corvane {

/// First number and count.
using Subsection = std::pair<std::int32_t, std::int32_t>;

/// Sections are met from the newest to the oldest. Once entries are deferred, all that follow are
/// too, since an older section must not be entered before a newer one; where they cannot be, all
/// are entered first.
class DeferredEntries final : public ReferenceSource {
public:
    /// Enters so many entries of a part, from that index on.
    using Enter = std::function<void(std::int32_t from, std::int32_t count)>;

    explicit DeferredEntries(DocumentCache& cache) : cache_(cache) {}

    /// Whether deferring these subsections of a section is possible and worth it.
    bool takes(std::span<const Subsection> stated) const;
    /// Entries of the section being read, which is the oldest so far.
    void add(std::int32_t first, std::int32_t count, Enter enter);
    /// The section was read: what it frees is settled before what is older.
    void endSection();
    /// Enters all; from now on nothing is deferred.
    void giveUp();

    void provide(std::int32_t number) override;
    void provideAll() override;

private:
    struct Part {
        std::int32_t first = 0;
        std::int32_t count = 0;
        std::int32_t section = 0;
        Enter enter;
    };

    void enterBlock(std::int64_t block);

    DocumentCache& cache_;
    std::vector<Part> parts_; ///< the newest first
    std::int32_t section_ = 0;
    std::vector<bool> entered_; ///< by block of numbers
    bool isEntering_ = false;
    bool isGivenUp_ = false;
};

} // namespace corvane
