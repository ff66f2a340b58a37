// Shadings as pixels, where a gradient cannot say them.
#pragma once

#include "reader/shading/shading.h"
#include "runtime/memory.h"
#include "runtime/work_meter.h"

#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

/// Red, green, blue and opacity of each pixel, the first row at the top.
class ShadingRaster {
public:
    /// Of `area` on the artboard, `width` by `height` pixels; `matrix` leads from the shading's
    /// space to the artboard and has an inverse.
    ShadingRaster(const Shading& shading, const RealMatrix& matrix, const Box& area,
                  std::int32_t width, std::int32_t height);

    /// Paints the background, where there is one, and the shading, in steps of work. False: a
    /// mesh has more triangles or covers more than the budget. Raises what reading a mesh raises.
    bool draw(DocumentCache& cache, StepMeter& meter, bool withBackground);

    std::span<const std::uint8_t> row(std::int32_t y) const;

private:
    struct Pixel {
        std::array<std::uint8_t, 4> bytes{};
    };

    template <class ColourOf>
    void drawEach(StepMeter& meter, std::int64_t cost, const ColourOf& colourOf);
    void drawFunction(StepMeter& meter);
    void drawCircles(StepMeter& meter);
    bool drawMesh(DocumentCache& cache, StepMeter& meter);
    void makeRamp(StepMeter& meter);
    Pixel rampAt(double input) const;
    void fillTriangle(const std::array<RealPoint, 3>& points,
                      const std::array<std::array<double, 3>, 3>& values);
    void cutToBox(StepMeter& meter);
    RealPoint centre(std::int32_t x, std::int32_t y) const;
    Pixel& at(std::int32_t x, std::int32_t y);

    const Shading& shading_;
    RealMatrix matrix_;
    RealMatrix back_;
    Box area_;
    std::int32_t width_;
    std::int32_t height_;
    ZoneCharge charge_;
    std::vector<Pixel> pixels_;
    std::vector<Pixel> ramp_; ///< colours along the domain of functions with one input
    std::int64_t filled_ = 0; ///< pixels of triangles so far
};

} // namespace corvane
