// Images on a page that is opened, edited and saved as patches.
#pragma once

#include "host/matrix.h"
#include "tests/reader/seen_text.h"
#include "tests/writer/patch/patch_fixture.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// The pixels of a picture that the page does not have.
class Pixels final : public ImageContent {
public:
    explicit Pixels(std::string bytes) : bytes_(std::move(bytes)) {}

    std::unique_ptr<ImageSource> open() const override { return std::make_unique<Source>(bytes_); }

private:
    class Source final : public ImageSource {
    public:
        explicit Source(std::string_view bytes) : bytes_(bytes) {}
        std::size_t read(std::span<std::byte> into) override {
            const std::string_view piece = bytes_.substr(0, into.size());
            std::ranges::copy(std::as_bytes(std::span(piece)), into.begin());
            bytes_.remove_prefix(piece.size());
            return piece.size();
        }

    private:
        std::string_view bytes_;
    };

    std::string bytes_;
};

/// Edits the images of a page.
class Hanger {
public:
    explicit Hanger(Document& edited) : document(edited) {
        for (Layer layer = document.lastLayer(); layer != Layer::null;
             layer = document.previousLayer(layer)) {
            list(document.layerArt(layer));
        }
    }

    void place(std::size_t index, const Matrix& matrix) {
        PlacedImage placed = document.placedImage(images.at(index));
        placed.matrix = matrix;
        document.setPlacedImage(images[index], placed);
    }
    void move(std::size_t index, double dx, double dy) {
        Matrix matrix = document.placedImage(images.at(index)).matrix;
        matrix.tx += fixedFromReal(dx);
        matrix.ty += fixedFromReal(dy);
        place(index, matrix);
    }
    Image picture(const ImageFacts& facts, std::string bytes) {
        return document.images().add(facts, ImageFile{},
                                     std::make_shared<Pixels>(std::move(bytes)));
    }
    void show(std::size_t index, Image image) {
        PlacedImage placed = document.placedImage(images.at(index));
        placed.image = image;
        document.setPlacedImage(images[index], placed);
    }
    Art add(Image image, const Matrix& matrix) {
        const Art placed = document.make(ArtKind::placed, Placement::inside,
                                         document.layerArt(document.firstLayer()));
        document.setPlacedImage(placed, {.image = image, .matrix = matrix});
        return placed;
    }

    Document& document;
    std::vector<Art> images; ///< from the back

private:
    void list(Art container) {
        for (Art art = document.lastChild(container); art != Art::null;
             art = document.previousSibling(art)) {
            if (document.kind(art) == ArtKind::placed) {
                images.push_back(art);
            } else if (document.kind(art) == ArtKind::group) {
                list(art);
            }
        }
    }
};

class ImagePatchTest : public PatchTest {
protected:
    void openImages(std::string_view content) {
        openFile(PdfBuilder::onePage(
                     content,
                     "/Resources << /XObject << /A 20 0 R /B 21 0 R /C 22 0 R >> /ExtGState "
                     "<< /Half << /ca .5 >> >> >>")
                     .stream(20, "abcd", gray)
                     .stream(21, "efgh", gray)
                     .stream(22, "ijkl", std::string(gray) + "/Intent /Perceptual")
                     .bytes());
    }
    Hanger hanger() { return Hanger(*document_); }

    /// Which images there are, from the back, and where they lie; new ones have the name "new".
    std::string look() {
        std::string text;
        for (const Art art : hanger().images) {
            const PlacedImage placed = document_->placedImage(art);
            const std::string key(document_->images().facts(placed.image).key);
            text += (key.empty() ? "new" : key.substr(0, key.find('-')));
            for (const Fixed number : {placed.matrix.a, placed.matrix.b, placed.matrix.c,
                                       placed.matrix.d, placed.matrix.tx, placed.matrix.ty}) {
                text += " " + test::realText(std::round(realFromFixed(number) * 64) / 64);
            }
            text += "\n";
        }
        return text;
    }

    static inline const std::string two =
        "q 9 0 0 9 10 20 cm /A Do Q 0 0 5 5 re f q 8 0 0 8 50 60 cm /B Do Q";
    /// Of so few pixels that they would not run into one another where the file did not say it.
    static constexpr std::string_view gray =
        "/Type /XObject /Subtype /Image /Width 2 /Height 2 /BitsPerComponent 8 /ColorSpace "
        "/DeviceGray /Interpolate true";
};

} // namespace corvane
