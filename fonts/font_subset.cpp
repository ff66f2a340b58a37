#include "fonts/font_subset.h"

#include "fonts/free_type.h"
#include "fonts/made/sfnt_table.h"

#include <memory>

#include <hb-subset.h>

#include FT_CID_H

namespace corvane {

namespace {

struct Closer {
    void operator()(hb_subset_input_t* input) const { hb_subset_input_destroy(input); }
    void operator()(hb_subset_plan_t* plan) const { hb_subset_plan_destroy(plan); }
    void operator()(hb_face_t* face) const { hb_face_destroy(face); }
    void operator()(hb_blob_t* blob) const { hb_blob_destroy(blob); }
};
template <class T>
using Owner = std::unique_ptr<T, Closer>;

/// Tables that no reader of a PDF looks at: it has glyphs by number, and places by the content.
constexpr hb_tag_t droppedTables[] = {
    HB_TAG('G', 'S', 'U', 'B'), HB_TAG('G', 'P', 'O', 'S'), HB_TAG('G', 'D', 'E', 'F'),
    HB_TAG('k', 'e', 'r', 'n'), HB_TAG('n', 'a', 'm', 'e'), HB_TAG('p', 'o', 's', 't'),
    HB_TAG('O', 'S', '/', '2'), HB_TAG('c', 'm', 'a', 'p'), HB_TAG('v', 'h', 'e', 'a'),
    HB_TAG('v', 'm', 't', 'x'), HB_TAG('V', 'O', 'R', 'G'), HB_TAG('D', 'S', 'I', 'G'),
    HB_TAG('B', 'A', 'S', 'E'), HB_TAG('J', 'S', 'T', 'F'), HB_TAG('M', 'A', 'T', 'H'),
    HB_TAG('m', 'e', 't', 'a'), HB_TAG('h', 'd', 'm', 'x'), HB_TAG('V', 'D', 'M', 'X'),
    HB_TAG('L', 'T', 'S', 'H'), HB_TAG('g', 'a', 's', 'p'), HB_TAG('S', 'V', 'G', ' '),
    HB_TAG('C', 'O', 'L', 'R'), HB_TAG('C', 'P', 'A', 'L'), HB_TAG('C', 'B', 'D', 'T'),
    HB_TAG('C', 'B', 'L', 'C'), HB_TAG('s', 'b', 'i', 'x'), HB_TAG('m', 'o', 'r', 'x'),
    HB_TAG('m', 'o', 'r', 't'), HB_TAG('k', 'e', 'r', 'x'), HB_TAG('f', 'e', 'a', 't')};

std::vector<std::byte> bytesOf(hb_blob_t* blob) {
    unsigned length = 0;
    const void* const data = hb_blob_get_data(blob, &length);
    const auto* const bytes = static_cast<const std::byte*>(data);
    return {bytes, bytes + length};
}

/// Puts the CIDs of a CID-keyed program in place of the numbers of its glyphs; false where it
/// cannot be read.
bool turnIntoCids(std::vector<std::byte> file, FontSubset& subset) {
    const std::optional<Face> face = Face::open(std::move(file), 0);
    for (auto& [glyph, cid] : subset.cids) {
        FT_UInt own = 0;
        if (!face || FT_Get_CID_From_Glyph_Index(face->get(), cid, &own) != 0) {
            return false;
        }
        cid = own;
    }
    return true;
}

} // namespace

std::optional<FontSubset> makeSubset(const OpenTypeFont& font,
                                     std::span<const GlyphNumber> glyphs) {
    const Owner<hb_subset_input_t> input(hb_subset_input_create_or_fail());
    if (!input) {
        return std::nullopt;
    }
    for (const GlyphNumber glyph : glyphs) {
        hb_set_add(hb_subset_input_glyph_set(input.get()), glyph);
    }
    for (const hb_tag_t tag : droppedTables) {
        hb_set_add(hb_subset_input_set(input.get(), HB_SUBSET_SETS_DROP_TABLE_TAG), tag);
    }
    hb_subset_input_set_flags(input.get(),
                              static_cast<hb_subset_flags_t>(HB_SUBSET_FLAGS_NO_HINTING |
                                                             HB_SUBSET_FLAGS_NOTDEF_OUTLINE));
    const Owner<hb_subset_plan_t> plan(hb_subset_plan_create_or_fail(font.face(), input.get()));
    const Owner<hb_face_t> made(plan ? hb_subset_plan_execute_or_fail(plan.get()) : nullptr);
    if (!made) {
        return std::nullopt;
    }
    FontSubset subset;
    const hb_map_t* const numbers = hb_subset_plan_old_to_new_glyph_mapping(plan.get());
    for (const GlyphNumber glyph : glyphs) {
        const hb_codepoint_t number = hb_map_get(numbers, glyph);
        if (number == HB_MAP_VALUE_INVALID) {
            return std::nullopt; // substitutions may name glyphs that the font lacks
        }
        subset.cids.emplace(glyph, number);
    }
    std::vector<std::byte> file =
        bytesOf(Owner<hb_blob_t>(hb_face_reference_blob(made.get())).get());
    if (font.kind() == ProgramKind::trueType) {
        subset.program = std::move(file);
    } else {
        const SfntTable cff(made.get(), HB_TAG('C', 'F', 'F', ' '));
        subset.program.assign(cff.bytes().begin(), cff.bytes().end());
        if (font.kind() == ProgramKind::cidCff && !turnIntoCids(std::move(file), subset)) {
            return std::nullopt;
        }
    }
    return subset.program.empty() ? std::nullopt : std::optional(std::move(subset));
}

} // namespace corvane
