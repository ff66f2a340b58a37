// The plug-in's own resources, compiled in.
#pragma once

#include "host/resources.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

/// "TEXT": the template of a PDF file, one page, lines ended by carriage returns.
inline constexpr std::int16_t templateText = 16000;

/// "TEXT": PostScript of EPSF files. The first goes on behind the numbers of "%ImageData" and
/// defines `beginimage` for four channels of 8 bits; the second defines it anew for masks.
inline constexpr std::int16_t epsfImageText = 16001;
inline constexpr std::int16_t epsfMaskText = 16002;

/// "BYTE": rows of 256 codes of Mac OS Roman, one for each code of an encoding: the standard one,
/// MacRoman, MacExpert, WinAnsi. "NAME": the 256 glyphs of Mac OS Roman, 16 bytes each, filled up
/// with zeros.
inline constexpr std::int16_t encodingTables = 16000;

// String lists ("STR#"), their entries from 1.
inline constexpr std::int16_t exceptionTexts = 16001;    ///< by code of the exception
inline constexpr std::int16_t readWarningTexts = 16002;  ///< by code of the warning
inline constexpr std::int16_t writeWarningTexts = 16003; ///< by code of the warning less 1000
inline constexpr std::int16_t reasonTexts = 16004;       ///< by reason; % stands for a name
inline constexpr std::int16_t nameTexts = 16005;         ///< 1: template of names of image files
inline constexpr std::int16_t aboutTexts = 16006;        ///< 1: what the about box says

inline constexpr std::int16_t mendTexts = 16007; ///< two for each kind: of one, and of % objects

/// All of them, for the toolbox.
std::span<const StaticResource> pluginResources();

/// Sentences by code, from code 1 on; empty where a code is not used. Each says what happened and
/// what to do, and fits a length-prefixed string.
std::span<const std::string_view> exceptionSentences();
std::span<const std::string_view> reasonSentences();
std::span<const std::string_view> readWarningSentences();
std::span<const std::string_view> writeWarningSentences();

/// What was mended, two phrases for each kind (host/mend.h); parts of a sentence.
std::span<const std::string_view> mendPhrases();

/// The bytes of "BYTE" and "NAME".
std::span<const std::byte> encodingRows();
std::span<const std::byte> glyphNames();

/// A minimal PDF file of one empty page.
std::string_view templateFile();

/// The PostScript of EPSF files.
std::string_view epsfImageProcedures();
std::string_view epsfMaskProcedures();

} // namespace corvane
