// Any entries and any data as an image, of an object and inline: what the host is told agrees with
// the bytes that it gets.
#include "fuzz/support/plugin_host.h"
#include "reader/image/deliver_image.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "tests/reader/image/image_taker.h"
#include "tests/support/pdf_builder.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane::fuzz {

namespace {

/// Entries, this line, data.
constexpr std::string_view border = "\nstream\n";

test::PdfBuilder fileOf(std::string_view entries, std::string_view data) {
    test::PdfBuilder file = test::PdfBuilder::onePage("");
    const std::string gray = "/Width 3 /Height 2 /BitsPerComponent 8 /ColorSpace /DeviceGray";
    file.stream(5, data, entries)
        .stream(6, data, gray + " /Matte [0 0 .5]")
        .stream(7, "{ dup mul exch 0 ge { 1 } { .5 } ifelse 2 copy }",
                "/FunctionType 4 /Domain [0 1 0 1] /Range [0 100 -9 9 -9 9]")
        .stream(8, data,
                "/FunctionType 0 /Domain [0 1] /Range [0 1 0 1 0 1] /Size [3] /BitsPerSample 8")
        .stream(9, data, "/Width 5 /Height 1 /ImageMask true")
        .stream(10, data)
        .object(11, "<< " + std::string(entries) + " >>");
    return file;
}

void check(const test::TakenImage& image) {
    const ImageFacts& facts = image.facts;
    require(facts.width > 0 && facts.height > 0);
    require(facts.isPlaceholder || image.isEnded != image.isGivenUp);
    if (!image.isEnded || facts.coding == ImageCoding::jpeg) {
        return;
    }
    const bool isIndexed = facts.colours == ImageColours::indexed;
    require(isIndexed == !image.palette.empty() && image.palette.size() <= 1024);
    require(facts.bits == 8 || facts.bits == 16 ||
            (facts.bits < 8 && !facts.hasAlpha && facts.colours != ImageColours::rgb));
    const std::int64_t components =
        (facts.colours == ImageColours::rgb ? 3 : 1) + (facts.hasAlpha ? 1 : 0);
    const std::int64_t row = (std::int64_t{facts.width} * components * facts.bits + 7) / 8;
    require(image.count == row * facts.height);
}

void deliverBoth(DocumentCache& cache, std::string_view data) {
    ObjectOwner stream;
    indirectObject(stream.get(), 5, 0);
    stream = resolveObject(cache, stream.get());
    if (typeObject(stream.get()) == ObjectType::stream) {
        deliverImage(cache, stream.get(), 5, Colour());
    }
    ObjectOwner dictionary;
    indirectObject(dictionary.get(), 11, 0);
    dictionary = resolveObject(cache, dictionary.get());
    if (typeObject(dictionary.get()) == ObjectType::dictionary) {
        deliverInlineImage(cache, dictionary.get(), std::as_bytes(std::span(data)), Colour(),
                           false);
    }
}

} // namespace

void fuzzImage(Bytes input) {
    const std::string text(static_cast<const char*>(static_cast<const void*>(input.data())),
                           input.size());
    const std::size_t at = text.find(border);
    if (at == std::string::npos) {
        return;
    }
    const std::string_view data = std::string_view(text).substr(at + border.size());
    const std::string file = fileOf(std::string_view(text).substr(0, at), data).bytes();
    PluginHost host(std::as_bytes(std::span(file)), Profile::extended, 1);
    host.look([&](DocumentCache& cache) {
        std::vector<HostProcedure> table(callbacks, callbacks + slotCount);
        const HostProcedure* const outer = std::exchange(callbacks, table.data());
        const test::ImageTaker taker(table, false);
        const Exception code = guarded([&] { deliverBoth(cache, data); });
        callbacks = outer;
        require(taker.total <= 2 * budget::imageBytes);
        std::ranges::for_each(taker.images, check);
        raiseException(code);
    });
}

} // namespace corvane::fuzz
