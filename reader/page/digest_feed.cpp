#include "reader/page/digest_feed.h"

#include "objects/referenced.h"
#include "objects/stack.h"
#include "reader/syntax/stream/stream_chain.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

/// Keys of what says nothing of how a thing is drawn: notes, and ways to other things. No resource
/// is called so.
constexpr std::array<std::string_view, 8> undrawnKeys = {
    "Parent",       "Annots",        "PieceInfo", "LastModified",
    "StructParent", "StructParents", "Metadata",  "Thumb"};

bool isUndrawn(const Object& key) {
    return typeObject(key) == ObjectType::literal &&
           std::ranges::find(undrawnKeys, literalObject(key)) != undrawnKeys.end();
}

/// The elements of a dictionary that count for what is drawn.
std::vector<Object> drawnEntries(std::span<const Object> entries) {
    std::vector<Object> drawn;
    drawn.reserve(entries.size());
    for (std::size_t i = 0; i + 1 < entries.size(); i += 2) {
        if (!isUndrawn(entries[i])) {
            drawn.insert(drawn.end(), {entries[i], entries[i + 1]});
        }
    }
    return drawn;
}

} // namespace

std::optional<std::int64_t> MetObjects::place(const Object& reference) {
    const auto [number, generation] = referenced(reference);
    const auto known = places_.find({number, generation});
    if (known != places_.end()) {
        return known->second;
    }
    if (references_.size() == budget::digestObjects) {
        return std::nullopt;
    }
    const auto place = static_cast<std::int64_t>(references_.size());
    places_.emplace(std::pair(number, generation), place);
    references_.push_back(sharedObject(reference));
    return place;
}

void DigestFeed::feed(std::span<const std::byte> bytes) {
    bytes_ += static_cast<std::int64_t>(bytes.size());
    digest_.feed(bytes);
}

void DigestFeed::number(std::int64_t number) {
    feed(std::as_bytes(std::span(&number, 1)));
}

void DigestFeed::text(std::string_view text) {
    number(static_cast<std::int64_t>(text.size()));
    feed(std::as_bytes(std::span(text)));
}

/// The last first, without recursion.
void DigestFeed::objects(std::vector<Object> pending, MetObjects* met) {
    while (!pending.empty()) {
        const Object object = pending.back();
        pending.pop_back();
        number(static_cast<std::int64_t>(object.type));
        switch (object.type) {
        case ObjectType::literal:
            text(literalObject(object));
            break;
        case ObjectType::text:
        case ObjectType::block: {
            const std::span<const std::byte> bytes =
                object.type == ObjectType::block ? blockObject(object)
                                                 : std::as_bytes(std::span(textObject(object)));
            number(static_cast<std::int64_t>(bytes.size()));
            feed(bytes);
            break;
        }
        case ObjectType::reference:
            if (const auto place = met != nullptr ? met->place(object) : std::nullopt) {
                number(*place);
                break;
            }
            [[fallthrough]];
        case ObjectType::array:
        case ObjectType::procedure:
        case ObjectType::dictionary:
        case ObjectType::stream: {
            const std::span<Object> held = elementsObject(object);
            std::vector<Object> drawn;
            std::span<const Object> elements = held;
            if (met != nullptr && object.type == ObjectType::dictionary) {
                drawn = drawnEntries(held);
                elements = drawn;
            }
            number(static_cast<std::int64_t>(elements.size()));
            pending.insert(pending.end(), elements.rbegin(), elements.rend());
            break;
        }
        default:
            number(dataObject(object));
        }
    }
}

void DigestFeed::object(const Object& object, MetObjects* met) {
    objects({object}, met);
}

void DigestFeed::streamEntries(DocumentCache& cache, const Object& stream, MetObjects& met) {
    const Object& dictionary = elementsObject(stream)[0];
    const auto length = static_cast<std::int32_t>(streamLength(stream));
    ObjectOwner stated;
    const bool isRight = tryResolveObject(cache, findEntry(cache, dictionary, "Length"), stated) ==
                             Exception::none &&
                         typeObject(stated.get()) == ObjectType::integer &&
                         integerObject(stated.get()) == length;
    if (isRight) {
        return object(dictionary, &met);
    }
    std::vector<Object> mended = drawnEntries(elementsObject(dictionary));
    pushLiteral("Length");
    const ObjectOwner key(popStack());
    auto place = mended.begin();
    while (place != mended.end() && !equalObject(*place, key.get())) {
        place += 2;
    }
    if (place == mended.end()) {
        place = mended.insert(place, {key.get(), key.get()});
    }
    shallowObject(*std::next(place), ObjectType::integer, length);
    number(static_cast<std::int64_t>(ObjectType::dictionary));
    number(static_cast<std::int64_t>(mended.size()));
    std::ranges::reverse(mended);
    objects(std::move(mended), &met);
}

void DigestFeed::entries(std::vector<Object> entries) {
    std::ranges::reverse(entries);
    number(static_cast<std::int64_t>(entries.size()));
    objects(std::move(entries), nullptr);
}

void DigestFeed::data(DocumentCache& cache, const Object& stream) {
    number(streamLength(stream));
    const Chain chain = rawStream(cache, stream);
    std::array<std::byte, 16384> buffer;
    while (const std::size_t count = readFilter(*chain.top(), buffer)) {
        feed(std::span(buffer).first(count));
    }
}

} // namespace corvane
