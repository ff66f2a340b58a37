// What the operators of a page's content did and where they stand, for a save that patches it.
//
// A trace is written while the content is read again. It has an event for each operator but those
// that construct paths: a path is one event, where it is painted. Every event says what is in force
// behind it. Clips, marked content and settings are chains: each link knows the one it was added
// to, so what was in force anywhere is one number, and `Q` goes back to a former one.
#pragma once

#include "host/artwork.h"
#include "host/matrix.h"
#include "host/structure.h"
#include "reader/content/content_keywords.h"
#include "reader/text/text_object.h"
#include "runtime/charged_list.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace corvane {

struct FormTrace;
struct Interpreter;

/// A number of an event, or of a link in a chain. Links count from 1; 0 is the end of the chain.
using TraceIndex = std::uint32_t;

/// What is in force at a place of the content.
struct Surroundings {
    TraceIndex matrix = 0; ///< in `ContentTrace::matrices`: the CTM, to the artboard
    TraceIndex clip = 0;   ///< the innermost clip
    TraceIndex mark = 0;   ///< the innermost marked content
    TraceIndex setter = 0; ///< the latest operator that set a part of the state
    TraceIndex font = 0;   ///< the event of the latest Tf, or `gs` with a font, from 1; 0: none
    TraceIndex text = 0;   ///< in `ContentTrace::textPlace`; within a text object
    std::uint16_t settings = 0; ///< as `GraphicsState::settings`
    bool isInText = false;
    bool isInPath = false; ///< a path is under construction
};

/// One operator, or a path with all operators that made it. Bytes are counted as in `OperatorSpan`.
struct TraceEvent {
    std::uint32_t start = 0;
    std::uint32_t end = 0;
    std::uint32_t word = 0; ///< of a path: where the operator that ends it begins
    OperatorRole role = OperatorRole::other;
    bool isFailed : 1 = false;     ///< it did nothing; a `Q` without a `q` too
    bool hidesFill : 1 = false;    ///< of a path: filled with what its art does not show
    bool hidesStroke : 1 = false;  ///< in the same way
    bool namesPattern : 1 = false; ///< of scn, SCN
    bool setsLines : 1 = false;    ///< of gs: width, ends, joins or dashes
    Art art = Art::null;           ///< what was painted; of text its first part
    Art clip = Art::null;          ///< of a path: what clips from here on
    Surroundings behind = {};
};

/// Where a text object has come to. 1: it has just begun.
struct TextObjectPlace {
    TraceIndex begin = 0;    ///< the event of its BT
    RealMatrix line = {};    ///< where its line begins
    double along = 0;        ///< how far what was shown goes from there, in text space
    double across = 0;       ///< the same at a right angle: lines and columns in one text object
    double unit = 0;         ///< what a number of 1000 in an array moves by, in text space
    bool addsToClip = false; ///< what it showed adds to the clip at its end
};

/// The state in which an operator showed text.
struct TextSetting {
    TraceIndex event = 0;
    RealMatrix matrix = {}; ///< from text space, where it begins, to the artboard
    double size = 0;
    double characterSpacing = 0;
    double wordSpacing = 0;
    double horizontalScale = 1;
    double rise = 0;
    std::int32_t mode = 0;
    TraceIndex font = 0; ///< as `Surroundings::font`
    double advance = 0;  ///< of all that it shows, in text space
    double unit = 0;     ///< as in `TextObjectPlace`
    bool isVertical = false;
};

/// What an operator painted, as artwork holds it.
struct PaintedArt {
    TraceIndex event = 0;
    Art art = Art::null;
    TraceIndex setting = 0; ///< of text: in `ContentTrace::textSetting`
    TraceIndex part = 0;    ///< of text: in `ContentTrace::textPart`
    bool isDrawn = false;   ///< text that glyph procedures drew: the art is a group of paths
    bool isImage = false;
    bool isForm = false;    ///< the art is the group of a form
    bool isShading = false; ///< a path over the area of a clip, or an image of it
    bool isStencil = false; ///< a path under a mask of an image
};

/// A link of the clips in force.
struct ClipLink {
    TraceIndex outer = 0;
    TraceIndex event = 0;
    Art art = Art::null;     ///< null: a clip that no art shows, such as text
    std::uint32_t depth = 0; ///< 1 for the outermost
    bool hides = false;      ///< something that no art shows is painted in it
    bool holds = false;      ///< something that art shows is painted in it, so its own art lives
};

/// A link of the marked content that is open.
struct MarkLink {
    TraceIndex outer = 0;
    TraceIndex event = 0;
    bool isOptional = false; ///< content of a layer of the file, which may be hidden
    ContentLayer layer = ContentLayer::null; ///< that layer; null: the host does not know it
    std::uint32_t depth = 0;                 ///< 1 for the outermost
};

/// A link of the operators that set the state.
struct SetterLink {
    TraceIndex former = 0;
    TraceIndex event = 0;
    TraceIndex matrix = 0; ///< the CTM when it ran
};

class ContentTrace {
public:
    ContentTrace();
    ~ContentTrace();

    // While content is read:

    void begin(const Interpreter& interpreter);
    void beginStream(std::int64_t start);
    /// A string that the stream does not close would take in what is written behind it.
    void endStream(std::int64_t end, bool isInString);
    /// The operator of the interpreter's level was run.
    void note(const Interpreter& interpreter, OperatorRole role);
    void noteFailed(const Interpreter& interpreter);
    /// The operator at hand draws this form. It is not noted yet.
    void addForm(std::unique_ptr<FormTrace> form);
    /// A token could not be read, so the bytes of the stream may be others than other readers see.
    void noteDamage() { damaged_.back() = true; }
    /// All streams were read; nothing was closed yet.
    void end(const Interpreter& interpreter);

    // What was read:

    std::span<const TraceEvent> events() const { return events_.items(); }
    /// What art shows, clips not counted, in the order of painting. Text is there in parts.
    std::span<const PaintedArt> painted() const { return painted_.items(); }
    /// How many of what was painted, from the one of that number on, one operator painted.
    std::uint32_t countParts(std::uint32_t painted) const;
    const TextObjectPlace& textPlace(TraceIndex index) const { return textPlaces_.items()[index]; }
    const TextSetting& textSetting(TraceIndex index) const { return textSettings_.items()[index]; }
    const ShownPart& textPart(TraceIndex index) const { return textParts_.items()[index]; }
    const ClipLink& clip(TraceIndex link) const { return clips_.items()[link]; }
    const MarkLink& mark(TraceIndex link) const { return marks_.items()[link]; }
    const SetterLink& setter(TraceIndex link) const { return setters_.items()[link]; }
    const RealMatrix& matrix(TraceIndex index) const { return matrices_.items()[index]; }
    std::size_t clipCount() const { return clips_.size(); }
    std::size_t markCount() const { return marks_.size(); }
    /// The forms that were drawn, in their order.
    std::span<const std::unique_ptr<FormTrace>> forms() const { return forms_; }
    /// The one that an event drew; null: none.
    const FormTrace* formAt(TraceIndex event) const;
    /// Something is painted that no art shows, here or in a form.
    bool hidesArt() const { return hidesArt_; }

    /// The clips around what an event paints: a path is not within the clip that it becomes.
    TraceIndex clipAround(TraceIndex event) const;

    /// First bytes of the streams, and of what would come behind the last.
    std::span<const std::uint32_t> streamStarts() const { return streamStarts_; }
    bool isDamaged(std::size_t stream) const { return damaged_[stream]; }
    const Surroundings& atStart() const { return atStart_; }
    const Surroundings& atEnd() const { return behind_; }
    /// What would be in force at the end if every `q` had its `Q`.
    const Surroundings& atEndOfPage() const { return saved_.empty() ? behind_ : saved_.front(); }
    /// `q` without their `Q`.
    std::size_t openSaves() const { return saved_.size(); }
    /// Whether what came behind the last stream would be taken for a part of what began in it: of
    /// an image, a string or an array.
    bool endsOpen() const { return endsOpen_; }

private:
    void apply(const Interpreter& interpreter, TraceEvent& event);
    void applyPath(const Interpreter& interpreter, TraceEvent& event);
    void applyShow(const Interpreter& interpreter, TraceEvent& event);
    void moveOn(const ShownPart& before);
    void applyObject(const Interpreter& interpreter, TraceEvent& event);
    void applyShading(const Interpreter& interpreter, TraceEvent& event);
    void addTextPlace(const Interpreter& interpreter);
    void addClip(Art art);
    void markClips(bool ClipLink::*mark);
    void hide();
    void setMatrix(const Interpreter& interpreter);
    TraceIndex next() const { return static_cast<TraceIndex>(events_.size()); }

    ChargedList<TraceEvent> events_;
    ChargedList<PaintedArt> painted_;
    ChargedList<TextObjectPlace> textPlaces_;
    ChargedList<TextSetting> textSettings_;
    ChargedList<ShownPart> textParts_;
    ChargedList<ClipLink> clips_;
    ChargedList<MarkLink> marks_;
    ChargedList<SetterLink> setters_;
    ChargedList<RealMatrix> matrices_;
    std::vector<std::unique_ptr<FormTrace>> forms_;
    ZoneCharge formsCharge_;
    std::vector<std::uint32_t> streamStarts_;
    std::vector<bool> damaged_;
    std::vector<Surroundings> saved_;
    ZoneCharge savedCharge_;
    Surroundings atStart_;
    Surroundings behind_;
    std::uint32_t imageStart_ = 0;
    std::optional<std::uint32_t> cutImage_; ///< where the open image began, in a stream that ended
    bool isInImage_ = false;
    bool isInData_ = false; ///< of an image, behind its ID
    bool endsOpen_ = false;
    bool hidesArt_ = false;
};

} // namespace corvane
