// Shadings of a document: colours that run over an area (PDF Reference, 4.6.3).
#pragma once

#include "host/extension.h"
#include "host/matrix.h"
#include "objects/object.h"
#include "reader/paint/colour_space.h"
#include "reader/paint/function.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace corvane {

enum class ShadingKind {
    function = 1,
    axial = 2,
    radial = 3,
    freeTriangles = 4,
    latticeTriangles = 5,
    coonsPatches = 6,
    tensorPatches = 7
};

struct Shading {
    ShadingKind kind = ShadingKind::axial;
    ColourSpacePointer space;
    /// One with all components, or one for each; none: a mesh that says its colours itself.
    std::vector<FunctionPointer> functions;
    std::vector<double> background; ///< components; none: it has no background
    std::optional<Box> box;         ///< outside nothing is painted
    /// Axial: x0 y0 x1 y1; radial: x0 y0 r0 x1 y1 r1.
    std::array<double, 6> coordinates{};
    /// Of the functions' inputs: axial and radial t0 t1, function-based x0 x1 y0 y1.
    std::array<double, 4> domain{0, 1, 0, 1};
    bool extendsStart = false;
    bool extendsEnd = false;
    RealMatrix matrix;  ///< of function-based ones: from the domain to the shading's space
    ObjectOwner stream; ///< of meshes

    bool isMesh() const { return kind >= ShadingKind::freeTriangles; }
    /// Inputs that the functions have.
    std::size_t inputs() const { return kind == ShadingKind::function ? 2 : 1; }
    /// Work of one colour, in steps of a few nanoseconds.
    std::int64_t cost() const;
    /// The colour for inputs of the functions or, without functions, for components.
    Colour colourAt(std::span<const double> values) const;
};

/// The shading that an object describes; nothing where it is none that can be computed. Raises what
/// reading its objects raises.
std::optional<Shading> readShading(DocumentCache& cache, const Object& object);

/// A whole number in a dictionary; 0 where there is none.
std::int32_t integerEntry(DocumentCache& cache, const Object& dictionary, std::string_view key);
/// The numbers of an array in a dictionary; other elements and a missing array: none.
std::vector<double> numberEntries(DocumentCache& cache, const Object& dictionary,
                                  std::string_view key);
/// A matrix in a dictionary; the identity where there is none.
RealMatrix matrixEntry(DocumentCache& cache, const Object& dictionary, std::string_view key);
/// A box in a dictionary, its corners sorted; nothing where there is none.
std::optional<Box> rectangleEntry(DocumentCache& cache, const Object& dictionary,
                                  std::string_view key);

/// The box around the corners of another one under a matrix.
Box spannedBox(const Box& box, const RealMatrix& matrix);

} // namespace corvane
