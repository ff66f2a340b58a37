#include "reader/shading/shading_mesh.h"

#include "host/light.h"
#include "reader/syntax/stream/stream_bytes.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>

namespace corvane {

namespace {

/// Bytes of a mesh: the budget of vertices, of which each has 20 or so.
constexpr std::size_t longestStream = 20 * static_cast<std::size_t>(budget::meshVertices);

std::array<double, 3> lightOf(const Colour& colour) {
    if (colour.kind == ColourKind::gray) {
        const double level = 1 - static_cast<double>(colour.component[0]) / fixedOne;
        return {level, level, level};
    }
    const LightLevels light = lightLevels(colour);
    return {static_cast<double>(light.red) / fixedOne, static_cast<double>(light.green) / fixedOne,
            static_cast<double>(light.blue) / fixedOne};
}

/// The numbers of a mesh's stream, each of its own count of bits.
class MeshNumbers {
public:
    MeshNumbers(DocumentCache& cache, const Shading& shading) : shading_(shading) {
        const Object& stream = shading.stream.get();
        const auto entry = [&](std::string_view key) { return integerEntry(cache, stream, key); };
        coordinateBits_ = entry("BitsPerCoordinate");
        componentBits_ = entry("BitsPerComponent");
        if (shading.kind != ShadingKind::latticeTriangles) {
            flagBits_ = entry("BitsPerFlag");
        }
        decode_ = numberEntries(cache, stream, "Decode");
        components_ =
            shading.functions.empty() ? static_cast<std::size_t>(shading.space->components) : 1;
        isSound_ = isCount(coordinateBits_) && isCount(componentBits_) &&
                   (flagBits_ == 0 || isCount(flagBits_)) &&
                   decode_.size() >= 4 + 2 * components_ && components_ <= functionArity;
        if (isSound_) {
            bytes_ = streamBytes(cache, stream, longestStream);
        }
    }

    /// Whether there is something more to read.
    bool any() const { return isSound_ && at_ / 8 < bytes_.size(); }
    /// Flags and vertices begin with a byte where the format says so.
    void align() { at_ = (at_ + 7) / 8 * 8; }
    std::uint32_t flag() { return flagBits_ == 0 ? 0 : take(flagBits_); }
    RealPoint point() {
        const double x = number(coordinateBits_, 0);
        return {x, number(coordinateBits_, 1)};
    }
    std::array<double, 3> value() {
        std::array<double, functionArity> components{};
        for (std::size_t i = 0; i < components_; ++i) {
            components[i] = number(componentBits_, 2 + i);
        }
        if (!shading_.functions.empty()) {
            return {components[0], 0, 0};
        }
        return lightOf(shading_.colourAt(std::span(components).first(components_)));
    }

private:
    static bool isCount(std::int32_t bits) { return bits >= 1 && bits <= 32; }

    std::uint32_t take(std::int32_t bits) {
        std::uint64_t value = 0;
        for (std::int32_t left = bits; left > 0;) {
            const std::size_t byte = at_ / 8;
            const auto offset = static_cast<std::int32_t>(at_ % 8);
            const std::int32_t taken = std::min(left, 8 - offset);
            const std::uint32_t held = byte < bytes_.size() ? bytes_[byte] : 0U;
            const std::uint32_t piece = held >> (8 - offset - taken) & ((1U << taken) - 1U);
            value = value << taken | piece;
            at_ += static_cast<std::size_t>(taken);
            left -= taken;
        }
        return static_cast<std::uint32_t>(value);
    }

    double number(std::int32_t bits, std::size_t entry) {
        const double highest = std::ldexp(1.0, bits) - 1;
        const double low = decode_[2 * entry];
        return low + take(bits) * (decode_[2 * entry + 1] - low) / highest;
    }

    const Shading& shading_;
    std::int32_t coordinateBits_ = 0;
    std::int32_t componentBits_ = 0;
    std::int32_t flagBits_ = 0;
    std::size_t components_ = 0;
    std::vector<double> decode_;
    std::vector<std::uint8_t> bytes_;
    bool isSound_ = false;
    std::size_t at_ = 0; ///< bits
};

using Value = std::array<double, 3>;

/// A patch: 16 control points, row by row from the corner of the first colour, the rows going from
/// the first edge to the third; colours of the corners in the order of the stream.
struct Patch {
    std::array<std::array<RealPoint, 4>, 4> points{};
    std::array<Value, 4> values{};
};

/// Places of the twelve points of the edges, then of the four within, as the stream has them.
constexpr std::array<std::array<std::size_t, 2>, 16> streamOrder = {{{0, 0},
                                                                     {0, 1},
                                                                     {0, 2},
                                                                     {0, 3},
                                                                     {1, 3},
                                                                     {2, 3},
                                                                     {3, 3},
                                                                     {3, 2},
                                                                     {3, 1},
                                                                     {3, 0},
                                                                     {2, 0},
                                                                     {1, 0},
                                                                     {1, 1},
                                                                     {1, 2},
                                                                     {2, 2},
                                                                     {2, 1}}};

RealPoint combined(std::initializer_list<std::pair<double, RealPoint>> parts) {
    RealPoint sum;
    for (const auto& [weight, point] : parts) {
        sum.x += weight * point.x;
        sum.y += weight * point.y;
    }
    return sum;
}

/// The inner points of a Coons patch (PDF Reference, 4.6.3, type 7).
void addInnerPoints(Patch& patch) {
    auto& p = patch.points;
    const auto inner = [&](std::size_t i, std::size_t j) {
        const std::size_t ni = i == 1 ? 0 : 3; // the near corner
        const std::size_t nj = j == 1 ? 0 : 3;
        const std::size_t fi = 3 - ni;
        const std::size_t fj = 3 - nj;
        constexpr double ninth = 1.0 / 9;
        return combined({{-4 * ninth, p[ni][nj]},
                         {6 * ninth, p[ni][j]},
                         {6 * ninth, p[i][nj]},
                         {-2 * ninth, p[ni][fj]},
                         {-2 * ninth, p[fi][nj]},
                         {3 * ninth, p[fi][j]},
                         {3 * ninth, p[i][fj]},
                         {-1 * ninth, p[fi][fj]}});
    };
    for (const std::size_t i : {1U, 2U}) {
        for (const std::size_t j : {1U, 2U}) {
            p[i][j] = inner(i, j);
        }
    }
}

std::array<double, 4> weightsAt(double t) {
    const double s = 1 - t;
    return {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
}

class Triangles {
public:
    Triangles(DocumentCache& cache, const MeshWork& work, const Shading& shading, double cell,
              const std::function<void(const MeshTriangle&)>& use)
        : cache_(cache), work_(work), shading_(shading), cell_(cell), use_(use),
          numbers_(cache, shading),
          vertexCost_(vertexSteps + (shading.functions.empty() ? shading.cost() : 0)) {}

    bool run() {
        switch (shading_.kind) {
        case ShadingKind::freeTriangles:
            runFree();
            break;
        case ShadingKind::latticeTriangles:
            runLattice();
            break;
        default:
            runPatches();
            break;
        }
        return left_ > 0;
    }

private:
    bool more() { return numbers_.any() && left_ > 0; }

    MeshCorner corner() {
        --left_;
        work_(vertexCost_);
        MeshCorner corner;
        corner.point = numbers_.point();
        corner.value = numbers_.value();
        return corner;
    }

    void runFree() {
        MeshTriangle triangle;
        std::size_t known = 0;
        while (more()) {
            const std::uint32_t flag = numbers_.flag() & 3U;
            const MeshCorner next = corner();
            numbers_.align();
            if (known < 3 || flag == 0) {
                known = known == 3 ? 0 : known;
                triangle[known++] = next;
            } else {
                triangle = flag == 1 ? MeshTriangle{triangle[1], triangle[2], next}
                                     : MeshTriangle{triangle[0], triangle[2], next};
            }
            if (known == 3) {
                use_(triangle);
            }
        }
    }

    void runLattice() {
        const std::int32_t columns = integerEntry(cache_, shading_.stream.get(), "VerticesPerRow");
        if (columns < 2 || columns > budget::meshVertices) {
            return;
        }
        std::vector<MeshCorner> former;
        std::vector<MeshCorner> row;
        while (more()) {
            row.clear();
            for (std::int32_t i = 0; i < columns && more(); ++i) {
                row.push_back(corner());
                numbers_.align();
            }
            if (row.size() < static_cast<std::size_t>(columns)) {
                return;
            }
            for (std::size_t i = 0; i + 1 < former.size(); ++i) {
                use_({former[i], former[i + 1], row[i]});
                use_({former[i + 1], row[i], row[i + 1]});
            }
            former.swap(row);
        }
    }

    /// The edge of the former patch that the next one shares, as its first edge.
    static Patch continued(const Patch& former, std::uint32_t flag) {
        Patch next;
        for (std::size_t i = 0; i < 4; ++i) {
            const auto& [row, column] = streamOrder[(3 * flag + i) % 12];
            next.points[0][i] = former.points[row][column];
        }
        next.values[0] = former.values[flag];
        next.values[1] = former.values[(flag + 1) % 4];
        return next;
    }

    void runPatches() {
        const bool isTensor = shading_.kind == ShadingKind::tensorPatches;
        const std::size_t points = isTensor ? 16 : 12;
        Patch patch;
        for (bool isFirst = true; more(); isFirst = false) {
            const std::uint32_t said = numbers_.flag() & 3U;
            const std::uint32_t flag = isFirst ? 0 : said;
            Patch next = flag == 0 ? Patch() : continued(patch, flag);
            work_(4 * vertexCost_);
            for (std::size_t i = flag == 0 ? 0 : 4; i < points; ++i) {
                next.points[streamOrder[i][0]][streamOrder[i][1]] = numbers_.point();
            }
            for (std::size_t i = flag == 0 ? 0 : 2; i < 4; ++i) {
                next.values[i] = numbers_.value();
            }
            numbers_.align();
            if (!isTensor) {
                addInnerPoints(next);
            }
            drawPatch(next);
            patch = next;
        }
    }

    std::size_t stepsOf(const Patch& patch) const {
        double longest = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            double along = 0;
            double across = 0;
            for (std::size_t j = 0; j < 3; ++j) {
                const auto length = [](RealPoint a, RealPoint b) {
                    return std::hypot(b.x - a.x, b.y - a.y);
                };
                along += length(patch.points[i][j], patch.points[i][j + 1]);
                across += length(patch.points[j][i], patch.points[j + 1][i]);
            }
            longest = std::max({longest, along, across});
        }
        constexpr double finest = 32;
        return static_cast<std::size_t>(std::clamp(std::ceil(longest / cell_), 2.0, finest));
    }

    static MeshCorner cornerAt(const Patch& patch, double down, double along) {
        const std::array<double, 4> rows = weightsAt(down);
        const std::array<double, 4> columns = weightsAt(along);
        MeshCorner corner;
        for (std::size_t i = 0; i < 4; ++i) {
            for (std::size_t j = 0; j < 4; ++j) {
                corner.point.x += rows[i] * columns[j] * patch.points[i][j].x;
                corner.point.y += rows[i] * columns[j] * patch.points[i][j].y;
            }
        }
        for (std::size_t k = 0; k < corner.value.size(); ++k) {
            corner.value[k] =
                (1 - down) * ((1 - along) * patch.values[0][k] + along * patch.values[1][k]) +
                down * ((1 - along) * patch.values[3][k] + along * patch.values[2][k]);
        }
        return corner;
    }

    void drawPatch(const Patch& patch) {
        const std::size_t steps = stepsOf(patch);
        left_ -= static_cast<std::int64_t>(steps * steps);
        work_(static_cast<std::int64_t>(steps * steps) * vertexSteps);
        std::vector<MeshCorner> former;
        std::vector<MeshCorner> row;
        for (std::size_t i = 0; i <= steps; ++i) {
            row.clear();
            for (std::size_t j = 0; j <= steps; ++j) {
                row.push_back(cornerAt(patch, static_cast<double>(i) / static_cast<double>(steps),
                                       static_cast<double>(j) / static_cast<double>(steps)));
            }
            for (std::size_t j = 0; j + 1 < former.size(); ++j) {
                use_({former[j], former[j + 1], row[j]});
                use_({former[j + 1], row[j], row[j + 1]});
            }
            former.swap(row);
        }
    }

    DocumentCache& cache_;
    const MeshWork& work_;
    const Shading& shading_;
    double cell_;
    const std::function<void(const MeshTriangle&)>& use_;
    MeshNumbers numbers_;
    std::int64_t vertexCost_;
    std::int64_t left_ = budget::meshVertices;
};

} // namespace

bool forEachTriangle(DocumentCache& cache, const MeshWork& work, const Shading& shading,
                     double cell, const std::function<void(const MeshTriangle&)>& use) {
    return Triangles(cache, work, shading, cell, use).run();
}

} // namespace corvane
