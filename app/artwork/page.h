// The page that artwork stands on: artboard, bounds and origin.
#pragma once

#include "host/artwork.h"
#include "host/extension.h"

namespace corvane {

/// Where the page lies on the artboard. In the extended profile art comes moved so that the page's
/// lower left is the artboard's, and the origin is 0,0. In the original profile art keeps the
/// page's coordinates: the artboard's lower left stands at the lower left of the bounds, so the
/// page's origin is minus that corner and bounds are told from the artboard.
class Page {
public:
    Profile profile() const { return profile_; }
    void setProfile(Profile profile) { profile_ = profile; }

    const ArtboardSize& artboard() const { return artboard_; }
    void setArtboard(const ArtboardSize& size) { artboard_ = size; }

    /// The rectangle of the page that is seen, in the coordinates of the art.
    const Rect& bounds() const { return bounds_; }
    void setBounds(const Rect& bounds) { bounds_ = bounds; }

    /// The page's lower left corner on the artboard, points.
    Point origin() const;
    /// `bounds` as seen from the artboard's lower left corner.
    Rect boundsOnArtboard() const;

private:
    Profile profile_ = Profile::extended;
    ArtboardSize artboard_;
    Rect bounds_;
};

} // namespace corvane
