// A form that content draws, as a save that patches it sees it.
#pragma once

#include "host/appearance.h"
#include "host/artwork.h"
#include "host/matrix.h"
#include "objects/object.h"
#include "reader/content/content_trace.h"

#include <cstdint>

namespace corvane {

/// One drawing of a form. The same form, drawn twice, is there twice.
struct FormTrace {
    TraceIndex event = 0;        ///< of its `Do`, in the trace of the content around it
    std::int32_t content = 0;    ///< as `ArtSource::content`
    std::int32_t object = 0;     ///< number and generation of the form
    std::int32_t generation = 0; ///< 0 where `object` is
    ObjectOwner stream;
    /// In which its content looks up names: its own, or those of the content around it.
    ObjectOwner resources;
    bool hasResources = false; ///< they are its own
    bool isWhole = false;      ///< a transparency group, laid over what is behind it as one thing
    Appearance inherited;      ///< by the state that its content begins with
    RealMatrix matrix;         ///< from the form's own space to the artboard
    Art group = Art::null;     ///< what it paints; null: nothing that art shows
    Art box = Art::null; ///< the group's clip, which stands for the BBox; null: none is needed
    ContentTrace trace;  ///< of its content; its bytes are counted from 0
};

} // namespace corvane
