// Gradients and patterns as elements: which are written, under which ids, and how.
#pragma once

#include "app/artwork/document.h"
#include "app/svg/path_data.h"
#include "app/svg/sink.h"
#include "host/matrix.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace corvane {

class PaintServers {
public:
    PaintServers(const Document&, PageCorner);

    const Document& document() const { return document_; }

    /// The gradients and patterns that must be written before a path of this style, in the order of
    /// writing: those of a pattern's tile come before the pattern. From now on they have ids.
    std::vector<PaintSource> claim(const PathStyle&);
    /// Of a source that was claimed.
    const std::string& id(PaintSource source) const { return ids_.at(source); }

    void writeGradient(TextOutput&, PaintSource, int depth) const;
    /// Writes the start tag of a pattern but for its last character.
    void writePatternStart(TextOutput&, PaintSource, int depth) const;

private:
    const Document& document_;
    double left_;
    double top_;
    std::unordered_map<PaintSource, std::string> ids_;
    std::uint32_t gradients_ = 0;
    std::uint32_t patterns_ = 0;
};

} // namespace corvane
