// One content of the base, to which a save makes patches: the page's, or that of a form as it was
// drawn once.
#pragma once

#include "host/matrix.h"
#include "reader/form/form_trace.h"
#include "reader/page/page_base.h"
#include "writer/patch/base/base_reading.h"

#include <cstdint>
#include <deque>
#include <vector>

namespace corvane {

struct BaseContent {
    std::int32_t number = 0; ///< as `ArtSource::content`
    const ContentTrace& trace;
    const FormTrace* form = nullptr;     ///< null: it is the page's
    const BaseContent* around = nullptr; ///< the content that draws the form
    PaintComparison& paints;             ///< of all contents
    MaskComparison& masks;
    PatchLayers& layers;
};

/// The contents of the base by their numbers.
class BaseContents {
public:
    /// Where `sourcesMeanIt` is not set, forms of the artwork are not those of the base: it has
    /// none.
    BaseContents(const BaseReading& reading, bool sourcesMeanIt);
    BaseContents(const BaseContents&) = delete;
    BaseContents& operator=(const BaseContents&) = delete;

    const BaseContent& page() const { return contents_.front(); }
    bool sourcesMeanIt() const { return sourcesMeanIt_; }
    bool hasForms() const { return contents_.size() > 1; }
    /// Null where no form of that number was drawn, or none of it is seen.
    const BaseContent* find(std::int32_t number) const {
        const auto index = static_cast<std::size_t>(number);
        return number >= 0 && index < byNumber_.size() ? byNumber_[index] : nullptr;
    }

private:
    void add(const BaseContent& around, const FormTrace& form);

    bool sourcesMeanIt_;
    std::deque<BaseContent> contents_;
    std::vector<const BaseContent*> byNumber_;
    ZoneCharge charge_;
};

/// Objects that the content paints, those of forms within it included.
std::int32_t leavesOf(const ContentTrace& trace);

/// In which the content looks up names.
const Object& resourcesOf(const BaseContent& content, const PageBase& base);
/// From the content's own space, in which its patterns lie, to the artboard.
const RealMatrix& matrixOf(const BaseContent& content, const PageBase& base);
/// The streams of the content, in order.
std::vector<ObjectOwner> streamsOf(const BaseContent& content, const PageBase& base);

} // namespace corvane
