// Any bytes as an EPSF file that placed art is linked to: it is shown or not, and a page with it is
// saved or refused. Its preview, too, may be any bytes.
#include "fuzz/support/plugin_host.h"
#include "fuzz/targets.h"

#include "app/artwork/error.h"
#include "app/artwork/images/image_table.h"
#include "app/images/epsf_file.h"
#include "app/images/image_error.h"
#include "output/world/picture.h"

#include <string>
#include <vector>

namespace corvane::fuzz {

namespace {

/// Bytes of samples that one input may make.
constexpr std::int64_t mostBytes = 1 << 20;

/// All samples of a picture, or an error where the file ends before.
void show(Bytes input) {
    try {
        const auto picture = readEpsf(memoryOrigin({input.begin(), input.end()}));
        if (!picture) {
            return;
        }
        const std::int64_t size = rowBytes(picture->facts) * picture->facts.height;
        if (size > mostBytes) {
            return;
        }
        std::vector<std::byte> samples(static_cast<std::size_t>(size) + 1);
        require(picture->content->open()->read(samples) == static_cast<std::size_t>(size));
    } catch (const ImageError&) {
        return;
    } catch (const ArtworkError&) {
        return;
    }
}

/// A page of one empty stream, to follow so many bytes.
std::string pageBehind(std::size_t start) {
    const std::vector<std::string> bodies = {
        "<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] >>", "<< /Producer (x) >>"};
    std::string text = "\n%" + std::string(256, '-') + "\n";
    std::string entries;
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        const std::string offset = std::to_string(start + text.size());
        entries += std::string(10 - offset.size(), '0') + offset + " 00000 n \n";
        text += std::to_string(i + 1) + " 0 obj\n" + bodies[i] + "\nendobj\n";
    }
    const std::string xref = std::to_string(start + text.size());
    return text + "xref\n0 5\n0000000000 65535 f \n" + entries +
           "trailer\n<< /Size 5 /Root 1 0 R /Info 4 0 R >>\nstartxref\n" + xref + "\n%%EOF\n";
}

/// The page is in the same file, behind the picture.
void save(Bytes input) {
    std::string file;
    for (const std::byte byte : input) {
        file += static_cast<char>(byte);
    }
    file += pageBehind(file.size());
    PluginHost host(std::as_bytes(std::span(file)), Profile::original, 1);
    Document& document = host.document();
    document.page().setProfile(Profile::original);
    const Art layer = document.layerArt(document.firstLayer());
    const Art art = document.make(ArtKind::placed, Placement::inside, layer);
    document.setPlacedFile(art, document.placedFiles().add(host.file()));
    host.call(Selector::go, Action::write);
}

void drawPicture(Bytes input) {
    const auto picture = readPicture(input);
    if (!picture) {
        return;
    }
    const PixelFrame frame{.right = picture->frame.width(), .bottom = picture->frame.height()};
    const WorldOwner world = allocateWorld(frame.right, frame.bottom, 8, previewTables);
    pictureWorld(*picture, frame, world.get());
}

} // namespace

void fuzzEpsf(Bytes input) {
    show(input);
    save(input);
    ToolboxScope toolbox(memoryLimit);
    drawPicture(input);
}

} // namespace corvane::fuzz
