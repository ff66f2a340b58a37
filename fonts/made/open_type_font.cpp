#include "fonts/made/open_type_font.h"

#include "fonts/embedding.h"

#include "fonts/free_type.h"
#include "fonts/made/sfnt_table.h"
#include "fonts/shaped_text.h"
#include "runtime/budget.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <optional>
#include <span>

#include <hb-ot.h>

namespace corvane {

namespace {

std::vector<std::byte> bytesOfFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamoff size = file ? static_cast<std::streamoff>(file.tellg()) : -1;
    if (size <= 0 || static_cast<std::uint64_t>(size) > budget::fontProgramBytes) {
        return {};
    }
    std::vector<std::byte> bytes(static_cast<std::size_t>(size));
    file.seekg(0);
    file.read(static_cast<char*>(static_cast<void*>(bytes.data())), size);
    return file ? bytes : std::vector<std::byte>();
}

/// The first name of that kind, in English where there is one.
std::string nameOf(hb_face_t* face, hb_ot_name_id_t id) {
    constexpr unsigned longest = 128;
    std::array<char, longest> text{};
    unsigned length = longest;
    hb_ot_name_get_utf8(face, id, hb_language_from_string("en", -1), &length, text.data());
    return {text.data(), std::min<std::size_t>(length, longest - 1)};
}

bool isCidKeyed(const std::vector<std::byte>& file, std::int32_t number) {
    const std::optional<Face> face = Face::open(file, number);
    return face && FT_IS_CID_KEYED(face->get());
}

} // namespace

void OpenTypeFont::Closer::operator()(hb_face_t* face) const {
    hb_face_destroy(face);
}

void OpenTypeFont::Closer::operator()(hb_font_t* font) const {
    hb_font_destroy(font);
}

std::shared_ptr<const OpenTypeFont> OpenTypeFont::open(std::vector<std::byte> file,
                                                       std::int32_t face) {
    if (file.empty() || file.size() > budget::fontProgramBytes || face < 0 || face > 0xFFFF) {
        return nullptr;
    }
    const auto font = std::make_shared<OpenTypeFont>(Key());
    font->file_ = std::move(file);
    return font->read(face) ? font : nullptr;
}

std::shared_ptr<const OpenTypeFont> OpenTypeFont::openFile(const std::string& path,
                                                           std::int32_t face) {
    return open(bytesOfFile(path), face);
}

bool OpenTypeFont::read(std::int32_t number) {
    const auto index = static_cast<unsigned>(number);
    hb_blob_t* const blob = hb_blob_create(
        static_cast<const char*>(static_cast<const void*>(file_.data())),
        static_cast<unsigned>(file_.size()), HB_MEMORY_MODE_READONLY, nullptr, nullptr);
    const unsigned faces = hb_face_count(blob);
    face_.reset(hb_face_create(blob, index));
    hb_blob_destroy(blob); // the face holds it
    const unsigned glyphs = hb_face_get_glyph_count(face_.get());
    if (index >= faces || glyphs == 0 || glyphs > static_cast<unsigned>(budget::fontGlyphs) ||
        SfntTable(face_.get(), HB_TAG('f', 'v', 'a', 'r')).size() != 0) {
        return false;
    }
    if (SfntTable(face_.get(), HB_TAG('C', 'F', 'F', ' ')).size() != 0) {
        kind_ = isCidKeyed(file_, number) ? ProgramKind::cidCff : ProgramKind::cff;
    } else if (SfntTable(face_.get(), HB_TAG('g', 'l', 'y', 'f')).size() == 0) {
        return false;
    }
    em_ = std::max(1U, hb_face_get_upem(face_.get()));
    font_.reset(hb_font_create(face_.get()));
    readFacts();
    return true;
}

void OpenTypeFont::readFacts() {
    const SfntTable head(face_.get(), HB_TAG('h', 'e', 'a', 'd'));
    const SfntTable horizontal(face_.get(), HB_TAG('h', 'h', 'e', 'a'));
    const SfntTable system(face_.get(), HB_TAG('O', 'S', '/', '2'));
    const SfntTable post(face_.get(), HB_TAG('p', 'o', 's', 't'));
    facts_.postScriptName = nameOf(face_.get(), HB_OT_NAME_ID_POSTSCRIPT_NAME);
    facts_.fullName = nameOf(face_.get(), HB_OT_NAME_ID_FULL_NAME);
    facts_.left = head.signedNumber(36) / em_;
    facts_.bottom = head.signedNumber(38) / em_;
    facts_.right = head.signedNumber(40) / em_;
    facts_.top = head.signedNumber(42) / em_;
    facts_.ascent = horizontal.signedNumber(4) / em_;
    facts_.descent = horizontal.signedNumber(6) / em_;
    if (post.number(10) != 0) {
        facts_.lines.under = post.signedNumber(8) / em_;
        facts_.lines.underThickness = std::abs(post.signedNumber(10)) / em_;
    }
    if (system.number(26) != 0) {
        facts_.lines.through = system.signedNumber(28) / em_;
        facts_.lines.throughThickness = std::abs(system.signedNumber(26)) / em_;
    }
    facts_.lines.over = facts_.ascent;
    constexpr double whole = 65536;
    facts_.italicAngle = post.signedNumber(4) + post.number(6) / whole;
    facts_.isFixedPitch = post.number(12) != 0 || post.number(14) != 0;
    if (system.size() != 0) {
        facts_.weight = std::clamp<std::int32_t>(system.number(4), 1, 1000);
        const unsigned familyClass = system.number(30) >> 8U;
        facts_.isSerif = (familyClass >= 1 && familyClass <= 5) || familyClass == 7;
    }
    const bool hasCapHeight = system.number(0) >= 2 && system.number(88) != 0;
    facts_.capHeight = hasCapHeight ? system.signedNumber(88) / em_ : facts_.ascent;
    mayBeEmbedded_ = permitsSubsets(system.number(8));
}

bool OpenTypeFont::has(char32_t character) const {
    hb_codepoint_t glyph = 0;
    return hb_font_get_nominal_glyph(font_.get(), character, &glyph) != 0 && glyph != 0;
}

bool OpenTypeFont::shows(std::u32string_view text) const {
    if (std::ranges::all_of(text, [this](char32_t each) { return has(each); })) {
        return true;
    }
    const std::vector<ShapedGlyph> glyphs = shapeText(*this, {.text = text, .count = text.size()});
    return std::ranges::none_of(glyphs, [](const ShapedGlyph& each) { return each.glyph == 0; });
}

double OpenTypeFont::advance(GlyphNumber glyph) const {
    return hb_font_get_glyph_h_advance(font_.get(), glyph) / em_;
}

} // namespace corvane
