// The document cache: an open PDF file as the reader sees it.
//
// It holds the chain over the file, the table of indirect objects built from the cross-reference,
// the newest trailer, the list of pages, and the dictionary and inherited attributes of the page in
// use.
#pragma once

#include "filters/filter.h"
#include "host/artwork.h"
#include "host/extension.h"
#include "objects/object.h"
#include "objects/reference.h"
#include "reader/document/mending.h"
#include "reader/syntax/key_index.h"
#include "reader/syntax/keyword_table.h"
#include "reader/syntax/object_stream.h"
#include "runtime/budget.h"
#include "runtime/work_meter.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

class TokenFilter;
class Encryption;
class DeferredEntries;
class PageWalk;
class PredefinedCMaps;
class ColourSpaceCache;
struct Interpreter;
struct SyntaxKeywords;

/// A page as the walk of the tree found it: the reference that led to it, or the dictionary itself
/// where the Kids array holds it directly (number 0).
struct PageEntry {
    std::int32_t number = 0;
    std::int32_t generation = 0;
    ObjectOwner direct;
};

/// What was spent on a file so far, held against the budgets (runtime/budget.h).
struct ReadingWork {
    std::int32_t depth = 0;            ///< objects being read for one another
    std::int64_t places = 0;           ///< readings at a place of the file
    std::int64_t readBytes = 0;        ///< of objects, those read again counted again
    std::int64_t unpackedBytes = 0;    ///< of object streams, those decoded again counted again
    std::int64_t streamedEntries = 0;  ///< of cross-reference streams
    std::int64_t comparedKeys = 0;     ///< of dictionaries looked into
    std::int64_t searchedBytes = 0;    ///< searched for ends of streams
    std::int64_t pageBytes = 0;        ///< that streams delivered since the page came into use
    std::int64_t imageStreamBytes = 0; ///< the same of images, which do not count above
    std::int64_t imageBytes = 0;       ///< of images that the host got, since then
    std::int32_t images = 0;           ///< that the host was told of, since then
    StepMeter imageColours{budget::imageColours};           ///< work on their colours, since then
    StepMeter functionSamples{budget::pageFunctionSamples}; ///< that were read, since then
    CodecClock codecs;                                      ///< of images, since then
};

struct DocumentCache {
    DocumentCache();
    ~DocumentCache();
    DocumentCache(const DocumentCache&) = delete;
    DocumentCache& operator=(const DocumentCache&) = delete;

    SharedTables<SyntaxKeywords> syntaxKeywords;

    std::int16_t volume = 0;
    std::string fileName;
    Art art = Art::null; ///< where imports go; given back to the host when a page is drawn

    Chain fileChain;              ///< stream and buffer; a reader goes to its own place first
    Filter* input = nullptr;      ///< read by operators: the token filter in use, or the buffer
    Filter* output = nullptr;     ///< what the primitives write to, while something is written
    std::int32_t wholeLength = 0; ///< bytes of the file
    std::int32_t fileLength = 0;  ///< the same, less an update that was cut short
    /// Bytes before the header; every offset in the file counts from it.
    std::int32_t headerOffset = 0;
    std::string version; ///< of the header: "1.4"

    ReferenceTableOwner references;
    std::unique_ptr<DeferredEntries> deferred; ///< of `references`; null: none yet
    ObjectStreams objectStreams;
    KeyIndexes keyIndexes; ///< of large dictionaries that were looked into
    ReadingWork work;
    std::vector<bool> freed;                  ///< by number: objects that a newer section freed
    std::vector<std::int32_t> freedHere;      ///< numbers that the section being read frees
    std::vector<std::int32_t> sectionOffsets; ///< of the cross-reference, the newest first
    bool continuesStream = false;             ///< the newest section is a stream
    bool repaired = false; ///< objects were found by searching, not by the cross-reference
    Mending mends;
    /// The file was opened: from now on what cannot be read is looked for and may be null. Before,
    /// it tells that the cross-reference is wrong.
    bool isOpened = false;
    ReferenceTableOwner searched; ///< objects by a search for lost ones; null: none was made yet

    ObjectOwner trailer;
    std::unique_ptr<Encryption> encryption;           ///< null where the file is not encrypted
    std::unique_ptr<PredefinedCMaps> predefinedCMaps; ///< that fonts named, once one did
    std::vector<PageEntry> pages;                     ///< in order, as far as the tree was walked
    std::unique_ptr<PageWalk> pageWalk; ///< goes on behind them; null: not begun, or at its end
    bool pagesWalked = false;           ///< to the end

    std::int32_t pageNumber = 0; ///< from 1; 0: no page is in use
    ObjectOwner page;
    ObjectOwner cropBox;
    ObjectOwner mediaBox;
    ObjectOwner rotate;
    ObjectOwner resources; ///< of the content being read, for the resource operators

    std::shared_ptr<ColourSpaceCache> colourSpaces; ///< null: none was read (colourSpacesOf)
    std::unique_ptr<Interpreter> interpreter;       ///< what `readCache` draws a page with
};

inline constexpr std::int32_t everyPage = INT32_MAX;

/// Opens the file and reads its cross-reference; extended: also the page tree, as far as page
/// `lastPage`. Raises `io` where it cannot be read or is shorter than 256 bytes, `structure` where
/// it is damaged, `crossReference` where it is encrypted and cannot be deciphered.
std::unique_ptr<DocumentCache> openCache(std::int16_t volume, std::string_view fileName,
                                         std::int32_t lastPage = everyPage);

/// Closes everything. What cannot be closed raises, after the rest was closed. A cache that is
/// destroyed without this is abandoned, and nothing raises.
void closeCache(std::unique_ptr<DocumentCache> cache);

/// What reading a section tells of it, besides the objects and the trailer.
struct SectionFacts {
    std::int32_t previous = 0; ///< offset of the one before it; 0: none
    std::int32_t end = 0;      ///< behind the word "startxref", counted from the file's first byte
    bool isStream = false;
};

/// Reads the cross-reference section and trailer at `offset`: a table, with the stream that it
/// names for readers of those (XRefStm), or a stream.
SectionFacts xrefCache(DocumentCache& cache, std::int32_t offset);

/// Reads the indirect object `number` `generation` at `place`. Raises `structure` where another
/// stands there.
ObjectOwner objectCache(DocumentCache& cache, std::int32_t number, std::int32_t generation,
                        ObjectPlace place);

/// The number of pages, by a walk of the whole tree.
std::int32_t countCache(DocumentCache& cache);
/// The number of pages to tell a person, without a walk: extended, what the root of the tree says,
/// where that can be true.
std::int32_t statedCount(DocumentCache& cache);

/// At how many places of the page list the page in use is; extended: of the places that the budget
/// allows to look at.
std::int32_t placesCache(DocumentCache& cache);

/// Makes page `number`, from 1, the page in use. Raises `underflow` where there is none,
/// `structure` where it has no media box.
void pageCache(DocumentCache& cache, std::int32_t number);

/// The resources that the page in use has from the nodes above it; no dictionary where there are
/// none.
ObjectOwner inheritedResources(DocumentCache& cache);

/// A box by two opposite corners; what is no four numbers raises `range`.
Box boxOf(DocumentCache& cache, const Object& array);
bool hasArea(const Box& box);
/// Boxes of the page in use, normalised; the crop box cut to the media box.
Box mediaCache(DocumentCache& cache);
Box cropCache(DocumentCache& cache);
/// 0, 90, 180 or 270, clockwise. No multiple of 90: `type`; no integer: `range`.
std::int32_t rotateCache(DocumentCache& cache);
/// Points of one unit of the page, 1.0 where it says nothing.
double userUnitCache(DocumentCache& cache);
PageFacts factsCache(DocumentCache& cache);
/// The facts of any page, quickly; no page is in use afterwards. `see`, where given, is called
/// while it is in use.
PageFacts pageFactsCache(DocumentCache& cache, std::int32_t number,
                         const std::function<void()>& see = {});

/// Draws the page in use into the host's document.
void readCache(DocumentCache& cache);

} // namespace corvane
