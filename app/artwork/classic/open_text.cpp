#include "app/artwork/classic/open_text.h"

#include "app/artwork/error.h"

namespace corvane {

namespace {

/// A handle holds the text object and a number: of a run or line in its walk, from 1, or this.
constexpr std::uint32_t openRun = 0xFFFFFFFF;

template <class Handle>
Handle makeHandle(Art text, std::size_t number) {
    return static_cast<Handle>(std::uint64_t{static_cast<std::uint32_t>(text)} << 32 | number);
}

template <class Handle>
Art artOf(Handle handle) {
    return static_cast<Art>(static_cast<std::uint64_t>(handle) >> 32);
}

template <class Handle>
std::uint32_t numberOf(Handle handle) {
    return static_cast<std::uint32_t>(static_cast<std::uint64_t>(handle));
}

template <class Places, class Handle>
const auto& placeAt(const Places& places, Handle handle) {
    const std::size_t number = numberOf(handle);
    if (number == 0 || number > places.size()) {
        throw ArtworkError("the text has no such run or line");
    }
    return places[number - 1];
}

} // namespace

RunHandle OpenText::open(Document& document, Art text) {
    const auto [at, isNew] = streams_.try_emplace(text, document, text);
    if (!isNew) {
        throw ArtworkError("the text has an open run already");
    }
    return makeHandle<RunHandle>(text, openRun);
}

TextStream& OpenText::stream(RunHandle handle) {
    const auto found = streams_.find(artOf(handle));
    if (numberOf(handle) != openRun || found == streams_.end()) {
        throw ArtworkError("there is no such open run");
    }
    return found->second;
}

void OpenText::close(RunHandle handle) {
    stream(handle).finish();
    streams_.erase(artOf(handle));
    forget();
}

const TextWalk& OpenText::walk(const Document& document, Art text) {
    if (!walk_ || walk_->text() != text) {
        walk_.reset();
        walk_.emplace(document, text);
    }
    return *walk_;
}

OpenText::RunPlace OpenText::run(const Document& document, RunHandle handle) {
    const TextWalk& laidOut = walk(document, artOf(handle));
    return {laidOut, placeAt(laidOut.runs(), handle), artOf(handle)};
}

OpenText::LinePlace OpenText::line(const Document& document, LineHandle handle) {
    const TextWalk& laidOut = walk(document, artOf(handle));
    return {laidOut, placeAt(laidOut.lines(), handle)};
}

RunHandle OpenText::runAt(const TextWalk& walk, std::size_t place) {
    return place < walk.runs().size() ? makeHandle<RunHandle>(walk.text(), place + 1)
                                      : RunHandle::null;
}

LineHandle OpenText::lineAt(const TextWalk& walk, std::size_t place) {
    return place < walk.lines().size() && !walk.runs().empty()
               ? makeHandle<LineHandle>(walk.text(), place + 1)
               : LineHandle::null;
}

std::size_t OpenText::placeBehind(RunHandle handle) {
    return numberOf(handle);
}

std::size_t OpenText::placeBehind(LineHandle handle) {
    return numberOf(handle);
}

} // namespace corvane
