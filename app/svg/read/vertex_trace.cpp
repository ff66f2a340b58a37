#include "app/svg/read/vertex_trace.h"

#include <cmath>
#include <numbers>

namespace corvane {

namespace {

/// The direction of the first step that leads anywhere.
std::optional<double> directionOf(RealPoint from, RealPoint to, RealPoint next, RealPoint last) {
    const auto leads = [&](RealPoint end) { return end.x != from.x || end.y != from.y; };
    const RealPoint end = leads(to) ? to : leads(next) ? next : last;
    return leads(end) ? std::optional(std::atan2(end.y - from.y, end.x - from.x)) : std::nullopt;
}

} // namespace

void VertexTrace::moveTo(RealPoint to) {
    start_ = vertices_.size();
    vertices_.push_back({to, {}, {}});
    current_ = to;
}

void VertexTrace::curveTo(RealPoint out, RealPoint in, RealPoint end, bool continues) {
    if (vertices_.empty()) {
        moveTo(current_);
    }
    const auto back = directionOf(end, in, out, current_);
    auto arriving = back ? std::optional(*back + std::numbers::pi) : std::nullopt;
    if (continues) {
        vertices_.back().place = end;
        vertices_.back().arriving = arriving;
    } else {
        Vertex& from = vertices_.back();
        from.leaving = directionOf(current_, out, in, end);
        arriving = arriving ? arriving : from.arriving; // a step that leads nowhere
        vertices_.push_back({end, arriving, {}});
    }
    current_ = end;
}

void VertexTrace::close() {
    if (vertices_.empty()) {
        return;
    }
    lineTo(vertices_[start_].place);
    vertices_.back().leaving = vertices_[start_].leaving;
    vertices_[start_].arriving = vertices_.back().arriving;
    start_ = vertices_.size() - 1; // where what follows begins, unless it moves
}

double VertexTrace::angle(std::size_t vertex) const {
    const Vertex& at = vertices_[vertex];
    if (!at.arriving || !at.leaving) {
        return at.arriving.value_or(at.leaving.value_or(0));
    }
    const double turn = std::remainder(*at.leaving - *at.arriving, 2 * std::numbers::pi);
    return *at.arriving + turn / 2;
}

} // namespace corvane
