// Text of the artwork that shows as one run what the page shows in several.
#pragma once

#include "writer/patch/base/base_content.h"

#include <cstdint>

namespace corvane {

class JoinedText {
public:
    JoinedText();

    /// Divides the runs of a text object whose source reaches over several of the content's runs
    /// into those, each with its own source. Of a run of which only the number is known, those that
    /// follow on the page's line count as well, up to the next that the text names.
    ///
    /// Runs of which all letters are still there stay what they were. What was typed is of the
    /// first run whose letters are gone, else of the one in front of it.
    void divide(const BaseContent& content, Art text);

private:
    bool hostSetsRuns_;
    /// Letters to be looked at: many times those of the longest page. Artwork may name one line of
    /// the page again and again; past this, what it names so is new text.
    std::int64_t work_ = std::int64_t{1} << 28;
};

} // namespace corvane
