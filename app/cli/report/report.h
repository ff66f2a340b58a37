// All that a command found out, for people and for machines.
#pragma once

#include "app/artwork/provenance.h"
#include "app/cli/fault.h"
#include "app/cli/options/arguments.h"
#include "host/extension.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace corvane {

/// `DocumentFacts` that outlive the call which told them.
struct FileFacts {
    DocumentFacts facts; ///< its `version` is empty
    std::string version;
};

/// `UpdateFacts` that outlive the call which told them.
struct Update {
    UpdateFacts facts; ///< its `pages` and `date` are empty
    std::vector<std::int32_t> pages;
    std::string date;
};

/// `DamageFacts` that outlive the call which told them.
struct Damage {
    DamageFacts facts; ///< its `obstacle` is empty
    std::string obstacle;
};

/// `AddedFont` that outlives the call which told it.
struct FontNote {
    std::string name;
    std::string letters;
    std::string wanted;
};

/// What became of the images of a page.
struct ImageCounts {
    std::string folder;       ///< empty: none
    std::int32_t written = 0; ///< files
    std::int32_t found = 0;   ///< files that were there
};

/// `DrawnImageFacts` that outlive the call which told them.
struct DrawnImage {
    DrawnImageFacts facts; ///< its `colourSpace` and `filters` are empty
    std::string colourSpace;
    std::string filters;
};

/// `PageThumbnail` that outlives the call which told it.
struct PagePicture {
    std::int32_t width = 0; ///< pixels
    std::int32_t height = 0;
    std::vector<std::byte> pixels; ///< 0, red, green and blue of each, top row first
};

struct Report {
    std::optional<FileFacts> file;
    std::optional<SignatureFacts> signatures; ///< where there are any
    std::optional<Damage> damage;             ///< `check`
    std::vector<PageFacts> pages;
    std::map<std::int32_t, std::string> pageLabels; ///< of pages that have one, by their numbers
    std::set<std::int32_t> pagesWithThumbnail;      ///< those that say so
    std::optional<PagePicture> thumbnail;           ///< `info --thumbnail`
    std::vector<DrawnImage> drawnImages;            ///< `info` of a page
    Provenance source;  ///< the page that was opened, or that the artwork to save came from
    ImageCounts images; ///< `open`
    std::string output; ///< path of what was made: artwork, a PDF, a picture; empty: nothing
    std::map<std::string, std::int32_t> ignored; ///< kinds of SVG that artwork cannot hold
    std::optional<SavedFacts> saved;
    std::vector<std::string> layersLeftOut; ///< titles
    std::vector<std::string> layersNotKept; ///< titles; their objects are kept
    std::vector<FontNote> fontsAdded;
    std::vector<MissingArt> missing; ///< what a save would delete, so that it was refused
    /// Of annotations that the artwork has otherwise than the file; they stay.
    std::vector<std::string> annotationsKept;
    std::vector<SavedFacts> saves; ///< `edit`: in their order
    std::string kept;              ///< `edit`: the folder of the artwork, where it stays
    std::vector<Update> updates;   ///< `log`: all of them; `revert`: the one that was taken off
    /// `inkscape`: names of files in the folder of extensions.
    std::vector<std::string> installed;
    std::vector<std::string> removed;
    std::vector<std::string> changed; ///< since they were installed, so they stay
    std::string address;              ///< `serve`: of the page
    std::vector<Fault> warnings;
    std::optional<Fault> error;
};

/// One object, with a line end.
std::string reportJson(const Arguments& arguments, const Report& report);

/// What `info` prints: the facts of the file, its pages, equal neighbours in one line, and the
/// images of the page that was asked for.
std::string infoText(const std::string& file, const Report& report);

/// What `log` prints: a line for each update, below a line that names the columns.
std::string logText(const std::string& file, const Report& report);

/// "page 2 of report.pdf: 1 object changed, 57 kept; 1,234 bytes appended"; of a page that was
/// drawn anew "page 2 of report.pdf: 1,234 bytes appended (3 objects)".
std::string savedText(const std::string& file, const SavedFacts& saved, bool dryRun);

/// "page 2: 1 object changed, 3 added; 812 bytes; take it off with "corvane revert report.pdf"".
std::string editedText(const std::string& file, const SavedFacts& saved);

/// "1,234 bytes appended".
std::string appendedText(const SavedFacts& saved, bool dryRun);

/// "report.pdf: mended: a damaged cross-reference; 1,234 bytes appended". Where a page was saved
/// too, that says what was appended.
std::string mendedText(const std::string& file, const SavedFacts& saved, bool dryRun);

/// "57 of 60 paths, 3 of 3 compound paths".
std::string missingText(const std::vector<MissingArt>& missing);

/// "report.pdf: update 3 (1,234 bytes, page 2) was taken off; ...".
std::string revertedText(const std::string& file, const Update& update);

/// What `check` prints of a file that can be opened.
std::string checkText(const std::string& file, const Report& report);

} // namespace corvane
