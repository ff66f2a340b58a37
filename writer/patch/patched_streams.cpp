#include "writer/patch/patched_streams.h"

#include "filters/coding/deflate.h"
#include "objects/identity.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/syntax/stream/stream_chain.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/extension.h"
#include "writer/crypt/sealed.h"
#include "writer/crypt/sealed_output.h"
#include "writer/page/needed_version.h"
#include "writer/page/stream_object.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

class Divider {
public:
    Divider(ContentPatches& content, std::span<const std::uint32_t> starts)
        : content_(content), starts_(starts) {}

    /// All in the one stream that there is.
    std::vector<PatchedStream> join() {
        PatchedStream stream{.base = 0, .patches = {}, .text = {}};
        if (!content_.before.empty()) {
            stream.patches.push_back({{0, 0}, std::move(content_.before)});
        }
        std::ranges::move(content_.patches, std::back_inserter(stream.patches));
        if (!content_.behind.empty()) {
            stream.patches.push_back({{starts_[1], starts_[1]}, "\n" + content_.behind});
        }
        number(stream);
        streams_.push_back(std::move(stream));
        return std::move(streams_);
    }

    std::vector<PatchedStream> divide() {
        addNew(std::move(content_.before));
        const std::size_t count = starts_.size() - 1;
        for (std::size_t i = 0; i < count; ++i) {
            addInsertions(starts_[i]);
            addStream(i);
        }
        addInsertions(starts_[count]);
        // Some readers put streams together as they are, and a comment may end the last.
        addNew(content_.behind.empty() ? std::string() : "\n" + content_.behind);
        return std::move(streams_);
    }

private:
    Patch* next() { return next_ < content_.patches.size() ? &content_.patches[next_] : nullptr; }

    void addNew(std::string text) {
        if (!text.empty()) {
            streams_.push_back({.base = {}, .patches = {}, .text = std::move(text)});
            streams_.back().number = nextIdentity();
        }
    }

    /// What is new at the border of two streams gets a stream of its own.
    void addInsertions(std::uint32_t border) {
        std::string text;
        while (next() != nullptr && next()->range.start == border && next()->range.end == border) {
            text += next()->text;
            ++next_;
        }
        addNew(std::move(text));
    }

    void addStream(std::size_t index) {
        PatchedStream stream{.base = index, .patches = {}, .text = {}};
        const std::uint32_t start = starts_[index];
        const std::uint32_t end = starts_[index + 1];
        if (rest_.start < rest_.end && rest_.start < end) {
            addPiece(stream, start, end, rest_, {});
        }
        while (next() != nullptr && next()->range.start < end) {
            addPiece(stream, start, end, next()->range, std::move(next()->text));
            ++next_;
        }
        number(stream);
        streams_.push_back(std::move(stream));
    }

    static void number(PatchedStream& stream) {
        if (!stream.patches.empty()) {
            stream.number = nextIdentity();
            stream.length = nextIdentity();
        }
    }

    /// The part of a patch that lies in a stream; the rest is left for the next one.
    void addPiece(PatchedStream& stream, std::uint32_t start, std::uint32_t end, ByteRange range,
                  std::string text) {
        const std::uint32_t last = std::min(range.end, end);
        stream.patches.push_back({{range.start - start, last - start}, std::move(text)});
        rest_ = {last, range.end};
    }

    ContentPatches& content_;
    std::span<const std::uint32_t> starts_;
    std::size_t next_ = 0;
    ByteRange rest_; // of a patch that goes on in the next stream
    std::vector<PatchedStream> streams_;
};

void put(Filter& to, std::string_view text) {
    writeFilter(to, std::as_bytes(std::span(text)));
}

bool wantsPlain() {
    const auto extension = knownExtension();
    return extension && extension->plainContent;
}

void putPatched(Filter& to, const PatchedStream& stream, std::string_view former) {
    std::size_t from = 0;
    for (const Patch& patch : stream.patches) {
        put(to, former.substr(from, patch.range.start - from));
        put(to, patch.text);
        from = patch.range.end;
    }
    put(to, former.substr(from));
}

class StreamWriter {
public:
    StreamWriter(DocumentCache& cache, const PageBase& base, ContentBytes& bytes)
        : cache_(cache), output_(*cache.output), base_(base), bytes_(bytes) {}

    WrittenStreams write(std::span<const PatchedStream> streams) {
        for (const PatchedStream& stream : streams) {
            if (!stream.base) {
                writeNew(stream);
            } else if (!stream.patches.empty()) {
                writePatched(stream);
            } else {
                const BaseStream& same = base_.streams[*stream.base];
                written_.parts.push_back({same.number, same.generation, {}});
            }
        }
        return std::move(written_);
    }

private:
    /// Begins the object and its dictionary.
    void begin(std::int32_t number, bool deflates) {
        written_.parts.push_back({number, 0, markFilter(output_)});
        touchXRef(output_, number, 0);
        objectOutput(output_, number, 0);
        stringOutput(output_, "<<\r");
        if (deflates) {
            needVersion(Feature::flate);
            stringOutput(output_, "/Filter /FlateDecode\r");
        }
    }

    void writeNew(const PatchedStream& stream) {
        const std::string compressed = wantsPlain() ? std::string() : deflated(stream.text);
        const bool deflates = !wantsPlain() && compressed.size() < stream.text.size();
        begin(stream.number, deflates);
        written_.bytes += finishStream(cache_, stream.number, deflates ? compressed : stream.text);
    }

    void writePatched(const PatchedStream& stream) {
        const bool compresses = compressesPatched(cache_, base_.streams[*stream.base].stream.get());
        begin(stream.number, compresses);
        written_.bytes += finishPatched(cache_, stream, bytes_.stream(*stream.base), compresses);
    }

    DocumentCache& cache_;
    Filter& output_;
    const PageBase& base_;
    ContentBytes& bytes_;
    WrittenStreams written_;
};

} // namespace

bool compressesPatched(DocumentCache& cache, const Object& former) {
    const Object& dictionary = elementsObject(former)[0];
    return !wantsPlain() && typeObject(findEntry(cache, dictionary, "Filter")) != ObjectType::null;
}

/// The former bytes may be many: they are not gathered with the patches, so their length is known
/// when they are written.
std::int64_t finishPatched(DocumentCache& cache, const PatchedStream& stream,
                           std::string_view former, bool compresses) {
    Filter& output = *cache.output;
    stringOutput(output, "/Length ");
    referenceOutput(output, stream.length, 0);
    stringOutput(output, ">>\rstream\r");
    const std::int32_t start = markFilter(output);
    Chain data(&output);
    linkSeal(cache, data, newStreamCipher(cache), {stream.number, 0});
    if (compresses) {
        data.link(setupDeflate());
    }
    putPatched(*data.top(), stream, former);
    data.unlink();
    const std::int32_t length = markFilter(output) - start;
    stringOutput(output, "\rendstream\rendobj\r");
    writeLength(cache, stream.length, length);
    return length;
}

std::vector<PatchedStream> divideContent(ContentPatch& page, const PageBase& base) {
    const bool isOne = base.streams.size() == 1 && !page.isDamaged &&
                       streamLength(base.streams.front().stream.get()) <= budget::joinedStreamBytes;
    Divider divider(page.content, page.bytes.starts());
    return isOne ? divider.join() : divider.divide();
}

PatchedStream joinContent(ContentPatch& form) {
    PatchedStream stream = std::move(Divider(form.content, form.bytes.starts()).join().front());
    if (stream.patches.empty()) { // a copy with other resources
        stream.number = nextIdentity();
        stream.length = nextIdentity();
    }
    return stream;
}

WrittenStreams writeStreams(DocumentCache& cache, const PageBase& base, ContentBytes& bytes,
                            std::span<const PatchedStream> streams) {
    return StreamWriter(cache, base, bytes).write(streams);
}

} // namespace corvane
