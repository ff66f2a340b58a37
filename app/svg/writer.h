// Writes a document's artwork as SVG 1.1. docs/svg.md says what is written where, and why.
#pragma once

#include "app/artwork/document.h"
#include "app/artwork/provenance.h"
#include "app/svg/sink.h"

#include <system_error>

namespace corvane {

/// Whether the SVG carries the files of page fonts. Without them letters are drawn in fonts of the
/// machine.
enum class EmbeddedFonts { none, all };

/// Where the letters of a text are put: by what differs from how their fonts set them, so that
/// typing pushes the rest of a line along, or each at a place of its own.
enum class LetterPlacing { flow, exact };

struct SvgOptions {
    EmbeddedFonts fonts = EmbeddedFonts::all;
    LetterPlacing letters = LetterPlacing::flow;
};

/// Writes the whole document, from the back to the front, in blocks of `TextOutput::blockSize`. The
/// same document gives the same bytes. Elements stand less than 200 deep however deep the groups
/// are, and no work recurses. Memory beside the block: some 100 bytes a group of one layer. The
/// answer is the sink's first failure, after which no more is written; what the sink then holds is
/// not a whole file.
[[nodiscard]] std::error_code writeSvg(const Document&, const Provenance&, ByteSink&,
                                       const SvgOptions& = {});

} // namespace corvane
