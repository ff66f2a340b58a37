// The interpreter of page content: all that changes while content is read.
//
// A reading of a page has one interpreter. Content within the page (a form, a glyph procedure, a
// tile, a mask) enters the same one by a `ContentScope`, after a `saveState` of its own. It begins
// with the state in force; its operands, its `Q` and its path under construction do not touch those
// of the content around it.
#pragma once

#include "objects/object.h"
#include "objects/stack.h"
#include "reader/classic/font_list.h"
#include "reader/classic/font_selection.h"
#include "reader/classic/text_state.h"
#include "reader/content/content_keywords.h"
#include "reader/content/omissions.h"
#include "reader/content/progress.h"
#include "reader/content/soft_masks.h"
#include "reader/content/state.h"
#include "reader/epsf/epsf_file.h"
#include "reader/group/containers.h"
#include "reader/image/page_images.h"
#include "reader/layer/optional_content.h"
#include "reader/paint/colour_space_cache.h"
#include "reader/paint/ink.h"
#include "reader/paint/path.h"
#include "reader/shading/page_patterns.h"
#include "reader/syntax/token_push.h"
#include "reader/text/page_fonts.h"
#include "reader/text/text_object.h"

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace corvane {

class ContentTrace;

/// Where an operator stands in its content, the decoded streams taken as one sequence of bytes:
/// from the first byte of its first operand to behind its keyword.
struct OperatorSpan {
    std::int64_t start = 0;
    std::int64_t end = 0;
    friend constexpr bool operator==(const OperatorSpan&, const OperatorSpan&) = default;
};

/// What the path that ended last became.
struct EndedPath {
    std::int64_t start = 0;   ///< of the first operator that constructed it
    Art art = Art::null;      ///< what was painted, or left unpainted; null: nothing to see
    Art clip = Art::null;     ///< the clip that it became
    bool clips = false;       ///< it clips, also where no art says so
    bool hidesFill = false;   ///< its fill is one that artwork cannot hold
    bool hidesStroke = false; ///< in the same way
};

/// What belongs to one content: the page's, or that of a form within it.
struct ContentLevel {
    explicit ContentLevel(DocumentCache& cache) : operands(cache) {}

    TokenPusher operands;         ///< constructs that are open on the operand stack
    PathConstruction path;        ///< the path under construction
    RealMatrix base;              ///< its default space, in which patterns lie, to the artboard
    Box area;                     ///< of the artboard: all that it may paint lies within
    std::int32_t floor = 0;       ///< states saved by the content around it, not for its `Q`
    std::int64_t streamStart = 0; ///< bytes of the streams before the one being read
    bool isBegun = false;         ///< the operator to come was begun: `span.start` is known
    OperatorSpan span;            ///< the operator being read or run
    bool tellsSources = false;    ///< the host learns which bytes made an object
    std::int32_t content = 0;     ///< as `ArtSource::content`
    std::int32_t painted = 0;     ///< objects so far, clips not counted
    EndedPath ended;
    TextObject text;
    ShownText shown;
    EndedText endedText;
    bool isGlyph = false;       ///< a glyph procedure
    bool ignoresColour = false; ///< of one that only says a shape (d1)
    bool setsFont = false;      ///< the latest `gs` set the font
    bool setsLines = false;     ///< or width, ends, joins or dashes of lines
    classic::TextLineState classicText;
    Art placed = Art::null;        ///< what the operator that draws an image or form made of it
    Art shaded = Art::null;        ///< what the latest `sh` made
    std::int64_t imageStart = -1;  ///< of the inline image that is open; below 0: none is
    KnownImage inlineImage;        ///< it, once its data were read
    classic::EpsfFile inlineFile;  ///< likewise, in the original profile
    ContentTrace* trace = nullptr; ///< where operators are noted, if anywhere; not an owner
};

struct Interpreter {
    /// For the host; of bytes from `start` to the end of the operator at hand.
    ArtSource sourceFrom(std::int64_t start) const {
        return {start, level.span.end, level.painted, level.content};
    }

    explicit Interpreter(DocumentCache& owner)
        : cache(owner), level(owner), colourSpaces(colourSpacesOf(owner)) {}
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    SharedTables<ContentKeywords> keywords;
    DocumentCache& cache;
    GraphicsState state;
    SavedStates saved;
    Containers containers;
    ContentLevel level;
    ContentProgress progress;
    Omissions omissions;
    ColourSpaceCache& colourSpaces;
    PageFonts fonts;
    classic::FontList classicFonts;
    classic::SelectedFonts selectedFonts;
    PageImages images;
    PagePatterns patterns;
    classic::EpsfFolder epsfFolder;
    OptionalContent layers;
    SoftMasks softMasks;
    /// Custom colours of the host, by the spaces whose tints they are.
    std::map<std::shared_ptr<const ColourSpace>, PaintSource> inks;
    InkMixtures inkMixtures;
    std::int32_t blended = 0;     ///< pieces of art that blend with what is behind them
    std::int32_t seenThrough = 0; ///< the same, and those that show it
    /// Numbers of the objects of the contents within one another that are being drawn; 0: of none.
    std::vector<std::int32_t> openContents;
    std::int32_t forms = 0;         ///< drawn so far, also those that nothing is seen of
    bool readsForms = false;        ///< forms are drawn; otherwise they are counted and left out
    bool readsText = false;         ///< text becomes art; otherwise it is counted and left out
    bool readsImages = false;       ///< the same of images
    bool readsPatterns = false;     ///< and of patterns and shadings
    bool readsTransparency = false; ///< opacity, blending and masks become the art's
    bool readsPens = false;         ///< the same of pens, overprint and inks
    bool readsIntents = false;      ///< and of rendering intents
    bool readsInkMixtures = false;  ///< and of colours of several inks
};

/// One content, from its first stream to its last.
///
/// Names are looked up in `resources` and nowhere else: for a form that inherits the page's
/// resources, pass those. Default colour spaces that they lack are those of the content around it,
/// as readers have it, unless `inheritsDefaults` is false. `leave` ends what the content left open:
/// it drops operands and an unfinished path and restores the states that were saved. If something
/// is raised before `leave`, the destructor does the same without a call of the host: groups stay
/// as they are.
class ContentScope {
public:
    ContentScope(Interpreter& interpreter, ObjectOwner resources, bool inheritsDefaults = true);
    ~ContentScope();
    ContentScope(const ContentScope&) = delete;
    ContentScope& operator=(const ContentScope&) = delete;

    void leave();

private:
    Interpreter& interpreter_;
    DefaultSpacesScope defaults_;
    StackFloor operandFloor_;
    ContentLevel formerLevel_;
    ObjectOwner formerResources_;
};

} // namespace corvane
