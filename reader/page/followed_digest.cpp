#include "reader/page/followed_digest.h"

#include "reader/syntax/stream/stream_chain.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

namespace corvane {

namespace {

// What stands for something that is not fed itself; no types of objects.
constexpr std::int64_t again = -1; ///< a stream that was fed before
constexpr std::int64_t unreadable = -2;
constexpr std::int64_t otherPage = -3;
constexpr std::int64_t unread = -4; ///< data past the budget
constexpr std::int64_t layer = -5;

bool isName(const Object& object, std::string_view name) {
    return typeObject(object) == ObjectType::literal && literalObject(object) == name;
}

bool isOfType(const Object& dictionary, std::initializer_list<std::string_view> types) {
    const std::span<Object> entries = elementsObject(dictionary);
    for (std::size_t i = 0; i + 1 < entries.size(); i += 2) {
        if (isName(entries[i], "Type") && std::ranges::any_of(types, [&](std::string_view type) {
                return isName(entries[i + 1], type);
            })) {
            return true;
        }
    }
    return false;
}

/// Whether a dictionary is a page, or a node of the tree of pages: no page is drawn from another.
bool isPage(const Object& dictionary) {
    return isOfType(dictionary, {"Page", "Pages"});
}

} // namespace

bool feedAgain(DigestFeed& feed, FedStreams& fed, const Object& stream) {
    const std::optional<std::int64_t> place = fed.place(stream);
    if (place) {
        feed.number(again);
        feed.number(*place);
    }
    return place.has_value();
}

Followed::Followed(DigestFeed& feed, DocumentCache& cache, FedStreams& fed, bool readsLayers)
    : feed_(feed), cache_(cache), fed_(fed), end_(feed.bytes() + budget::digestBytes),
      readsLayers_(readsLayers) {}

void Followed::follow() {
    for (std::size_t i = 0; i < met_.size() && feed_.bytes() < end_; ++i) {
        ObjectOwner object;
        if (tryResolveObject(cache_, met_.reference(i), object) != Exception::none) {
            feed_.number(unreadable);
        } else if (typeObject(object.get()) == ObjectType::stream) {
            stream(object.get());
            streams_.push_back(std::move(object));
        } else if (typeObject(object.get()) == ObjectType::dictionary && isPage(object.get())) {
            feed_.number(otherPage);
        } else if (!readsLayers_ && typeObject(object.get()) == ObjectType::dictionary &&
                   isOfType(object.get(), {"OCG"})) {
            feed_.number(layer);
        } else {
            feed_.object(object.get(), &met_);
        }
    }
}

void Followed::stream(const Object& stream) {
    feed_.streamEntries(cache_, stream, met_);
    if (!feedAgain(feed_, fed_, stream)) {
        data(stream);
    }
}

void Followed::data(const Object& stream) {
    if (streamLength(stream) <= end_ - feed_.bytes()) {
        feed_.data(cache_, stream);
    } else {
        feed_.number(unread);
        feed_.number(streamLength(stream));
    }
}

} // namespace corvane
