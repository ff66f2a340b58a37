// The graphics state that an object of the page had, set again by the operators that had set it.
#pragma once

#include "host/matrix.h"
#include "writer/art/walk.h"
#include "writer/patch/base/base_content.h"
#include "writer/patch/content_bytes.h"
#include "writer/patch/live_setters.h"
#include "writer/patch/moved_patterns.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace corvane {

/// By how much what lies on the page, and not in user space, moves on the artboard.
struct PageMovement {
    RealMatrix masks;
    RealMatrix patterns;
    bool any() const { return masks != RealMatrix() || patterns != RealMatrix(); }
};

class GatheredState {
public:
    /// `live`: of the same content.
    GatheredState(Walk& walk, ContentBytes& bytes, const BaseContent& content,
                  MovedPatterns& patterns, LiveSetters live)
        : walk_(walk), bytes_(bytes), content_(content), trace_(content.trace), patterns_(patterns),
          live_(std::move(live)) {}

    /// Whether the content begins with another state than a page does: one that was set around it.
    bool inherits();

    /// Whether `writeInitial` has a way.
    /// `ofOwn`: the roles of what is set again.
    bool canWriteInitial(std::uint32_t ofOwn, TraceIndex setter);

    /// The roles of that operator and those before it: a bit for each.
    std::uint32_t rolesUpTo(TraceIndex setter);

    /// Sets what `own` has as the content begins, where another value may be in force: where an
    /// operator up to `setter` set it, or new art was drawn before. Raises `unpatchable` where that
    /// was set around the content.
    void writeInitial(const Surroundings& own, TraceIndex setter, bool isBehindNew);

    /// Sets the state that `own` says, and its CTM. `ctm` is in force so far. Soft
    /// masks and patterns move.
    void write(const Surroundings& own, const RealMatrix& ctm, const PageMovement& movement);

    /// The same in the space of the artboard, for a CTM in which nothing can be drawn.
    void writeOnArtboard(const Surroundings& own);

    /// Whether a pattern is the colour for filling or stroking there, as this content sets it.
    bool namesPattern(const Surroundings& own);

    /// The bytes of an operator, and a line end.
    std::string bytesOf(TraceIndex event);

private:
    bool changesInherited(TraceIndex setter);
    void setAll(TraceIndex setter, const PageMovement& movement);
    void enterSpace(const RealMatrix& space);
    void set(const SetterLink& link, const PageMovement& movement);

    std::uint32_t rolesAround();

    Walk& walk_;
    ContentBytes& bytes_;
    const BaseContent& content_;
    const ContentTrace& trace_;
    MovedPatterns& patterns_;
    LiveSetters live_;
    RealMatrix space_;
    std::vector<std::uint32_t>
        roles_; // by setter: what it and those before it set, a bit for each role
    std::optional<std::uint32_t> rolesAround_; // what was set around the content
};

} // namespace corvane
