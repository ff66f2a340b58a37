// A page whose graphics states have opacity, blend modes and soft masks, opened, edited and saved.
#pragma once

#include "tests/writer/patch/patch_fixture.h"

#include <sstream>
#include <string>

namespace corvane {

class LookPatchTest : public PatchTest {
protected:
    void openLooks(const std::string& content, const std::string& entries = "") {
        const std::string form = "/Type /XObject /Subtype /Form /BBox [0 0 100 100] ";
        openFile(
            PdfBuilder::onePage(
                content,
                "/Resources << /ExtGState << /H << /ca .5 /CA .25 >> /E << /ca .3 /CA .3 >> "
                "/M << /BM /Multiply >> /F << /BM [/Odd /Screen] >> /O << /BM /Odd >> "
                "/S << /SMask << /S /Luminosity /G 30 0 R /BC [.5] /TR 31 0 R >> >> "
                "/A << /SMask << /S /Alpha /G 30 0 R >> >> "
                "/C << /SMask << /S /Alpha /G 43 0 R >> >> /N << /SMask /None >> "
                "/J << /RI /Perceptual >> /V << /OP true /op true /OPM 1 >> /U << /OP true /op "
                "false >> "
                "/R << /SMask << /S /Alpha /G 32 0 R >> >> >> "
                "/Shading << /W 42 0 R >> /Pattern << /T 37 0 R >> /Font << /F 38 0 R >> "
                "/XObject << /G 33 0 R /P 34 0 R /D 35 0 R /L 36 0 R /S 40 0 R /I 41 0 R /N 44 0 R "
                ">> >> " +
                    entries)
                .stream(30, "0 0 50 100 re f",
                        form + "/Group << /S /Transparency /CS /DeviceGray >>")
                .object(31, "<< /FunctionType 2 /Domain [0 1] /N 1 /C0 [1] /C1 [0] >>")
                .stream(32, "/R gs 0 0 7 7 re f",
                        form + "/Resources << /ExtGState << /R << /SMask << /S /Alpha /G 32 0 R >> "
                               ">> >> >> /Group << /S /Transparency >>")
                .stream(43, "q 0 0 20 20 re W n 0 0 50 50 re f Q",
                        form + "/Group << /S /Transparency >>")
                .stream(33, "0 0 9 9 re f /M gs 4 4 9 9 re f",
                        form + "/Group << /S /Transparency /I true /K true >>")
                .stream(34, "0 0 9 9 re f", form)
                .stream(35, "0 0 9 9 re f 4 4 9 9 re f", form + "/Resources << >>")
                .stream(36, "/Pattern cs /T scn 0 0 9 9 re f 4 4 9 9 re f",
                        form + "/Matrix [0 2 -2 0 60 0]")
                .stream(37, "0 0 2 2 re f",
                        "/PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 4 4] /XStep 4 "
                        "/YStep 4 /Matrix [1 0 0 1 1 3] /Resources << >>")
                .object(38, "<< /Type /Font /Subtype /Type3 /FontMatrix [.1 0 0 .1 0 0] "
                            "/CharProcs << /a 39 0 R >> /Encoding << /Differences [97 /a] >> "
                            "/FirstChar 97 /Widths [10] >>")
                .stream(39, "10 0 d0 0 0 8 8 re f")
                .stream(40, "0 0 9 9 re f /E gs 2 2 9 9 re f 4 4 9 9 re f", form)
                .stream(41, "a",
                        "/Type /XObject /Subtype /Image /Width 1 /Height 1 /BitsPerComponent 8 "
                        "/ColorSpace /DeviceGray")
                .stream(44, "a",
                        "/Type /XObject /Subtype /Image /Width 1 /Height 1 /BitsPerComponent 8 "
                        "/ColorSpace /DeviceGray /Intent /AbsoluteColorimetric")
                .object(42, "<< /ShadingType 3 /ColorSpace /DeviceGray /Coords [0 0 1 50 0 1] "
                            "/Function << /FunctionType 2 /Domain [0 1] /N 1 >> >>")
                .bytes());
    }

    std::string lookText(Art art) const {
        const Appearance look = document_->appearance(art);
        std::ostringstream text;
        const auto add = [&](const char* name, double value, double none) {
            if (value != none) {
                text << ' ' << name << value;
            }
        };
        add("o", look.opacity, 1);
        add("f", look.fillOpacity, 1);
        add("s", look.strokeOpacity, 1);
        add("b", static_cast<int>(look.blend), 0);
        text << (look.overprint.fills ? " over" : "") << (look.overprint.strokes ? " overline" : "")
             << (look.overprint.skipsZeros ? " skip" : "");
        add("i", static_cast<int>(look.intent), 0);
        text << (look.isIsolated ? " isolated" : "") << (look.isKnockout ? " knockout" : "");
        if (look.mask != SoftMask::null) {
            const MaskFacts& mask = document_->mask(look.mask);
            text << (mask.isLuminosity ? " light" : " alpha");
            add("b", mask.backdrop, 0);
            if (!mask.transfer.empty()) {
                text << " t" << mask.transfer.front() << '-' << mask.transfer.back();
            }
        }
        return text.str();
    }
    /// Where the tiles of a path lie.
    std::string tilesText(Art art) const {
        const ArtKind kind = document_->kind(art);
        if (kind != ArtKind::path || document_->style(art).fill.kind != ColourKind::pattern) {
            return "";
        }
        const RealMatrix& m = document_->pattern(document_->style(art).fill.source).matrix;
        std::ostringstream text;
        text << " t" << m.a << ' ' << m.b << ' ' << m.tx << ' ' << m.ty;
        return text.str();
    }
    /// Of all art but clips, each group before what it holds, from the back.
    std::string looks() const {
        std::string text;
        const Art top = document_->layerArt(document_->firstLayer());
        const auto list = [&](auto& self, Art group) -> void {
            const Art clip = document_->clipped(group) ? document_->firstChild(group) : Art::null;
            for (Art art = document_->lastChild(group); art != Art::null;
                 art = document_->previousSibling(art)) {
                if (art == clip) {
                    continue;
                }
                const bool isGroup = document_->kind(art) == ArtKind::group;
                text += isGroup ? "[" : "(";
                text += lookText(art) + tilesText(art);
                if (isGroup) {
                    self(self, art);
                }
                text += isGroup ? "]" : ")";
            }
        };
        list(list, top);
        return text;
    }

    void expectKept(const std::string& wanted) {
        ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
        ASSERT_TRUE(saved_.back().isPatched);
        ASSERT_EQ(open(), 0U);
        EXPECT_EQ(looks(), wanted) << newContent();
    }
};

} // namespace corvane
