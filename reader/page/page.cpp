// The page in use: its dictionary and what it inherits.
#include "objects/identity.h"
#include "reader/page/page_tree.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <span>

namespace corvane {

namespace {

/// US Letter: what readers take for a page without any box.
constexpr Box usualBox{0, 0, 612, 792};

bool isMissing(const ObjectOwner& object) {
    return typeObject(object.get()) == ObjectType::null ||
           typeObject(object.get()) == ObjectType::empty;
}

/// Something that a page inherits, by its key.
using Inherited = std::pair<const char*, ObjectOwner*>;

/// Fills what is still missing from `node` and from those above it; the nearest wins.
void fillFrom(DocumentCache& cache, ObjectOwner node, std::span<const Inherited> wanted) {
    for (std::int32_t depth = 0; typeObject(node.get()) == ObjectType::dictionary; ++depth) {
        if (depth > budget::pageTreeDepth) {
            if (rules().skipsDamagedKids) {
                return; // the chain leads back to itself: all of it was seen
            }
            failException(Exception::structure);
        }
        for (const auto& [key, field] : wanted) {
            if (isMissing(*field)) {
                *field = lookupObject(cache, node.get(), key);
            }
        }
        node = lookupObject(cache, node.get(), "Parent");
    }
}

void inherit(DocumentCache& cache, bool withResources) {
    const std::array fields = {
        Inherited{"CropBox", &cache.cropBox}, Inherited{"MediaBox", &cache.mediaBox},
        Inherited{"Rotate", &cache.rotate}, Inherited{"Resources", &cache.resources}};
    fillFrom(cache, sharedObject(cache.page.get()),
             std::span(fields).first(withResources ? fields.size() : fields.size() - 1));
}

void forgetPage(DocumentCache& cache) {
    for (ObjectOwner* field :
         {&cache.page, &cache.cropBox, &cache.mediaBox, &cache.rotate, &cache.resources}) {
        *field = ObjectOwner();
    }
    cache.pageNumber = 0;
    cache.work.pageBytes = 0;
    cache.work.imageStreamBytes = 0;
    cache.work.imageBytes = 0;
    cache.work.images = 0;
    cache.work.imageColours = StepMeter(budget::imageColours);
    cache.work.functionSamples = StepMeter(budget::pageFunctionSamples);
    cache.work.codecs = CodecClock();
}

ObjectOwner pageDictionary(DocumentCache& cache, const PageEntry& entry) {
    if (entry.number == 0) {
        return sharedObject(entry.direct.get());
    }
    ObjectOwner reference;
    indirectObject(reference.get(), entry.number, entry.generation);
    return resolveObject(cache, reference.get());
}

void usePage(DocumentCache& cache, std::int32_t number, bool withResources) {
    forgetPage(cache);
    walkPages(cache, number);
    if (number < 1 || number > std::ssize(cache.pages)) {
        failException(Exception::underflow);
    }
    cache.page = pageDictionary(cache, cache.pages[static_cast<std::size_t>(number - 1)]);
    cache.pageNumber = number;
    inherit(cache, withResources);
    if (isMissing(cache.mediaBox) && !rules().assumesMediaBox) {
        failException(Exception::structure);
    }
}

/// An integer; in the extended profile a real without a fraction too.
std::int32_t wholeDegrees(const Object& rotate) {
    if (rules().missingObjectIsNull && typeObject(rotate) == ObjectType::fixed &&
        fixedObject(rotate) % fixedOne == 0) {
        return fixedObject(rotate) / fixedOne;
    }
    return integerObject(rotate);
}

std::int32_t quarterTurns(const Object& rotate) {
    const std::int32_t degrees = wholeDegrees(rotate);
    if (degrees % 90 != 0) {
        failException(Exception::type);
    }
    return (degrees % 360 + 360) % 360;
}

/// What `read` takes from an entry of the page, or nothing where that cannot be and the profile
/// goes on without.
template <typename Read>
auto usable(DocumentCache& cache, const Read& read) {
    std::optional<decltype(read())> value;
    if (!rules().mendsObjects) {
        value = read();
    } else if (!attempted([&] { value = read(); })) {
        cache.mends.note(Mend::pageValue,
                         cache.pages[static_cast<std::size_t>(cache.pageNumber - 1)].number);
    }
    return value;
}

} // namespace

std::int32_t countCache(DocumentCache& cache) {
    walkPages(cache);
    return static_cast<std::int32_t>(cache.pages.size());
}

std::int32_t statedCount(DocumentCache& cache) {
    if (!rules().skipsDamagedKids) {
        return countCache(cache);
    }
    std::int32_t stated = 0;
    if (!cache.pagesWalked) {
        attempted([&] {
            const ObjectOwner catalog = lookupObject(cache, cache.trailer.get(), "Root");
            const ObjectOwner root = lookupObject(cache, catalog.get(), "Pages");
            stated = integerObject(lookupObject(cache, root.get(), "Count").get());
        });
    }
    // Every page but a repeated one is an object. One page is soon counted, and more are not
    // missed.
    const bool canBe = stated > 1 && stated >= std::ssize(cache.pages) && stated < lastIdentity();
    if (canBe) {
        return stated;
    }
    // Damage behind the pages that are wanted does not matter here.
    attempted([&] { walkPages(cache); });
    return static_cast<std::int32_t>(cache.pages.size());
}

std::int32_t placesCache(DocumentCache& cache) {
    if (!rules().skipsDamagedKids) {
        walkPages(cache);
    } else {
        attempted([&] { walkPages(cache, budget::comparedPages); });
    }
    const std::int32_t number = cache.pages[static_cast<std::size_t>(cache.pageNumber - 1)].number;
    return static_cast<std::int32_t>(std::ranges::count(cache.pages, number, &PageEntry::number));
}

void pageCache(DocumentCache& cache, std::int32_t number) {
    walkPages(cache, number);
    flushReference(*cache.references);
    usePage(cache, number, true);
}

ObjectOwner inheritedResources(DocumentCache& cache) {
    ObjectOwner resources;
    shallowObject(resources.get(), ObjectType::null, 0); // also where no node is above the page
    fillFrom(cache, lookupObject(cache, cache.page.get(), "Parent"),
             std::array{Inherited{"Resources", &resources}});
    return resources;
}

Box boxOf(DocumentCache& cache, const Object& array) {
    if (typeObject(array) != ObjectType::array || sizeObject(array) < 4) {
        failException(Exception::range);
    }
    std::array<double, 4> values{};
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = realNumber(resolveObject(cache, elementsObject(array)[i]).get());
    }
    const auto [x1, y1, x2, y2] = values;
    return {std::min(x1, x2), std::min(y1, y2), std::max(x1, x2), std::max(y1, y2)};
}

bool hasArea(const Box& box) {
    return box.right > box.left && box.top > box.bottom;
}

Box mediaCache(DocumentCache& cache) {
    if (isMissing(cache.mediaBox)) {
        return usualBox;
    }
    const Box box =
        usable(cache, [&] { return boxOf(cache, cache.mediaBox.get()); }).value_or(usualBox);
    return hasArea(box) || !rules().assumesMediaBox ? box : usualBox;
}

Box cropCache(DocumentCache& cache) {
    const Box media = mediaCache(cache);
    if (isMissing(cache.cropBox)) {
        return media;
    }
    const Box crop =
        usable(cache, [&] { return boxOf(cache, cache.cropBox.get()); }).value_or(media);
    const Box cut{std::max(crop.left, media.left), std::max(crop.bottom, media.bottom),
                  std::min(crop.right, media.right), std::min(crop.top, media.top)};
    return hasArea(cut) ? cut : media;
}

std::int32_t rotateCache(DocumentCache& cache) {
    if (isMissing(cache.rotate)) {
        return 0;
    }
    return usable(cache, [&] { return quarterTurns(cache.rotate.get()); }).value_or(0);
}

double userUnitCache(DocumentCache& cache) {
    const ObjectOwner unit = lookupObject(cache, cache.page.get(), "UserUnit");
    if (isMissing(unit)) {
        return 1.0;
    }
    const double value = usable(cache, [&] { return realNumber(unit.get()); }).value_or(1.0);
    return value > 0 && std::isfinite(value) ? value : 1.0;
}

PageFacts factsCache(DocumentCache& cache) {
    const PageEntry& entry = cache.pages[static_cast<std::size_t>(cache.pageNumber - 1)];
    return {.page = cache.pageNumber,
            .objectNumber = entry.number,
            .generation = entry.generation,
            .mediaBox = mediaCache(cache),
            .cropBox = cropCache(cache),
            .rotate = rotateCache(cache),
            .userUnit = userUnitCache(cache)};
}

PageFacts pageFactsCache(DocumentCache& cache, std::int32_t number,
                         const std::function<void()>& see) {
    usePage(cache, number, false);
    const PageFacts facts = factsCache(cache);
    if (see) {
        see();
    }
    forgetPage(cache);
    // What pages share stays cached; each page's own dictionary is not needed again.
    if (facts.objectNumber != 0) {
        forgetObject(cache, facts.objectNumber, facts.generation);
    }
    return facts;
}

} // namespace corvane
