#include "fonts/shaped_text.h"

#include <algorithm>
#include <array>
#include <memory>
#include <span>

#include <hb.h>

namespace corvane {

namespace {

struct BufferCloser {
    void operator()(hb_buffer_t* buffer) const { hb_buffer_destroy(buffer); }
};

/// Characters around a stretch that shapers look at; HarfBuzz keeps five.
constexpr std::size_t contextLength = 5;

void fill(hb_buffer_t* buffer, const TextStretch& stretch) {
    const std::size_t start = std::min(stretch.start, stretch.text.size());
    const std::size_t count = std::min(stretch.count, stretch.text.size() - start);
    const std::size_t first = start - std::min(start, contextLength);
    const std::size_t end = std::min(stretch.text.size(), start + count + contextLength);
    std::vector<std::uint32_t> characters(stretch.text.begin() + static_cast<std::ptrdiff_t>(first),
                                          stretch.text.begin() + static_cast<std::ptrdiff_t>(end));
    hb_buffer_add_utf32(buffer, characters.data(), static_cast<int>(characters.size()),
                        static_cast<unsigned>(start - first), static_cast<int>(count));
    hb_buffer_set_flags(buffer, HB_BUFFER_FLAG_REMOVE_DEFAULT_IGNORABLES);
    hb_buffer_set_cluster_level(buffer, HB_BUFFER_CLUSTER_LEVEL_MONOTONE_CHARACTERS);
    hb_buffer_set_direction(buffer, stretch.isVertical      ? HB_DIRECTION_TTB
                                    : stretch.isRightToLeft ? HB_DIRECTION_RTL
                                                            : HB_DIRECTION_LTR);
    if (stretch.script != 0) {
        hb_buffer_set_script(buffer, hb_script_from_iso15924_tag(stretch.script));
    }
    hb_buffer_guess_segment_properties(buffer);
    // The language of the machine's settings must not tell.
    hb_buffer_set_language(buffer, hb_language_from_string("und", -1));
}

} // namespace

std::vector<ShapedGlyph> shapeText(const OpenTypeFont& font, const TextStretch& stretch) {
    const std::unique_ptr<hb_buffer_t, BufferCloser> buffer(hb_buffer_create());
    fill(buffer.get(), stretch);
    const std::array<hb_feature_t, 2> noLigatures = {
        hb_feature_t{HB_TAG('l', 'i', 'g', 'a'), 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END},
        hb_feature_t{HB_TAG('c', 'l', 'i', 'g'), 0, HB_FEATURE_GLOBAL_START,
                     HB_FEATURE_GLOBAL_END}};
    hb_shape(font.font(), buffer.get(), noLigatures.data(),
             stretch.hasLigatures ? 0 : static_cast<unsigned>(noLigatures.size()));
    unsigned count = 0;
    const hb_glyph_info_t* const glyphs = hb_buffer_get_glyph_infos(buffer.get(), &count);
    const hb_glyph_position_t* const places = hb_buffer_get_glyph_positions(buffer.get(), &count);
    const std::size_t first = stretch.start - std::min(stretch.start, contextLength);
    std::vector<ShapedGlyph> shaped;
    shaped.reserve(count);
    for (unsigned i = 0; i < count; ++i) {
        const hb_glyph_info_t& glyph = glyphs[i];
        const hb_glyph_position_t& place = places[i];
        ShapedGlyph& added = shaped.emplace_back(
            ShapedGlyph{.glyph = glyph.codepoint, .cluster = first + glyph.cluster});
        if (!stretch.isVertical) {
            added.advance = place.x_advance / font.em();
            added.x = place.x_offset / font.em();
            added.y = place.y_offset / font.em();
        }
    }
    return shaped;
}

} // namespace corvane
