#include "app/svg/text/letter_advances.h"

#include <hb.h>

#include <limits>
#include <span>

namespace corvane {

namespace {

struct BufferRelease {
    void operator()(hb_buffer_t* buffer) const { hb_buffer_destroy(buffer); }
};

std::span<const hb_glyph_info_t> glyphsOf(hb_buffer_t* buffer) {
    unsigned count = 0;
    const hb_glyph_info_t* const infos = hb_buffer_get_glyph_infos(buffer, &count);
    return {infos, count};
}

/// The file's bytes stay where they are: it is read, and not copied.
hb_font_t* openFont(std::span<const std::byte> file) {
    const auto* const bytes = static_cast<const char*>(static_cast<const void*>(file.data()));
    hb_blob_t* const blob = hb_blob_create(bytes, static_cast<unsigned>(file.size()),
                                           HB_MEMORY_MODE_READONLY, nullptr, nullptr);
    hb_face_t* const face = hb_face_create(blob, 0);
    hb_font_t* const font = hb_font_create(face);
    hb_face_destroy(face);
    hb_blob_destroy(blob);
    return font;
}

} // namespace

LetterAdvances::~LetterAdvances() = default;

void LetterAdvances::Release::operator()(hb_font_t* font) const {
    hb_font_destroy(font);
}

hb_font_t* LetterAdvances::faceOf(Font font, std::int32_t face) {
    const auto [found, isNew] = faces_.try_emplace({font, face});
    const std::span<const std::byte> file = fonts_.file(font, face);
    if (isNew && !file.empty() && file.size() <= std::numeric_limits<unsigned>::max()) {
        found->second = Face(openFont(file));
    }
    return found->second.get();
}

std::vector<GlyphWidth> LetterAdvances::widths(Font font, std::int32_t face,
                                               std::string_view text) {
    std::vector<GlyphWidth> widths;
    hb_font_t* const file = faceOf(font, face);
    if (file == nullptr || text.size() > std::numeric_limits<int>::max()) {
        return widths;
    }
    const std::unique_ptr<hb_buffer_t, BufferRelease> buffer(hb_buffer_create());
    // The order is that of the page, and letters have the form that they had there.
    hb_buffer_set_direction(buffer.get(), HB_DIRECTION_LTR);
    hb_buffer_set_script(buffer.get(), HB_SCRIPT_LATIN);
    hb_buffer_set_cluster_level(buffer.get(), HB_BUFFER_CLUSTER_LEVEL_MONOTONE_CHARACTERS);
    hb_buffer_set_flags(buffer.get(), HB_BUFFER_FLAG_PRESERVE_DEFAULT_IGNORABLES);
    hb_buffer_add_utf8(buffer.get(), text.data(), static_cast<int>(text.size()), 0,
                       static_cast<int>(text.size()));
    hb_shape(file, buffer.get(), nullptr, 0);
    const double units = hb_face_get_upem(hb_font_get_face(file));
    for (const hb_glyph_info_t& glyph : glyphsOf(buffer.get())) {
        if (glyph.codepoint == 0) {
            return {};
        }
        // Of the glyph itself: shaping takes the widths of marks away, and pages do not.
        const double advance = hb_font_get_glyph_h_advance(file, glyph.codepoint) / units;
        if (!widths.empty() && widths.back().start == glyph.cluster) {
            widths.back().advance += advance;
        } else {
            widths.push_back({glyph.cluster, advance});
        }
    }
    return widths;
}

} // namespace corvane
