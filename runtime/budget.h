// Limits on depth, work and size, each with its reason. Past one: the nearest exception.
#pragma once

#include <cstddef>
#include <cstdint>

namespace corvane::budget {

/// Arrays and dictionaries inside one another; real files stay below 30, and freeing recurses.
inline constexpr std::int32_t objectNesting = 512;

/// Groups inside one another in the artwork; renderers and editors recurse over them.
inline constexpr std::int32_t artNesting = 4096;

/// Filters named by one stream; real files use at most three.
inline constexpr std::int32_t streamFilters = 16;

/// Bytes that a decoding filter may deliver; positions have 31 bits.
inline constexpr std::int64_t streamBytes = INT32_MAX;

/// References met while an object is read for another reference (a Length, a Kids element).
inline constexpr std::int32_t referenceDepth = 16;

/// Highest object number; the PDF Reference, appendix C.
inline constexpr std::int32_t objectNumber = 8'388'607;

/// Nodes from the root of the page tree to a page; balanced trees of any size stay below 20.
inline constexpr std::int32_t pageTreeDepth = 256;

/// Pages looked at to tell whether the one that is saved has several places: a few milliseconds'
/// work. Such files are made by hand or by mistake, and short.
inline constexpr std::int32_t comparedPages = 1000;

/// Bytes of objects read, beyond four times the file: objects may be read again, but not without
/// end.
inline constexpr std::int64_t rereadBytes = 64 << 20;

/// Bytes of one object stream, decoded: writers put a few hundred objects into one, few put all of
/// a large file there.
inline constexpr std::size_t objectStreamBytes = 256 << 20;

/// Memory of the decoded object streams that are kept. A page uses a few; past it the one that was
/// used longest ago goes.
inline constexpr std::int64_t keptObjectStreams = 64 << 20;

/// Entries of cross-reference streams read while a file is open: four times every object that there
/// can be, a second or two of work. A small file can unpack to more.
inline constexpr std::int64_t streamedEntries = 4 * std::int64_t{objectNumber};

/// Fields of a form looked at for signatures, a second or two of work: the longest forms have some
/// ten thousand.
inline constexpr std::int32_t formFields = 1 << 20;

/// Bytes of a cross-reference stream that is kept, to take entries from when they are needed: two
/// million entries of a usual one. More are entered at once, which takes three times the memory.
inline constexpr std::int64_t keptRows = 16 << 20;

/// Bytes of a password: 127 count at most, and the text of one may be longer before it is encoded.
inline constexpr std::size_t passwordBytes = 512;

/// Times that the host is asked for a password: people mistype.
inline constexpr std::int32_t passwordAttempts = 3;

/// Keys compared in dictionaries while a file is open, a second or two of work: real files need
/// thousands.
inline constexpr std::int64_t comparedKeys = 200'000'000;

/// Keys of large dictionaries whose indexes are kept; past it all are made anew. No page needs so
/// many, and indexed dictionaries stay in memory.
inline constexpr std::int64_t indexedKeys = 1 << 20;

/// Operators of one page that may fail: a damaged page has some, a page of faults alone is not
/// worth the time.
inline constexpr std::int64_t operatorFaults = 500'000;

/// Groups within one another that `q` makes: further ones change nothing that is seen, and readers
/// of SVG give up at 256.
inline constexpr std::int32_t groupNesting = 192;

/// Patterns whose tiles hold patterns whose tiles ... each one multiplies the work of all around
/// it.
inline constexpr std::int32_t patternNesting = 8;

/// Contents within one another: forms, glyph procedures, tiles, masks. Each recurses and opens a
/// guarded block, of which 32 may be open; real pages stay below ten.
inline constexpr std::size_t contentNesting = 20;

/// Tokens that drawing a form, a tile or a mask counts as beside its own: to set up its filters
/// takes as long. Maps draw a form for each of some ten thousand symbols.
inline constexpr std::int64_t innerContentTokens = 1000;

/// Stops of a gradient: colours between them are within a level of 255 of what a function says.
inline constexpr std::size_t gradientStops = 256;

/// Vertices of a shading by meshes, a second's work.
inline constexpr std::int64_t meshVertices = 4'000'000;

/// Pixels of an image that stands for a shading: a page of A4 at 200 dots an inch.
inline constexpr std::int64_t shadingPixels = 4'000'000;

/// Layers of optional content that are looked at: real files have some hundred.
inline constexpr std::int32_t contentLayers = 1 << 16;

/// Ranges of page labels, and nodes of their tree: a file with a label of its own for each page has
/// some thousand.
inline constexpr std::int32_t labelRanges = 1 << 16;

/// Conditions within one another that say where a layer shows.
inline constexpr std::int32_t visibilityNesting = 32;

/// Annotations of a page that are drawn.
inline constexpr std::int32_t drawnAnnotations = 1 << 16;

/// Tokens of one page's content: a page of ten million segments holds 50 million. A small file can
/// name its streams again and again, or unpack to a thousand times its size; this is a few seconds'
/// work.
inline constexpr std::int64_t contentTokens = 100'000'000;

/// Bytes that the streams of one page may deliver, those on the way from one filter to the next
/// counted too: the longest pages need a third of it, and what is kept of them must fit the zone,
/// which is as large. Two or three seconds' work.
inline constexpr std::int64_t pageBytes = 1 << 30;

/// Objects that a page's digest covers behind references; real pages stay below some thousand, but
/// resources may be those of all pages. Past it a reference counts by itself.
inline constexpr std::size_t digestObjects = 1 << 16;

/// Bytes that a page's digest covers behind references, of objects and of streams: a tenth of a
/// second's work for pages full of images. A quarter of `pageBytes`, which it counts against.
inline constexpr std::int64_t digestBytes = 256 << 20;

/// Bytes of one value of a page's dictionary that is carried over to a new page object: real ones
/// are links to what is large.
inline constexpr std::int32_t keptEntryBytes = 16 << 20;

/// Places of a page's content looked at for objects that are written apart, and the clips around
/// each, about a second's work: usually each operator is looked at once.
inline constexpr std::int64_t searchedPlaces = 50'000'000;

/// Clips within one another that are compared: SVG nests less than 200 deep, and deeper ones are
/// written otherwise there.
inline constexpr std::uint32_t comparedClips = 180;

/// A page whose content is one stream of at most so many bytes in the file keeps one stream when
/// something is added: to write it again costs no more than a few objects, and many tools look at
/// the first stream only. Longer ones are referred to, and what is new stands beside them.
inline constexpr std::int64_t joinedStreamBytes = 64 << 10;

/// Bytes in which the header, or objects and a trailer without one, are looked for: what mail and
/// the web put before a file is far shorter, and a file of another kind is told quickly.
inline constexpr std::int32_t headerBytes = 64 << 20;

/// Damaged objects that are noted one by one: a person reads how many, and so many can be written
/// anew in a second or two.
inline constexpr std::size_t mendedObjects = 1 << 16;

/// Ends of updates looked at in what may be one that was cut short; such a tail has none, but for
/// what a content stream or a string may say.
inline constexpr std::int32_t updateEnds = 1000;

/// Bytes of an embedded font program: complete fonts of Chinese or Japanese have 20 to 30 million.
inline constexpr std::size_t fontProgramBytes = 64 << 20;

/// Glyphs of a font program: what 16 bits count in OpenType and CFF. Type 1 sets no limit.
inline constexpr std::int32_t fontGlyphs = 1 << 16;

/// Processor time that FreeType may take for the glyphs of fonts that are open: a hundred thousand
/// usual ones take a second, a crafted one half a second. Glyphs beyond are blank.
inline constexpr int glyphSeconds = 20;

/// Points of an outline: FreeType, which browsers read fonts with, counts them in 15 bits.
inline constexpr std::size_t outlinePoints = 32'000;

/// Pairs of character and glyph read from one cmap, to tell the characters of glyphs: all
/// characters there are. A few bytes of a cmap can claim more.
inline constexpr std::int32_t cmapPairs = 0x110000;

/// Bytes in front of a Type 1 program that are passed over: some writers leave a line, a name or
/// another header there.
inline constexpr std::size_t fontProgramLead = 4 << 10;

/// Bytes of an embedded CMap, decoded: one that lists each of 65,536 codes has a megabyte or two.
inline constexpr std::size_t cmapBytes = 8 << 20;

/// Points of the outlines of one face that is made: a whole CJK font has three millions. Glyphs
/// past it are blank.
inline constexpr std::size_t facePoints = 4'000'000;

/// Characters of a line of text that is set in a font of the machine: a whole book has as many. The
/// letters of a line are put in order together.
inline constexpr std::size_t lineCharacters = 1 << 20;

/// Fonts of the machine that one save tries: a page in a hundred scripts needs as many, and each is
/// read as a whole.
inline constexpr std::size_t triedFonts = 256;

/// Bytes of an image as the host gets it, and of all images of one page: what their streams may
/// deliver, so that a short stream that claims a large image costs no more. A scanned sheet of A0
/// at 600 dots an inch has 70 MB, a photograph of 48 megapixels 144.
inline constexpr std::int64_t imageBytes = pageBytes;

/// Steps of work on the colours of a page's images, of a few nanoseconds each: those of spaces that
/// compute them take 10 to 100 a pixel, and colours that were met are remembered.
inline constexpr std::int64_t imageColours = 4'000'000'000;

/// Images that a page tells the host, a stencil once for each colour; each is a file. Further ones
/// are placeholders. Drawings with hatches made of small images have some thousands.
inline constexpr std::int32_t pageImages = 10'000;

/// Bytes of a row of an image; no image that can be drawn has more.
inline constexpr std::int64_t imageRowBytes = 1 << 28;

/// Bytes of the rows that an image and a larger mask make together; past it the mask is thinned
/// out, down to the size of the image. A sheet of A3 at 600 dots an inch, over a picture of any
/// size, has 280 MB.
inline constexpr std::int64_t joinedImageBytes = 300 << 20;

/// Bytes that may be missing of an image of which less than a sixteenth is there; past it the image
/// is given up. Downloads and disks that end early leave more of it.
inline constexpr std::int64_t missingImageBytes = 16 << 20;

/// Bytes of an image's coded data that are read into memory at once, where the format asks for it.
/// Pictures of 48 megapixels have a tenth of it.
inline constexpr std::size_t codedImageBytes = 256 << 20;

/// Bytes in which the frame of a JPEG image is looked for: behind profiles, previews and notes,
/// each of up to 64 KB.
inline constexpr std::int64_t jpegLeadBytes = 16 << 20;

/// Bytes of the samples of a JPEG 2000 picture, four for each: 48 megapixels in red, green and blue
/// have 576 MB.
inline constexpr std::int64_t jpxBytes = 640 << 20;

/// Components of a JPEG 2000 picture: 32 inks and alpha; the format allows 16,384.
inline constexpr std::uint32_t jpxComponents = 33;

/// Tiles of a JPEG 2000 picture: 60,000 pixels square in tiles of 1,024. Each takes 6 KB before
/// anything is decoded.
inline constexpr std::int64_t jpxTiles = 4096;

/// Bytes by which a tile of a JPEG 2000 file may be longer than twice the file: of what was cut
/// short, some of the front is there.
inline constexpr std::size_t jpxTileSlack = 16 << 20;

/// Precincts and code blocks of a JPEG 2000 picture, each of some 500 bytes before it is decoded:
/// 48 megapixels in three components and blocks of 32 samples have 190,000.
inline constexpr std::int64_t jpxRecords = 600'000;

/// Packets of a JPEG 2000 picture: one for each layer of each precinct. Pictures that are sent in
/// small pieces have some ten thousand.
inline constexpr std::int64_t jpxPackets = 4'000'000;

/// Samples of a JPEG 2000 picture: so many, and more for each byte of its file. A block may ask for
/// a hundred passes over its samples in four bytes.
inline constexpr std::int64_t jpxPlainSamples = 16 << 20;
inline constexpr std::int64_t jpxSamplesPerByte = 2048;

/// Memory that decoding a JBIG2 page may take: a page of A0 at 600 dots an inch has 70 MB.
inline constexpr std::int64_t jbig2Bytes = 256 << 20;

/// Processor seconds that the codecs of a page's images may take: at least; for each coded byte, a
/// quarter of the slowest rate of JPEG 2000; and at most. A few hundred bytes of JBIG2 can name a
/// large symbol again and again, and scans of a JPEG can walk all of it for two bytes.
inline constexpr double codecSeconds = 5;
inline constexpr double codecSecondsPerByte = 2e-6;
inline constexpr double longestCodecSeconds = 60;

/// Operators of a calculator function, those within braces counted too: real ones have some
/// hundred.
inline constexpr std::size_t functionOperators = 10'000;

/// Samples of a sampled function: 4 inputs with 33 samples each, and 4 outputs, are 5 millions.
inline constexpr std::int64_t functionSamples = 8 << 20;

/// Samples of all functions that are read for a page.
inline constexpr std::int64_t pageFunctionSamples = 8 * functionSamples;

/// Bytes of all colours of a page that are mixed of several inks: 100,000 of four inks are 30 MB.
inline constexpr std::int64_t inkMixtureBytes = 64 << 20;

/// Bytes of a colour profile: those of presses have 2 MB.
inline constexpr std::size_t profileBytes = 16 << 20;

/// Memory that a colour profile and its transforms may take: grids of 33 samples each way, of four
/// inks, have 7 MB, and those that are made of them as much.
inline constexpr std::int64_t profileMemory = 96 << 20;

} // namespace corvane::budget
