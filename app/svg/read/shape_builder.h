// Makes a path or compound path of the artwork from lines and curves in a user space.
#pragma once

#include "app/artwork/document.h"
#include "app/svg/read/tally.h"
#include "app/svg/read/values/user_box.h"
#include "app/svg/read/vertex_trace.h"
#include "host/matrix.h"

#include <cstdint>
#include <vector>

namespace corvane {

/// Where new art goes.
struct ArtPlace {
    Placement placement = Placement::inside;
    Art reference = Art::null;
};

/// Segments are handed to the document in blocks, so that a long path is held once. A point becomes
/// 16.16 once, rounded to nearest; one that does not fit is moved to the edge, and the shape
/// counted.
class ShapeBuilder {
public:
    ShapeBuilder(Document& document, Tally& tally) : document_(document), tally_(tally) {}

    /// Starts a new shape that will stand at `place`. `keepsPoints`: subpaths of one point are
    /// kept. `measures`: `box` will be asked for.
    void begin(ArtPlace place, const RealMatrix& toArt, bool keepsPoints, bool measures);
    /// What follows is in another user space, and starts at its 0,0.
    void enter(const RealMatrix& toArt);
    /// Subpaths without length become lines that are too short to be seen but for their caps.
    /// Readers of PDF do not agree on the caps of the others.
    void stretchPoints() { stretchesPoints_ = true; }
    /// Has `trace` follow the shape that was begun.
    void follow(VertexTrace& trace) { trace_ = &trace; }

    void moveTo(double x, double y);
    void lineTo(double x, double y);
    /// `continues`: a piece of the segment before.
    void curveTo(RealPoint out, RealPoint in, RealPoint end, bool continues = false);
    void quadraticTo(RealPoint control, RealPoint end);
    /// An end that was reached by steps may miss its start by a rounding error: `stepped`.
    void close(bool stepped);

    RealPoint current() const { return current_; }
    RealPoint start() const { return start_; }
    /// Around all that was drawn, where it was asked for.
    const UserBox& box() const { return box_; }

    /// The shape: a compound path if it has several subpaths or `compound` says so. A path without
    /// segments where nothing was drawn.
    Art finish(bool compound);

private:
    void openSubpath();
    void append(const Segment&);
    void flush(std::size_t keep);
    void finishSubpath();
    void stretchPoint();
    bool atStart(bool stepped) const;
    Point toPoint(double x, double y);

    Document& document_;
    Tally& tally_;
    ArtPlace place_;
    RealMatrix toArt_;
    bool keepsPoints_ = false;
    bool measures_ = false;
    bool overflowed_ = false;
    bool stretchesPoints_ = false;
    VertexTrace* trace_ = nullptr;
    UserBox box_;
    RealPoint current_;
    RealPoint start_;

    Art shape_ = Art::null; ///< so far: null, a path, or a compound path
    Art path_ = Art::null;  ///< of the subpath that is open, once some of it was handed over
    bool open_ = false;
    bool closed_ = false;
    Segment first_;
    std::int32_t flushed_ = 0; ///< segments of the open subpath that the document has
    std::vector<Segment> pending_;
};

} // namespace corvane
