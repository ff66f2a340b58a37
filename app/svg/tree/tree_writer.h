// Writes trees of art as elements: layers, and the tiles of patterns.
#pragma once

#include "app/artwork/document.h"
#include "app/svg/art_source.h"
#include "app/svg/extent.h"
#include "app/svg/layer_attributes.h"
#include "app/svg/paint/mask_names.h"
#include "app/svg/paint/paint_servers.h"
#include "app/svg/path_data.h"
#include "app/svg/sink.h"
#include "app/svg/text/letter_layout.h"
#include "app/svg/tree/survey.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane {

/// What is the same, or counted, through the whole file.
struct SvgNumbers {
    std::uint32_t layers = 0;
    std::uint32_t groups = 0;
    /// By the content that paints them: 0, the page's, or a form's.
    std::unordered_map<std::int32_t, std::uint32_t> shapes;
    std::uint32_t clips = 0;
    std::uint32_t clipTexts = 0; ///< lines that clip
    MaskNames masks;
    LetterRule letters;
};

PageCorner cornerOf(const Document& document);

/// Writes one tree of art after the other.
class TreeWriter {
public:
    TreeWriter(TextOutput& out, PaintServers& servers, SvgNumbers& numbers, SourceBase base)
        : document_(servers.document()), out_(out), servers_(servers), numbers_(numbers),
          base_(base), corner_(cornerOf(document_)) {}

    void writeLayers() {
        for (Layer layer = document_.lastLayer(); layer != Layer::null && !out_.failed();
             layer = document_.previousLayer(layer)) {
            writeLayer(layer);
        }
    }

    void writePattern(PaintSource, int depth);
    void writeMask(SoftMask, int depth);

private:
    /// The clips that elements too deep for groups carry themselves, because no group does it for
    /// them. Rectangles are cut down to one; other clips name the clip before them.
    struct ClipChain {
        std::uint32_t clip = 0; ///< number of the clip that holds all of them; 0: none
        std::uint32_t base = 0; ///< the same without the rectangle
        Extent rectangle = Extent::everything();
        bool hides = false; ///< nothing is left to be seen

        /// Whether an element has to name the clip.
        bool isNamed() const { return !hides && clip != 0; }
    };

    /// Depth of an element whose children may still be groups, the root's being 0. Readers of XML
    /// give up at 256; what they wrap around the file must fit as well.
    static constexpr int deepestGroup = 190;

    /// A group whose children are being written.
    struct Level {
        Art clip = Art::null;
        Art next = Art::null;
        int depth = 0;         ///< of the children's elements
        bool element = false;  ///< the group is an element, to be ended
        bool isObject = false; ///< all in it has one source: the group is numbered, and no shape
        bool isBlendingRun = false; ///< the run at hand is one object, which blends
        int run = 0;           ///< elements around the objects at hand that carry the shared clips
        bool isListed = false; ///< editors list it as a layer, and layers of the file in it
        std::int32_t content = 0; ///< of the form that it is in; 0: of none
        Extent visible;           ///< what clips around it let through, at most
        ClipChain chain;
        /// Numbers of the clips that no group around carries, since in all of them something blends
        /// with what is behind.
        std::vector<std::uint32_t> shared;
    };

    enum class ClipEffect { none, cutsNothing, cuts, hides };

    void writeLayer(Layer layer);
    void writeLevels();
    void enterGroup(Art, const LayerProperties*);
    void leaveGroup();
    void placeInRun(Art);
    void leaveRun(Level&);
    Art onlyPart(Art group) const;
    Art blendingPart(Art) const;
    bool isMixedOut(Art group, const GroupSurvey&) const;
    Appearance lookOf(Art);
    void openWrapper(const Appearance&);
    void writeShape(Art);
    void writeLine(Art text);
    void writePlaced(Art placed);
    void writeServers(const PathStyle&, int depth);
    void writeMasks(SoftMask, int depth);
    void writeLook(const Appearance&);
    void writeTree(Art top, bool grouped, int depth, std::int32_t content);
    void endShape(Note);

    ClipEffect clipEffect(Art clip, const GroupSurvey&, const Extent& visible) const;
    std::uint32_t writeClip(Art clip, std::uint32_t within, int depth);
    std::uint32_t writeRectangleClip(const Extent&, std::uint32_t within, int depth);
    void writeTextClip(Art clip, int depth);
    void startClip(std::uint32_t number, std::uint32_t within, int depth);
    void extendChain(ClipChain&, Art clip, const ClipShape&, int depth);
    static std::string referenceTo(std::uint32_t clip);
    void writeReference(std::uint32_t clip);
    void writeDroppedClip(Art clip);
    void writeData(Art shape, const Pen& pen = {});
    bool hasOrdinal(Art) const;
    void writeLayer(Art group, const LayerProperties&);
    bool writeStructure(Art group);
    void writeGroupId(Art group, const Level& around);
    void writeId(std::string_view kind, std::uint32_t number);
    void writeSource(std::string_view name, Art);

    const Document& document_;
    TextOutput& out_;
    PaintServers& servers_;
    SvgNumbers& numbers_;
    SourceBase base_;
    PageCorner corner_;
    std::vector<GroupSurvey> survey_;
    std::size_t group_ = 0;        ///< of `survey_`: the next one met
    bool isOfAnnotations_ = false; ///< the layer at hand
    std::vector<Level> levels_;
    Art blended_ = Art::null; ///< what says its blending already in an element around it
};

} // namespace corvane
