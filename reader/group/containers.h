// Where new art goes: the groups that `q` and clipping open.
//
// In the original profile `q` makes a group at once. In the extended one it only remembers that a
// level was opened: its group is made when something is drawn in it, directly around what inner
// levels made there before, and a group that in the end holds one group alone is replaced by it. So
// a thousand `q` around one path make one group, and empty ones none. In the end, groups that do
// nothing for a person are dissolved.
#pragma once

#include "host/artwork.h"
#include "host/structure.h"
#include "reader/group/idle_groups.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace corvane {

class Containers {
public:
    /// Starts over at the layer's art, or at a group that lies within so many containers.
    void open(Art layer, std::int32_t around = 0);

    /// What `open` was given.
    Art layer() const { return entries_.front().container; }

    /// `q`.
    void push();
    /// `Q`; there must be a level.
    void pop();
    /// `Q` without a call of the host: groups stay as they are.
    void abandon() noexcept;
    /// Marked content begins: what is drawn until its end shows with that layer. Null: always.
    void beginMark(ContentLayer layer);
    /// The innermost marked content of this content ends, if any is open. The work of it, in
    /// tokens: clips that go on are made again.
    std::int64_t endMark();
    /// The layer of the innermost marked content that is open; null: none, or it has none.
    ContentLayer markedLayer() const {
        return marks_.empty() ? ContentLayer::null : marks_.back().layer;
    }

    /// Ends the clips that no `q` bounds, at the end of the content, and dissolves idle groups; no
    /// level is open.
    void finish();

    /// The art that new objects are made in, its group made where it was not yet.
    Art container();
    /// New art in the container: behind the clip of a clipped group, otherwise in front of all.
    /// Raises `host` where there is none.
    Art make(ArtKind kind);
    /// Moves art that was made in `holder` to where new art goes, if `holder` was closed since.
    void bringAlong(Art art, Art holder);
    /// The innermost clip in force, and the group that it clips; null: none that was made since
    /// `open`.
    Art clip() const;
    Art clippedGroup() const;
    /// Whether marked content of a layer is open.
    bool isLayered() const { return layered_ != 0; }
    /// Disposes of groups that were closed and hold nothing, or a clip alone: what they held was
    /// disposed of since.
    void dropBare();
    /// Whether no clip, and no form, may go into the container: one more could not be held.
    bool isFull() const;
    /// Whether new art may still go into it, or into what it holds.
    bool isOpen(Art container) const;
    /// Makes `group`, which stands in the container and is to be clipped, the container until `Q`.
    void enter(Art group);

    /// Containers within one another, the innermost included.
    std::int32_t nesting() const { return around_ + static_cast<std::int32_t>(entries_.size()); }

    /// Levels that `q` opened.
    std::int32_t depth() const { return depth_; }

private:
    struct Entry {
        std::int32_t depth = 0; ///< level that it belongs to
        Art group =
            Art::null; ///< what the level's `q` made; null at the bottom and for clipped groups
        Art container = Art::null;
        std::int32_t height = 0; ///< groups within one another below it
        std::size_t mark = 0;    ///< the container of that many marks; 0: of none
    };
    struct Mark {
        ContentLayer layer = ContentLayer::null;
        std::int32_t depth = 0; ///< levels when it began
        std::int64_t times = 1; ///< so many within one another
    };

    void makeGroup();
    void wrap(std::int32_t depth, Art inner);
    Art closeGroup(Art group);
    void closeClip(Art group);
    void checkNesting() const;
    void makeMarks();
    Art markGroup(ContentLayer layer);
    std::int64_t leaveMark(std::size_t mark);
    std::int64_t reopenClip(const Entry& entry);
    static std::ptrdiff_t bareAtEnd(const std::vector<Entry>& entries);
    Art closeMark(Art group);
    std::size_t marksMade() const;
    std::int32_t soleHeight() const { return soleDepth_ < 0 ? 0 : soleHeight_; }
    bool isMade() const { return entries_.back().depth == depth_; }

    std::vector<Entry> entries_;
    std::vector<Mark> marks_;    ///< that are open
    std::size_t layered_ = 0;    ///< of them, up to the last that has a layer
    Art formerMark_ = Art::null; ///< the group of the marked content that ended last
    ContentLayer formerLayer_ = ContentLayer::null;
    std::int32_t around_ = 0;
    std::int32_t depth_ = 0;
    /// The one group that inner levels left in a level whose own group is not made yet. There is at
    /// most one such level: drawing anywhere else makes its group.
    std::int32_t soleDepth_ = -1;
    Art sole_ = Art::null;
    std::int32_t soleHeight_ = 0; ///< groups within one another, it included
    IdleGroups idle_;
};

} // namespace corvane
