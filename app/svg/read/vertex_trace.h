// The vertices of a shape, where markers stand, with the directions of its line there.
#pragma once

#include "host/matrix.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace corvane {

/// Follows a shape as it is drawn, in user space (SVG 2, 9.5.2 and 13.7).
class VertexTrace {
public:
    void moveTo(RealPoint to);
    /// `continues`: a piece of the segment before, so that no vertex is between.
    void curveTo(RealPoint out, RealPoint in, RealPoint end, bool continues);
    void lineTo(RealPoint end) { curveTo(current_, end, end, false); }
    void close();

    std::size_t size() const { return vertices_.size(); }
    RealPoint place(std::size_t vertex) const { return vertices_[vertex].place; }
    /// Between the line that comes and the line that goes, in radians.
    double angle(std::size_t vertex) const;

private:
    struct Vertex {
        RealPoint place;
        std::optional<double> arriving; ///< angles
        std::optional<double> leaving;
    };
    std::vector<Vertex> vertices_;
    std::size_t start_ = 0; ///< the vertex that began the subpath
    RealPoint current_;
};

} // namespace corvane
