// A plug-in that acts the part which the environment variable CORVANE_FAKE gives it, so that tests
// can see what the program makes of every answer.
//
// The part is a list of words, "pages=12 error@3=7". Words with "@N" hold for selector N.
//   pages=N        the file has N pages, of two sizes (1 unless said)
//   error@N=CODE   shows an error with a sentence, and stops
//   stop@N         stops without a word, as a cancelled dialog does
//   answer@N=CODE  gives this result
//   nameless       is not our plug-in
//   unregistered   offers no format
//   warnings=N     shows N warnings of a page
//   omitted=N      tells that N texts were left out
//   segments=N     draws a path of N segments
//   images=N       the page has N images, PNG and JPEG in turn, of N + 1 by 2 pixels
//   unfinished     draws, but never finishes the import
//   wait           works on and on until the person stops it
//   crash          is killed by a file whose name begins with "crash"
//   folder         asks for the folder of the pictures
//   hostile        puts control characters into sentences
//   digest=N       the page to replace has the digest N (0x1234 unless said)
//   layers=N       tells that N layers were left out of the page
//   KIND=N         saving patches the page and counts N objects of the kind: kept, changed, added,
//                  removed, moved
//   nothing        the page is as the artwork has it
//   missing=N      N of N + 3 paths, and 2 of 2 compound paths, are missing: refused without force
//   other          the page was saved from another artwork: refused without force
//   names          says at go the name of the artwork, and whether content is to be plain
//   tells          says at prepare and go which action is asked for and who may change the file
//   late           waits for Ctrl-C when all is saved
// Saving appends a line that counts the paths of the first layer; revert takes it off again.
#include "host/callbacks.h"
#include "host/extension.h"
#include "host/files.h"
#include "host/front.h"
#include "host/parameters.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

using namespace corvane;

namespace {

std::optional<std::int32_t> partOf(const std::string& name) {
    const char* const part = std::getenv("CORVANE_FAKE");
    std::istringstream words(part ? part : "");
    for (std::string word; words >> word;) {
        const auto equals = word.find('=');
        if (word.substr(0, equals) == name) {
            return equals == std::string::npos ? 1 : std::stoi(word.substr(equals + 1), nullptr, 0);
        }
    }
    return std::nullopt;
}

std::string sentence(const std::string& text) {
    return partOf("hostile") ? text + "\x1B]0;title\x07" : text;
}

template <class Signature, class... Parameters>
auto call(const ParameterBlock& block, Slot<Signature> slot, Parameters... parameters) {
    return slotProcedure(block.callbacks.get(), slot)(parameters...);
}

PageFacts factsOfPage(std::int32_t page, std::int32_t pages) {
    const Box sheet{0, 0, 612, 792};
    const bool isLast = page == pages;
    return {.page = page,
            .objectNumber = 10 + page,
            .mediaBox = sheet,
            .cropBox = isLast ? Box{36, 36, 576, 756} : sheet,
            .rotate = isLast ? 90 : 0,
            .userUnit = isLast ? 2.5 : 1.0};
}

void tellPages(const HostExtension& extension, std::int32_t pages) {
    for (std::int32_t page = 1; page <= pages; ++page) {
        extension.pageFacts(extension.context, factsOfPage(page, pages));
    }
}

void tellFile(const HostExtension& extension, std::int32_t pages) {
    extension.documentFacts(
        extension.context,
        {.pages = pages, .objects = 42, .updates = 1, .length = 12345, .version = "1.4"});
}

std::uint32_t showError(std::int32_t code, const std::string& text) {
    dialogFront()->showError(code, sentence(text));
    return resultStopped;
}

std::string pathOf(const ParameterBlock& block) {
    return posixPathOf(block.file->volume, block.file->directory, block.file->name);
}

/// What other programs see: a lock of the host's keeps them out.
void tellWho(const ParameterBlock& block) {
    struct flock wanted {};
    wanted.l_type = F_WRLCK;
    const int file = open(pathOf(block).c_str(), O_RDWR | O_CLOEXEC);
    fcntl(file, F_OFD_GETLK, &wanted);
    close(file);
    std::cerr << (block.action == Action::write ? "write " : "read ")
              << (wanted.l_type == F_UNLCK ? "free" : "locked") << std::endl;
}

std::uint32_t choosePage(const HostExtension& extension, std::int32_t pages) {
    tellFile(extension, pages);
    if (extension.wantedPage > pages) {
        return showError(15, "a value is out of range");
    }
    std::int32_t page = 1;
    const bool mustAsk = extension.wantedPage == 0 && pages > 1;
    return !mustAsk || dialogFront()->choosePage(1, pages, page) ? 0 : resultStopped;
}

/// False where the host refused the path.
bool drawPath(const ParameterBlock& block, std::int32_t count) {
    Art layer = Art::null;
    Art path = Art::null;
    call(block, slot::getLayerArt, Layer::null, &layer);
    call(block, slot::newArt, ArtKind::path, Placement::inside, layer, &path);
    std::vector<Segment> segments(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i) {
        const Point point{i % 600 * fixedOne, i / 600 % 700 * fixedOne};
        segments[static_cast<std::size_t>(i)] = {point, point, point, 1};
    }
    PathStyle style;
    style.strokePaint = 1;
    call(block, slot::setPathStyle, path, &style);
    if (call(block, slot::setPathSegmentCount, path, count) != HostError::none) {
        return false;
    }
    call(block, slot::setPathSegments, path, 0, count, segments.data());
    if (!partOf("unfinished")) {
        call(block, slot::finishImport, layer, layer);
    }
    return true;
}

/// False where the host did not take one. Of a JPEG only the first bytes count.
bool placeImages(const ParameterBlock& block, std::int32_t count) {
    Art layer = Art::null;
    call(block, slot::getLayerArt, Layer::null, &layer);
    for (std::int32_t i = 0; i < count; ++i) {
        const std::string key = std::to_string(i + 10) + "-abcdef";
        const bool isJpeg = i % 2 == 1;
        ImageFacts facts;
        facts.width = i + 2;
        facts.height = 2;
        facts.coding = isJpeg ? ImageCoding::jpeg : ImageCoding::samples;
        facts.key = key;
        Image image = Image::null;
        std::uint8_t wantsBytes = 0;
        const std::vector<std::byte> bytes(static_cast<std::size_t>(2 * facts.width),
                                           std::byte{0x70});
        if (call(block, slot::addImage, &facts, &image, &wantsBytes) != HostError::none ||
            (wantsBytes != 0 && (call(block, slot::addImageBytes, image, bytes.data(),
                                      std::ssize(bytes)) != HostError::none ||
                                 call(block, slot::endImage, image) != HostError::none))) {
            return false;
        }
        Art placed = Art::null;
        const PlacedImage shown{image, {100 * fixedOne, 0, 0, 50 * fixedOne, i * fixedOne, 0}};
        call(block, slot::newArt, ArtKind::placed, Placement::inside, layer, &placed);
        call(block, slot::setPlacedImage, placed, &shown);
    }
    return true;
}

/// Where the pictures go, for the test to read.
void askForFolder() {
    std::int16_t volume = 0;
    std::int32_t directory = 0;
    std::cerr << (dialogFront()->chooseFolder(volume, directory) ? "folder\n" : "no folder\n");
}

std::uint32_t waitForAbort(const ParameterBlock& block, const HostExtension& extension) {
    std::cerr << "waiting" << std::endl;
    for (std::int64_t i = 0; call(block, slot::checkUserAbort) == HostBoolean::no; ++i) {
        extension.progress(extension.context, i % 1000, 1000);
    }
    return resultStopped;
}

std::uint32_t readPage(const ParameterBlock& block, const HostExtension& extension) {
    const Rect bounds{0, 792 * fixedOne, 612 * fixedOne, 0};
    const ArtboardSize size{612 * fixedOne, 792 * fixedOne};
    call(block, slot::setArtboardSize, &size);
    call(block, slot::setPageBounds, &bounds);
    extension.pageIdentity(extension.context, {factsOfPage(1, 1), 0x1234});
    if (partOf("wait")) {
        return waitForAbort(block, extension);
    }
    if (partOf("crash") &&
        std::filesystem::path(pathOf(block)).filename().string().starts_with("crash")) {
        std::cerr << "falling" << std::endl;
        std::raise(SIGKILL);
    }
    if (partOf("folder")) {
        askForFolder();
    }
    if (!placeImages(block, partOf("images").value_or(0)) ||
        !drawPath(block, partOf("segments").value_or(4))) {
        return showError(3, "the host refused");
    }
    if (const auto omitted = partOf("omitted")) {
        extension.omitted(extension.context, Omission::text, *omitted);
    }
    std::vector<std::string> sentences;
    std::vector<WarningText> warnings;
    for (std::int32_t code = 1; code <= partOf("warnings").value_or(0); ++code) {
        sentences.push_back(sentence("warning number " + std::to_string(code)));
    }
    for (const std::string& text : sentences) {
        warnings.push_back({static_cast<std::int32_t>(warnings.size()) + 1, text});
    }
    if (!warnings.empty() && !dialogFront()->showWarnings(true, warnings, "fake.pdf")) {
        return resultStopped;
    }
    return 0;
}

std::int32_t countPaths(const ParameterBlock& block) {
    Layer layer = Layer::null;
    Art group = Art::null;
    Art child = Art::null;
    call(block, slot::getNextLayer, Layer::null, &layer);
    call(block, slot::getLayerArt, layer, &group);
    call(block, slot::getFirstChild, group, &child);
    std::int32_t count = 0;
    for (; child != Art::null; call(block, slot::getNextSibling, child, &child)) {
        ++count;
    }
    return count;
}

void tellNames(const HostExtension& extension) {
    std::cerr << "artwork ";
    if (extension.artworkName != nullptr) {
        std::cerr << std::hex << *extension.artworkName << std::dec;
    }
    std::cerr << (extension.plainContent ? " plain" : " packed") << std::endl;
}

/// Why the save is refused; 0 where it is not.
std::uint32_t refusal(const HostExtension& extension) {
    const auto digest = static_cast<std::uint64_t>(partOf("digest").value_or(0x1234));
    if (extension.overwrites) {
        return 0;
    }
    if (extension.artworkDigest != nullptr && *extension.artworkDigest != digest) {
        return showError(21, "the page was changed");
    }
    if (partOf("other")) {
        return showError(29, "another artwork");
    }
    if (const auto missing = partOf("missing")) {
        extension.missing(extension.context, {ArtKind::path, *missing, *missing + 3});
        extension.missing(extension.context, {ArtKind::compound, 2, 2});
        return showError(30, "much is missing");
    }
    return 0;
}

void countPatches(SavedFacts& facts) {
    struct Kind {
        const char* name;
        std::int32_t& count;
    };
    for (const Kind& kind :
         {Kind{"kept", facts.kept}, Kind{"changed", facts.changed}, Kind{"added", facts.added},
          Kind{"removed", facts.removed}, Kind{"moved", facts.moved}}) {
        const auto count = partOf(kind.name);
        kind.count = count.value_or(0);
        facts.isPatched = facts.isPatched || count;
    }
}

std::uint32_t savePage(const ParameterBlock& block, const HostExtension& extension) {
    if (partOf("names")) {
        tellNames(extension);
    }
    if (const std::uint32_t refused = refusal(extension)) {
        return refused;
    }
    const std::string path = pathOf(block);
    const bool isNothing = partOf("nothing").has_value();
    const std::string update =
        isNothing ? "" : "page of " + std::to_string(countPaths(block)) + " paths\n";
    const auto length = static_cast<std::int64_t>(std::filesystem::file_size(path));
    if (block.selector == Selector::go) {
        std::ofstream(path, std::ios::app) << update;
    }
    const std::int32_t page = extension.wantedPage == 0 ? 1 : extension.wantedPage;
    const auto added = static_cast<std::int64_t>(update.size());
    SavedFacts facts{.page = factsOfPage(page, 0),
                     .formerLength = length,
                     .length = length + added,
                     .objects = isNothing ? 0 : 3,
                     .contentLength = added,
                     .isNothing = isNothing};
    countPatches(facts);
    extension.saved(extension.context, facts);
    for (std::int32_t layer = 1; layer <= partOf("layers").value_or(0); ++layer) {
        extension.layerLeftOut(extension.context, sentence("notes " + std::to_string(layer)));
    }
    const std::array warnings{WarningText{1004, "layers were not drawn"}};
    if (partOf("layers")) {
        dialogFront()->showWarnings(false, warnings, "fake.pdf");
    }
    if (partOf("late")) {
        std::cerr << "saved" << std::endl;
        while (call(block, slot::checkUserAbort) == HostBoolean::no) {
        }
    }
    return 0;
}

/// The file as it was made, and the update of a save.
std::uint32_t tellUpdates(const ParameterBlock& block, const HostExtension& extension) {
    const auto length = static_cast<std::int64_t>(std::filesystem::file_size(pathOf(block)));
    static constexpr std::array<std::int32_t, 4> pages{1, 2, 3, 7};
    if (block.selector == Selector::log) {
        extension.update(extension.context,
                         {.size = 1200, .objects = 42, .pages = pages, .date = "D:2026"});
    } else {
        std::filesystem::resize_file(pathOf(block), 10);
    }
    extension.update(extension.context, {.number = 1,
                                         .offset = 1200,
                                         .size = length,
                                         .objects = 3,
                                         .pages = std::span(pages).first(1),
                                         .date = "D:20261121010203+02'00'",
                                         .ours = true});
    return 0;
}

std::uint32_t perform(ParameterBlock& block, const HostExtension& extension) {
    const std::int32_t pages = partOf("pages").value_or(1);
    switch (block.selector) {
    case Selector::identify:
        return partOf("nameless") ? 0 : resultIdentity;
    case Selector::registerFormat: {
        static constexpr std::uint8_t name[] = {4, 'F', 'a', 'k', 'e'};
        if (!partOf("unregistered")) {
            call(block, slot::addFileFormat, &name[0], fourCharacters("PDF "), 3, 0);
        }
        return 0;
    }
    case Selector::prepare:
        if (block.action == Action::write && !std::filesystem::exists(pathOf(block))) {
            std::ofstream(pathOf(block)) << "%PDF-1.4 new\n";
        }
        if (partOf("tells")) {
            tellWho(block);
        }
        block.state = NewHandleClear(sizeof(PluginState)).as<Ref<PluginState>>();
        return choosePage(extension, pages);
    case Selector::go:
        if (block.action == Action::read) {
            return readPage(block, extension);
        }
        if (partOf("wait")) {
            return waitForAbort(block, extension);
        }
        if (partOf("tells")) {
            tellWho(block);
        }
        return savePage(block, extension);
    case Selector::trial:
        return savePage(block, extension);
    case Selector::log:
    case Selector::revert:
        return tellUpdates(block, extension);
    case Selector::info:
    case Selector::diagnose:
        tellFile(extension, pages);
        tellPages(extension, pages);
        return 0;
    case Selector::about:
    case Selector::check:
    case Selector::mend:
        break;
    }
    return 0;
}

} // namespace

std::uint32_t main_entry(ParameterBlock* block) {
    const std::string here = "@" + std::to_string(static_cast<int>(block->selector));
    if (const auto code = partOf("error" + here)) {
        return showError(*code, "the fake failed as told");
    }
    if (partOf("stop" + here)) {
        return resultStopped;
    }
    if (const auto answer = partOf("answer" + here)) {
        return static_cast<std::uint32_t>(*answer);
    }
    return perform(*block, *hostExtension());
}
