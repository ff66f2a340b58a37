#include "app/svg/writer.h"

#include "app/svg/paint/blending.h"
#include "app/svg/root.h"
#include "app/svg/text/font_rules.h"
#include "app/svg/tree/tree_writer.h"

namespace corvane {

std::error_code writeSvg(const Document& document, const Provenance& provenance, ByteSink& sink,
                         const SvgOptions& options) {
    TextOutput out(sink);
    writeRootStart(out, document.page(), provenance,
                   {.namesFiles = document.images().size() != 0, .blends = blends(document)});
    if (options.fonts == EmbeddedFonts::all) {
        writeFontRules(out, document.fonts());
    }
    PaintServers servers(document, cornerOf(document));
    SvgNumbers numbers;
    LetterAdvances advances(document.fonts());
    numbers.letters = {&advances, options.letters == LetterPlacing::exact};
    TreeWriter(out, servers, numbers, sourceBase(provenance)).writeLayers();
    out.text("\n</svg>\n");
    return out.flush();
}

} // namespace corvane
