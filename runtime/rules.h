// Where the two profiles differ: one record of named values, and its two constants.
//
// Tables differ too (filters by name, keywords); everything else that depends on the profile is
// here.
#pragma once

#include "host/extension.h"

#include <cstdint>

namespace corvane {

struct Rules {
    Profile profile;

    /// Objects on the operand stack. Today's pages and Kids arrays need far more than 1,024.
    std::int32_t stackLimit;

    /// Bytes of a string, elements of a composite. Extended keeps the true 32-bit length of the
    /// block.
    std::int32_t objectLengthLimit;

    /// Operands and the CTM are carried in double, and a point is rounded once, when a segment is
    /// made.
    bool exactNumbers;

    /// A missing or freed indirect object is null, as the PDF Reference has it.
    bool missingObjectIsNull;

    /// "%PDF-2." is a header, and bytes before the header shift every offset of the file.
    bool modernHeader;

    /// The header may stand anywhere, or be missing, where objects and a trailer are there.
    bool searchesHeader;

    /// The newest section is found by "startxref" in the last 1,024 bytes, not by the last number.
    bool findsStartxref;

    /// A subsection may hold fewer entries than its header says.
    bool toleratesSubsections;

    /// Cross-reference streams and object streams are read, and an update goes on in the form of
    /// the section before it.
    bool readsObjectStreams;

    /// An object without "endobj" ends where the next thing begins; one without a value is null.
    bool toleratesMissingEnd;

    /// A stream whose Length is missing or wrong ends at "endstream".
    bool findsEndstream;

    /// Within an object, brackets that do not match are closed or passed over, a word that means
    /// nothing is null, and a key that is no name goes. An object that cannot be read is looked for
    /// by searching the file, and is null where that does not find it.
    bool mendsObjects;

    /// Encrypted files are read, and saved into.
    bool readsEncrypted;

    /// Where the cross-reference is damaged, the objects are found by searching the file; damaged
    /// files are mended by what a save appends, if the host wants that.
    bool repairsReferences;

    /// A Kids entry that is no page and no node is passed over.
    bool skipsDamagedKids;

    /// A page without a media box, or with an empty one, is US Letter.
    bool assumesMediaBox;

    /// Of equal keys in a dictionary the last counts, as in most readers; original takes the first.
    bool lastKeyCounts;

    /// Names hold bytes written as #xx.
    bool escapedNames;

    /// Hexadecimal strings (blocks) are taken wherever a string is.
    bool blocksAreText;

    /// A written number is the shortest decimal that reads back as the same number; four digits,
    /// cut off, move artwork a little with every save.
    bool shortestNumbers;

    /// The cross-reference list ascends by number whatever the generations, as readers expect.
    bool xrefByNumber;

    /// `q` makes a group only when something is drawn in it.
    bool lazyGroups;

    /// The even-odd rule is carried by the path style; no warning is raised for it.
    bool evenOddCarried;

    /// A path that clips is not painted as well: its copy is.
    bool clipsUnpainted;

    /// `n` closes no subpath, so that clips and unpainted paths that were saved come back as they
    /// were.
    bool unpaintedStaysOpen;

    /// Text becomes lines of runs, with the fonts of the page; otherwise the runs of the classic
    /// host, in its fonts.
    bool readsText;
    /// Images become placed art whose pixels the host has.
    bool readsImages;
    /// Forms become groups of what they paint.
    bool readsForms;
    /// Opacity, blend modes and soft masks become how art is laid over other art.
    bool readsTransparency;

    /// A segment after `h` or `re` starts a new subpath at that point, and a subpath of one point
    /// that is left goes.
    bool continuesClosedPaths;

    /// A plain group is written between q and Q, so that reading makes the group again.
    bool writesGroups;

    /// A closed subpath ends with h. Without it the corner at the start is drawn as two line ends,
    /// and reading cannot tell closed subpaths of a compound path from open ones.
    bool closesSubpaths;

    /// The first child of a clipped group clips it, unpainted, and no other path clips: a mark in a
    /// style would hide the rest of the page.
    bool clipsByGroup;

    /// A colour that was given as RGB is written as such.
    bool writesRgb;

    /// Nothing is written for a group, path or note that is empty, nor a second time for a path
    /// whose fill the host drew and that has no stroke.
    bool emptyLeftOut;

    /// Layers that are hidden or do not print are not drawn on the page, with a warning.
    bool hiddenLayersLeftOut;

    /// The page is moved so that the turned media box's lower left is 0,0; what is saved is moved
    /// back.
    bool pageAtOrigin;

    /// Value of the digits that are missing in a last base-85 group. Encoders of today expect the
    /// highest; 0 may make the last byte one lower.
    std::uint32_t missingDigit85;

    /// A file that is written has a resource fork from the start. People of today wonder at
    /// "._name" files, so extended makes one only when something is put in it.
    bool resourceForks;

    /// Progressive DCT frames are decoded; many of today's pictures are.
    bool progressivePictures;

    /// A DCT image that is cut short or damaged delivers the rows before the damage, with a
    /// warning.
    bool wholeRowsKept;

    /// Bytes between the segments of a DCT image are passed over up to the next marker.
    bool markersSearched;

    /// An APP14 segment with any identifier states the colour transform. Three components are YCbCr
    /// unless it states "none".
    bool anyPictureIdentifier;

    /// A page that is saved keeps what its dictionary held beside its content; original carries
    /// Annots alone.
    bool keepsPageEntries;

    /// A saved page keeps Rotate and UserUnit, and its boxes too where nobody changed its size and
    /// bounds: new content is led back by the inverse of the page matrix and new boxes are given
    /// in the page's own space, so that annotations stay in place. Original writes an upright page
    /// at 0,0.
    bool keepsGeometry;

    /// Sides of a page that is given a new size. The PDF Reference, appendix C, allows 3 to 14,400
    /// points; the classic limits are those of an artboard.
    Fixed smallestPage;
    Fixed largestPage;

    /// A saved page tells what it was opened from, so that opening it again gives the same
    /// identity, and a page that somebody else changed is not overwritten.
    bool recordsOrigin;

    /// Trailers carry ID and may lack Info; Size never shrinks.
    bool carriesTrailer;

    /// An update begins with a comment that names the former length: one that was cut short is
    /// passed over when reading, and one of ours can be taken off again.
    bool marksUpdates;

    /// A file that was repaired, that is certified, or that changed while it was open, is not saved
    /// into; one that is signed, with a warning.
    bool guardsFile;
};

inline constexpr Rules originalRules{
    .profile = Profile::original,
    .stackLimit = 1024,
    .objectLengthLimit = 32767,
    .exactNumbers = false,
    .missingObjectIsNull = false,
    .modernHeader = false,
    .searchesHeader = false,
    .findsStartxref = false,
    .toleratesSubsections = false,
    .readsObjectStreams = false,
    .toleratesMissingEnd = false,
    .findsEndstream = false,
    .mendsObjects = false,
    .readsEncrypted = false,
    .repairsReferences = false,
    .skipsDamagedKids = false,
    .assumesMediaBox = false,
    .lastKeyCounts = false,
    .escapedNames = false,
    .blocksAreText = false,
    .shortestNumbers = false,
    .xrefByNumber = false,
    .lazyGroups = false,
    .evenOddCarried = false,
    .clipsUnpainted = false,
    .unpaintedStaysOpen = false,
    .readsText = false,
    .readsImages = false,
    .readsForms = false,
    .readsTransparency = false,
    .continuesClosedPaths = false,
    .writesGroups = false,
    .closesSubpaths = false,
    .clipsByGroup = false,
    .writesRgb = false,
    .emptyLeftOut = false,
    .hiddenLayersLeftOut = false,
    .pageAtOrigin = false,
    .missingDigit85 = 0,
    .resourceForks = true,
    .progressivePictures = false,
    .wholeRowsKept = false,
    .markersSearched = false,
    .anyPictureIdentifier = false,
    .keepsPageEntries = false,
    .keepsGeometry = false,
    .smallestPage = 72 * fixedOne,
    .largestPage = 3240 * fixedOne,
    .recordsOrigin = false,
    .carriesTrailer = false,
    .marksUpdates = false,
    .guardsFile = false,
};

inline constexpr Rules extendedRules{
    .profile = Profile::extended,
    .stackLimit = 1 << 20,
    .objectLengthLimit = INT32_MAX,
    .exactNumbers = true,
    .missingObjectIsNull = true,
    .modernHeader = true,
    .searchesHeader = true,
    .findsStartxref = true,
    .toleratesSubsections = true,
    .readsObjectStreams = true,
    .toleratesMissingEnd = true,
    .findsEndstream = true,
    .mendsObjects = true,
    .readsEncrypted = true,
    .repairsReferences = true,
    .skipsDamagedKids = true,
    .assumesMediaBox = true,
    .lastKeyCounts = true,
    .escapedNames = true,
    .blocksAreText = true,
    .shortestNumbers = true,
    .xrefByNumber = true,
    .lazyGroups = true,
    .evenOddCarried = true,
    .clipsUnpainted = true,
    .unpaintedStaysOpen = true,
    .readsText = true,
    .readsImages = true,
    .readsForms = true,
    .readsTransparency = true,
    .continuesClosedPaths = true,
    .writesGroups = true,
    .closesSubpaths = true,
    .clipsByGroup = true,
    .writesRgb = true,
    .emptyLeftOut = true,
    .hiddenLayersLeftOut = true,
    .pageAtOrigin = true,
    .missingDigit85 = 84,
    .resourceForks = false,
    .progressivePictures = true,
    .wholeRowsKept = true,
    .markersSearched = true,
    .anyPictureIdentifier = true,
    .keepsPageEntries = true,
    .keepsGeometry = true,
    .smallestPage = 3 * fixedOne,
    .largestPage = 14400 * fixedOne,
    .recordsOrigin = true,
    .carriesTrailer = true,
    .marksUpdates = true,
    .guardsFile = true,
};

/// The rules in force; original until told otherwise.
const Rules& rules();
void selectRules(Profile profile);

} // namespace corvane
