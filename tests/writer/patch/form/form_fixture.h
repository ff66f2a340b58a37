// Pages that draw forms, and edits of what the forms hold.
#pragma once

#include "tests/reader/seen_text.h"
#include "tests/writer/patch/patch_fixture.h"

#include <cmath>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

inline std::size_t countOf(std::string_view text, std::string_view part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string_view::npos;
         at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

/// Edits of a page that draws forms.
class FormArtist : public Artist {
public:
    explicit FormArtist(Document& edited) : Artist(edited) {
        for (Layer layer = document.lastLayer(); layer != Layer::null;
             layer = document.previousLayer(layer)) {
            list(document.layerArt(layer));
        }
    }

    void moveAll(Art art, double dx, double dy) {
        if (document.kind(art) == ArtKind::group) {
            for (const Art child : childrenOf(art)) {
                moveAll(child, dx, dy);
            }
        } else if (document.kind(art) == ArtKind::text) {
            document.transformText(art, {.tx = dx, .ty = dy});
        } else if (document.kind(art) == ArtKind::placed) {
            PlacedImage placed = document.placedImage(art);
            placed.matrix.tx += fixedFromReal(dx);
            placed.matrix.ty += fixedFromReal(dy);
            document.setPlacedImage(art, placed);
        } else {
            move(art, dx, dy);
        }
    }
    Art duplicate(Art group) { return document.duplicate(group, Placement::inFront, group); }
    /// What the form holds stays in its place.
    void ungroup(Art group) {
        if (document.clipped(group)) {
            release(group);
        }
        for (const Art art : childrenOf(group)) {
            document.reorder(art, Placement::behind, group);
        }
        document.dispose(group);
    }
    void retype(Art old, std::string_view letters) {
        TextRun run = document.textRun(old, 0);
        run.text = letters;
        run.pieces = {};
        const Art made = document.make(ArtKind::text, Placement::inFront, old);
        document.setTextLine(made, document.textLine(old));
        document.addTextRun(made, run);
        document.dispose(old);
    }
    /// From the front.
    std::vector<Art> childrenOf(Art group) const {
        std::vector<Art> children;
        for (Art art = document.firstChild(group); art != Art::null;
             art = document.nextSibling(art)) {
            children.push_back(art);
        }
        return children;
    }

    std::vector<Art> forms; ///< from the back, the outer ones in front of those within them
    std::vector<Art> texts;
    std::vector<Art> images;

private:
    void list(Art container) {
        if (document.form(container)) {
            forms.push_back(container);
        }
        for (Art art = document.lastChild(container); art != Art::null;
             art = document.previousSibling(art)) {
            const ArtKind kind = document.kind(art);
            if (kind == ArtKind::group) {
                list(art);
            } else if (kind == ArtKind::text || kind == ArtKind::placed) {
                (kind == ArtKind::text ? texts : images).push_back(art);
            }
        }
    }
};

class FormPatchTest : public PatchTest {
protected:
    static constexpr std::string_view formEntries = "/Type /XObject /Subtype /Form ";
    static constexpr std::string_view named =
        "/Resources << /XObject << /A 30 0 R /B 31 0 R /C 32 0 R /I 33 0 R >> /Font << /F 20 0 R "
        ">> /ExtGState << /Half << /ca .5 >> /Opaque << /ca 1 >> >> >> ";

    static PdfBuilder file(std::string_view content, std::string_view a, std::string_view b,
                           std::string_view entriesOfA = "/BBox [0 0 500 500] ") {
        const std::string ofA =
            std::string(formEntries) +
            "/Resources << /XObject << /B 31 0 R /J 33 0 R >> /Font << /G 34 0 R >> "
            "/ExtGState << /Opaque << /ca 1 >> >> >> " +
            std::string(entriesOfA);
        // /C has the name of /A's form, but its resources are those of the page.
        return PdfBuilder::onePage(content, named)
            .object(2, "<< /Type /Pages /Kids [3 0 R 5 0 R] /Count 2 >>")
            .object(5, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Contents 4 0 R " +
                           std::string(named) + " >>")
            .object(20, "<< /Type /Font /Subtype /Type1 /BaseFont /Times-Roman >>")
            .stream(30, a, ofA)
            .stream(31, b,
                    std::string(formEntries) +
                        "/BBox [0 0 500 500] /Matrix [.5 0 0 .5 0 0] /Resources << >>")
            .stream(32, a, std::string(formEntries) + "/BBox [0 0 500 500]")
            .stream(33, "abcd",
                    "/Type /XObject /Subtype /Image /Width 2 /Height 2 /BitsPerComponent 8 "
                    "/ColorSpace /DeviceGray")
            .object(34, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>");
    }

    FormArtist formArtist() { return FormArtist(*document_); }

    /// Images and text, as `seen` tells paths.
    std::string look() {
        std::string text = test::runsText(*document_);
        for (const Art art : formArtist().images) {
            const PlacedImage placed = document_->placedImage(art);
            const std::string key(document_->images().facts(placed.image).key);
            text += "\n" + key;
            for (const Fixed number : {placed.matrix.a, placed.matrix.b, placed.matrix.c,
                                       placed.matrix.d, placed.matrix.tx, placed.matrix.ty}) {
                text += " " + test::realText(std::round(realFromFixed(number) * 64) / 64);
            }
        }
        return text;
    }

    std::string update() const { return bytes().substr(file_.size()); }
    std::size_t newForms() const { return countOf(update(), "/Subtype /Form"); }

    /// Saves; the second page, which draws the same, is as before.
    void expectSavedAlone(test::SeenTolerance tolerance = {}) {
        const std::string expected = look();
        expectSaved(tolerance);
        EXPECT_EQ(look(), expected);
    }

    void expectOtherPageAsBefore(const std::vector<test::SeenPath>& before) {
        page_ = 2;
        ASSERT_EQ(open(), 0U);
        EXPECT_EQ(differenceOf(before, seen(), {}), "");
        page_ = 1;
    }
};

inline const std::string squares = "1 0 0 rg 10 10 30 30 re f\n0 0 1 rg 50 50 30 30 re f\n";
inline const std::string placedA = "q 1 0 0 1 5 5 cm /A Do Q\n0 0 10 10 re f";

} // namespace corvane
