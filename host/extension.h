// What a host of today can ask for beyond the classic selectors.
//
// The host fills the record and registers it with the toolbox before it calls `main_entry`; the
// plug-in reads it there. Without one the plug-in behaves as it always did: profile original,
// selectors 0 to 7, dialogs only. Every call may be null; `context` comes back as its first
// argument. Strings are valid during the call only.
#pragma once

#include "host/artwork.h"
#include "host/mend.h"
#include "host/zone.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

/// `original`: the classic behaviour and no more. `extended`: also what files and people of today
/// need (runtime/rules.h lists every difference).
enum class Profile : std::int32_t { original = 0, extended = 1 };

/// Plain rectangle in points, corners sorted; double because pages outgrow 16.16.
struct Box {
    double left = 0;
    double bottom = 0;
    double right = 0;
    double top = 0;
    friend constexpr bool operator==(const Box&, const Box&) = default;
};

/// Facts of one page, by selector `info`. Boxes are normalised, the crop box cut to the media box.
struct PageFacts {
    std::int32_t page = 0; ///< from 1
    std::int32_t objectNumber = 0;
    std::int32_t generation = 0;
    Box mediaBox;
    Box cropBox;
    std::int32_t rotate = 0; ///< 0, 90, 180 or 270, clockwise
    double userUnit = 1.0;
};

/// What a list of pages can show of a page besides its facts.
struct PageListing {
    std::int32_t page = 0;     ///< from 1
    std::string_view label;    ///< what the file calls it, "iv", UTF-8; empty: nothing
    bool hasThumbnail = false; ///< it says so; whether that can be read is not known
};

/// The small picture of itself that a page carries.
struct PageThumbnail {
    std::int32_t width = 0; ///< pixels
    std::int32_t height = 0;
    std::span<const std::byte> pixels; ///< 0, red, green and blue of each, top row first
};

/// Facts of the whole file: by selector `info`, before the first page's, and before a page is
/// opened or saved.
struct DocumentFacts {
    std::int32_t pages = 0;   ///< when a page is opened or saved: as the file says, not counted
    std::int32_t objects = 0; ///< in use, by the cross-reference; 0: not counted
    std::int32_t updates = 0; ///< sections appended after the first
    std::int64_t length = 0;  ///< bytes
    std::string_view version; ///< of the header: "1.4"
};

/// Which page artwork came from, told while it is read: before the first art is made.
struct PageIdentity {
    PageFacts page;
    std::uint64_t digest = 0; ///< of all that it is drawn from (reader/page/page_digest.h)
};

/// Kinds of what a page has and the artwork does not hold. Numbers stay; new kinds come behind the
/// last, and a host takes those that it does not know for `other`.
enum class Omission : std::int32_t {
    text = 0,
    image = 1,
    form = 2,
    shading = 3,
    other = 4,         ///< XObjects of another kind
    pattern = 5,       ///< as a paint
    colourSpace = 6,   ///< not supported: nothing is painted in its colours
    colourProfile = 7, ///< what the numbers of a colour mean: their device space counts
    ink = 8,           ///< the name of an ink: its alternate colour counts
    transparency = 9,  ///< opacity below 1 and blend modes
    softMask = 10,
    overprint = 11,
    renderingIntent = 12,
    deviceSetting = 13,   ///< halftones, transfer functions, black generation
    optionalContent = 14, ///< content of a layer of the file, shown or not
    markedContent = 15,   ///< tags of the page's structure and the like
    unknownOperator = 16,
    damagedOperator = 17,
    longDash = 18,           ///< more lengths of a dash pattern than artwork holds
    unequalStrokeScale = 19, ///< strokes whose width depends on their direction: its mean counts
    farPoint = 20            ///< points of paths beyond 16.16: at its edge
};
inline constexpr std::size_t omissionKinds = 21;
static_assert(static_cast<std::size_t>(Omission::farPoint) + 1 == omissionKinds);

/// What a save appended or, in a trial, would append.
struct SavedFacts {
    PageFacts page;
    std::int64_t formerLength = 0;  ///< bytes of the file before
    std::int64_t length = 0;        ///< bytes of the file after
    std::int32_t objects = 0;       ///< written
    std::int64_t contentLength = 0; ///< bytes of the page's content
    std::int32_t places = 1;        ///< of the page in the file: the same object may be several

    // Version 3. Objects are paths and compound paths; of clips only changed ones count.

    bool isPatched = false; ///< the page's own content was patched; false: it was drawn anew
    bool isNothing = false; ///< the page is as the artwork has it: nothing was appended
    std::int32_t kept = 0;  ///< objects that stay as they are
    std::int32_t changed = 0;
    std::int32_t added = 0;
    std::int32_t removed = 0;
    std::int32_t moved = 0; ///< objects that stay and are drawn at another place in the order

    // Version 4.

    bool isMended = false; ///< the file, besides; a page number of 0 tells that nothing else is
    MendCounts mended{};   ///< what is sound now
};

/// How sound a file is, by selector `diagnose`.
struct DamageFacts {
    MendCounts found{};
    bool needsMending = false; ///< nothing can be saved into it before
    bool canBeMended = false;  ///< by what is appended; nothing to mend: false
    std::string_view obstacle; ///< why it cannot be mended so; empty where it can
};

/// Much of one kind that the page has and the artwork to be saved does not.
struct MissingArt {
    ArtKind kind = ArtKind::unknown; ///< unknown: of all kinds together
    std::int32_t missing = 0;
    std::int32_t whole = 0; ///< objects of the kind that the page has
};

/// One update of a file, by selector `log`, from the oldest, which is the file as it was made.
struct UpdateFacts {
    std::int32_t number = 0;             ///< 0: the file as it was made
    std::int64_t offset = 0;             ///< of its first byte
    std::int64_t size = 0;               ///< bytes
    std::int32_t objects = 0;            ///< in use, by its section of the cross-reference
    std::span<const std::int32_t> pages; ///< numbers of the pages whose objects it holds, ascending
    std::string_view date; ///< as PDF writes dates, "D:20261121090000Z"; empty where not known
    bool ours = false;     ///< was appended by this plug-in
};

/// Signatures of a file, by selector `info`.
struct SignatureFacts {
    std::int32_t count = 0;      ///< fields that are signed
    std::int32_t ofFile = 0;     ///< of them, those that cover the file as it is
    std::int32_t ofRevision = 0; ///< those that cover it as it was before the last updates
    bool certified = false;      ///< one says which changes its author allows (DocMDP)
};

/// A font of the machine that a save puts into the file.
struct AddedFont {
    std::string_view name;    ///< its full name: "DejaVu Sans Bold"
    std::string_view letters; ///< UTF-8: those that it is put in for, each once
    /// The artwork asks for another font, which does not have the letters or is not there: that
    /// one's family; else empty.
    std::string_view wanted;
};

/// An image that a page draws.
struct DrawnImageFacts {
    std::int32_t page = 0;   ///< from 1
    std::int32_t object = 0; ///< number in the file; 0: an inline image
    std::int32_t width = 0;  ///< pixels
    std::int32_t height = 0;
    std::int32_t bits = 0;        ///< of a component
    std::string_view colourSpace; ///< "DeviceRGB"; of a stencil "ImageMask"
    std::string_view filters;     ///< with blanks between them, as the file has them
    double horizontalDensity = 0; ///< pixels an inch along the image's rows, as it is drawn
    double verticalDensity = 0;
};

/// Versions only add fields at the end. A host states the version that its record was made for; the
/// plug-in reads no further, and takes what is missing as not filled (runtime/extension.h).
struct HostExtension {
    static constexpr std::uint32_t currentVersion = 11;

    // Version 1.

    std::uint32_t version = currentVersion;
    Profile profile = Profile::extended;
    std::int32_t wantedPage = 0; ///< 0: ask the person, or take the first
    void* context = nullptr;

    /// Work done so far, 0 to `total`.
    void (*progress)(void* context, std::int64_t done, std::int64_t total) = nullptr;
    void (*documentFacts)(void* context, const DocumentFacts&) = nullptr;
    void (*pageFacts)(void* context, const PageFacts&) = nullptr;
    void (*pageIdentity)(void* context, const PageIdentity&) = nullptr;
    /// Told once for each kind, at the end of reading, with how often it was met.
    void (*omitted)(void* context, Omission, std::int32_t count) = nullptr;

    // Version 2: saving.

    /// Digest of the page that the artwork to be saved came from, whichever version of the plug-in
    /// told it; null: it came from none, and its units are points of paper, whatever the user unit
    /// of the page is. A page of another digest is refused, unless `overwrites`.
    const std::uint64_t* artworkDigest = nullptr;
    bool overwrites = false;
    /// Told when an update was appended, or would be.
    void (*saved)(void* context, const SavedFacts&) = nullptr;
    /// Told for each layer that is not drawn on the page, with its title.
    void (*layerLeftOut)(void* context, std::string_view title) = nullptr;
    void (*update)(void* context, const UpdateFacts&) = nullptr;

    // Version 3: patches. The callback table has slots 329 and 330.

    /// Which opening of the page the artwork comes from: two artworks of one page differ in it.
    /// Null: not known. Where the page was saved from another one last, the save is refused
    /// (`otherArtwork`), unless `overwrites`.
    const std::uint64_t* artworkName = nullptr;
    /// Artwork that came from no page takes the place of an empty page only (`pageChanged`), unless
    /// `overwrites`: an editor may have dropped what told where it came from.
    bool guardsPage = false;
    /// Content is written as it is, not compressed.
    bool plainContent = false;
    /// Told before a save is refused because much is missing (`artworkMissing`).
    void (*missing)(void* context, const MissingArt&) = nullptr;
    /// Told for each layer whose objects are saved and which is no layer any more, with its title.
    void (*layerNotKept)(void* context, std::string_view title) = nullptr;
    /// Puts a password for the file, in UTF-8, into `buffer`, which is wiped afterwards; its
    /// length, -1 where there is none, -2 where the person cancelled. Attempt 0 is for one that the
    /// person stated before; from 1 on, the person may be asked, and each attempt says that what
    /// came before was wrong.
    std::int32_t (*password)(void* context, std::int32_t attempt, std::span<char> buffer) = nullptr;

    // Version 4.

    /// Told where there are any.
    void (*signatures)(void* context, const SignatureFacts&) = nullptr;
    /// What is damaged in the file is mended by the save.
    bool mends = false;
    /// Told when the whole file was looked at.
    void (*damage)(void* context, const DamageFacts&) = nullptr;

    // Version 5: lines of text that are not of a page have an anchor, an order, a length, a path;
    // art shows images.

    /// Told once for each font and each font that it stands in for.
    void (*fontAdded)(void* context, const AddedFont&) = nullptr;

    // Version 6: groups stand for forms and layers of the file, art has an appearance, gradients
    // and patterns are records. The callback table has slots 348 to 363.

    /// Told for each image that a page draws, by selector `info`, behind the page's own facts.
    void (*drawnImage)(void* context, const DrawnImageFacts&) = nullptr;
    /// Told for each annotation that was changed or deleted in the artwork: it stays as it is.
    void (*annotationKept)(void* context, std::string_view name) = nullptr;

    // Version 7: strokes have pens, art overprints, custom colours are added. The callback table
    // has slot 366.

    // Version 8.

    /// Told for each page, by selector `info`, behind the page's own facts.
    void (*pageListing)(void* context, const PageListing&) = nullptr;
    /// A host that wants it is told by selector `info` of the page that it names, and of nothing
    /// else; and not even that where the page has none, or it cannot be read.
    void (*pageThumbnail)(void* context, const PageThumbnail&) = nullptr;

    // Version 9: art has rendering intents.

    // Version 10: colours may be mixtures of inks, and lines of text grow on both sides. The
    // callback table has slots 367 to 369.
};

/// Registers (null: removes) the record of the host of this process; not an owner.
TOOLBOX_CALL void setHostExtension(const HostExtension* extension);
TOOLBOX_CALL const HostExtension* hostExtension();

} // namespace corvane
