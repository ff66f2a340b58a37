// The artwork that is to be saved, as lists of what is painted, from the back to the front: one for
// the page, and one for each form of the page.
#pragma once

#include "host/appearance.h"
#include "host/artwork.h"
#include "host/structure.h"
#include "runtime/charged_list.h"

#include <cstdint>
#include <deque>
#include <string>
#include <unordered_set>
#include <vector>

namespace corvane {

/// A number in one of the lists below. Groups count from 1; 0 is no group.
using EditedIndex = std::uint32_t;

inline constexpr EditedIndex notSet = UINT32_MAX;

class BaseContents;
struct EditedForm;

/// Layers of the file within one another (writer/patch/place/layer_chains.h); 0: none.
using LayerChain = std::uint32_t;

/// A group of the artwork. One with a layer and something else is two, the layer around the rest.
struct EditedGroup {
    EditedIndex outer = 0;
    Art clip = Art::null; ///< null: the group does not clip
    /// Of a clip that is text: its runs in `EditedArtwork::clipRuns`, from the first up to the end.
    EditedIndex firstRun = 0;
    EditedIndex endRun = 0;
    /// Of what it holds as one thing; where it holds one object, that has it.
    Appearance appearance = {};
    /// The outermost group that is laid over others as one thing, of it and those around it;
    /// 0: none is.
    EditedIndex whole = 0;
    ContentLayer layer = ContentLayer::null; ///< null: the group shows always
    LayerChain layers = 0;                   ///< all around what it holds
    bool isWithin = false;                   ///< the group around it is the same art
    bool isLooked() const { return appearance != Appearance(); }
};

struct EditedObject {
    Art art = Art::null;
    /// Or a compound path, text, a placed image; a group that has a source, or that is a form.
    ArtKind kind = ArtKind::path;
    EditedForm* form = nullptr; ///< what it is; its objects are not in the list
    EditedIndex group = 0;
    ArtSource source;
    Appearance appearance = {}; ///< with that of a group that holds nothing else
    // Of text: each run is an object.
    std::int32_t run = 0;
    EditedIndex shown = notSet; ///< which text of the content it is, where it does not say so
    double start = 0;           ///< where it begins on its line
    EditedIndex set = notSet;   ///< in the page's `SetText`; not set: its line is as it was
};

struct EditedArtwork {
    ChargedList<EditedGroup> groups;
    ChargedList<EditedObject> objects;  ///< runs of one text object follow one another
    ChargedList<EditedObject> clipRuns; ///< of text that clips, which is no object; likewise
    std::vector<std::string> layers;    ///< titles of those that are drawn and hold an object
    ChargedList<Art> annotations;       ///< groups, which are no objects

    /// The outermost group around the object that is laid over others as one thing; 0: none.
    EditedIndex wholeAround(const EditedObject& object) const { return groups[object.group].whole; }
};

/// What a group and the one object in it say together. Within the group the object blends with
/// nothing.
Appearance together(const Appearance& group, const Appearance& own);

/// Forms that artwork holds, those within others in front of these.
using EditedForms = std::deque<EditedForm>;

/// Asks the host for all that is drawn on the page; layers that are left out are warned of. Groups
/// that are forms of the base are put into `forms`. `others` is art that is no
/// content of the page. Art of a kind that cannot be written raises `type`.
EditedArtwork listArtwork(const BaseContents& base, EditedForms& forms,
                          const std::unordered_set<Art>& others = {});

} // namespace corvane
