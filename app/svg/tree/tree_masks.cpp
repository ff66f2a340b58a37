// Masks of elements.
#include "app/svg/tree/tree_writer.h"

#include "app/svg/markup.h"
#include "app/svg/paint/appearance_attributes.h"
#include "app/svg/paint/mask_transfer.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace corvane {

namespace {

/// Of masks: all of the page, since none is seen beyond it. Without a page, more than there can be.
Extent maskRegion(const Document& document) {
    constexpr std::int64_t farthest = std::int64_t{1} << 31;
    const Rect& page = document.page().bounds();
    const Extent region{page.left, page.bottom, page.right, page.top};
    return region.empty() ? Extent{-farthest, -farthest, farthest, farthest} : region;
}

void writeRegion(TextOutput& out, std::string_view units, const Extent& region, PageCorner corner) {
    writePlainAttribute(out, units, "userSpaceOnUse");
    writeNumberAttribute(out, "x", region.left - corner.left);
    writeNumberAttribute(out, "y", corner.top - region.top);
    writeNumberAttribute(out, "width", region.right - region.left);
    writeNumberAttribute(out, "height", region.top - region.bottom);
}

/// A gray of that light.
std::string grayText(double light) {
    constexpr std::string_view digits = "0123456789abcdef";
    const auto level = static_cast<std::size_t>(std::lround(light * 255));
    const std::array<char, 2> pair{digits[level >> 4], digits[level & 15]};
    std::string text = "#";
    for (int i = 0; i < 3; ++i) {
        text.append(pair.data(), pair.size());
    }
    return text;
}

} // namespace

void TreeWriter::writeMasks(SoftMask mask, int depth) {
    for (const SoftMask claimed : numbers_.masks.claim(document_, mask)) {
        TreeWriter(out_, servers_, numbers_, base_).writeMask(claimed, depth);
    }
}

void TreeWriter::writeLook(const Appearance& appearance) {
    writeAppearance(out_, appearance, numbers_.masks.id(appearance.mask));
}

/// Where the light behind the content counts, it is a path behind all else. A transfer is a filter
/// of all together.
void TreeWriter::writeMask(SoftMask mask, int depth) {
    const MaskFacts& facts = document_.mask(mask);
    const Extent region = maskRegion(document_);
    const bool transfers = !facts.transfer.empty();
    const bool hasGround = facts.isLuminosity && (facts.backdrop != 0 || transfers);
    if (transfers) {
        writeIndent(out_, depth);
        out_.text("<filter");
        writePlainAttribute(out_, "id", numbers_.masks.filterId(mask));
        writeRegion(out_, "filterUnits", region, corner_);
        writeTransfer(out_, facts.transfer, facts.isLuminosity);
        out_.text("</filter>");
    }
    writeIndent(out_, depth);
    out_.text("<mask");
    writePlainAttribute(out_, "id", numbers_.masks.id(mask));
    writeRegion(out_, "maskUnits", region, corner_);
    if (!facts.isLuminosity) {
        writePlainAttribute(out_, "mask-type", "alpha");
    }
    if (hasGround) {
        writeDoubleAttribute(out_, "data-backdrop", facts.backdrop);
    }
    out_.text(">");
    if (transfers) {
        ++depth;
        writeIndent(out_, depth);
        out_.text("<g");
        writePlainAttribute(out_, "filter", "url(#" + numbers_.masks.filterId(mask) + ")");
        writeTransferValues(out_, "data-transfer", facts.transfer);
        out_.text(">");
    }
    if (hasGround) {
        writeIndent(out_, depth + 1);
        out_.text("<path");
        writePlainAttribute(out_, "fill", grayText(facts.backdrop));
        out_.text(" data-ground=\"true\" d=\"");
        writeRectangleData(out_, region, corner_);
        out_.text("\"/>");
    }
    survey_ = surveyGroups(document_, facts.content);
    const bool grouped = document_.clipped(facts.content);
    group_ = grouped ? 0 : 1;
    if (survey_.front().drawn) {
        writeTree(facts.content, grouped, depth + 1, maskContent);
    }
    if (transfers) {
        writeIndent(out_, depth);
        out_.text("</g>");
        --depth;
    }
    writeIndent(out_, depth);
    out_.text("</mask>");
}

} // namespace corvane
