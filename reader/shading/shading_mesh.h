// Meshes of shadings: triangles with a colour at each corner (PDF Reference, 4.6.3).
#pragma once

#include "reader/shading/shading.h"

#include <array>
#include <cstdint>
#include <functional>

namespace corvane {

/// A corner: where it is, in the shading's space, and its colour: red, green and blue from 0 to 1
/// or, where the shading has functions, their input.
struct MeshCorner {
    RealPoint point;
    std::array<double, 3> value{};
};

/// Told of steps of work.
using MeshWork = std::function<void(std::int64_t)>;

using MeshTriangle = std::array<MeshCorner, 3>;

/// Steps to read a vertex, or to make one of a patch, and to draw the triangles that it begins.
inline constexpr std::int64_t vertexSteps = 100;

/// Hands out the triangles of a mesh, in the order of painting. A patch becomes a grid of them: as
/// fine as its edges are long, of which `cell` is one step. Past the budget of vertices the rest is
/// left out, and false the answer. Raises what reading the stream and `work` raise.
bool forEachTriangle(DocumentCache& cache, const MeshWork& work, const Shading& shading,
                     double cell, const std::function<void(const MeshTriangle&)>& use);

} // namespace corvane
