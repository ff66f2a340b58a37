// Gradients and patterns as elements: which are written, under which ids, and how.
#pragma once

#include "app/artwork/document.h"
#include "app/svg/path_data.h"
#include "app/svg/sink.h"
#include "host/matrix.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace corvane {

/// A gradient or pattern to be written. An element that a pen transforms has one of its own, which
/// takes all but the transform from the other.
struct ServerUse {
    PaintSource source = PaintSource::null;
    Pen pen;
    friend bool operator==(const ServerUse&, const ServerUse&) = default;
};

class PaintServers {
public:
    PaintServers(const Document&, PageCorner);

    const Document& document() const { return document_; }

    /// The gradients and patterns that must be written before a path of this style, in the order of
    /// writing: those of a pattern's tile come before the pattern. From now on they have ids.
    std::vector<ServerUse> claim(const PathStyle&);
    /// Of a source that was claimed.
    const std::string& id(PaintSource source, const Pen& pen = {}) const {
        return ids_.at({source, pen});
    }

    void writeGradient(TextOutput&, PaintSource, int depth) const;
    /// Writes what an element that a pen transforms is painted with.
    void writeUnderPen(TextOutput&, const ServerUse&, int depth) const;
    /// Writes the transform of an element that is drawn with this pen.
    static void writePen(TextOutput&, const Pen&);
    /// Writes the start tag of a pattern but for its last character.
    void writePatternStart(TextOutput&, PaintSource, int depth) const;

private:
    struct UseHash {
        std::size_t operator()(const ServerUse& use) const;
    };

    RealMatrix gradientMatrix(const Gradient&) const;
    RealMatrix patternMatrix(const Pattern&) const;

    const Document& document_;
    double left_;
    double top_;
    std::unordered_map<ServerUse, std::string, UseHash> ids_;
    std::uint32_t gradients_ = 0;
    std::uint32_t patterns_ = 0;
};

} // namespace corvane
