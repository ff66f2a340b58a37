#include "writer/update/update_file.h"

#include "filters/buffer.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

#include <span>
#include <utility>

namespace corvane {

UpdateFile::UpdateFile(DocumentCache& cache) : cache_(cache) {
    file_.link(setupStream(cache.volume, cache.fileName, "append"));
    start_ = markFilter(stream());
    if (rules().guardsFile && start_ != cache.wholeLength) {
        failException(Exception::fileChanged);
    }
    output_ = Chain(file_.top());
}

UpdateFile::~UpdateFile() {
    cache_.output = nullptr;
}

StreamFilter& UpdateFile::stream() {
    return static_cast<StreamFilter&>(*file_.top());
}

void UpdateFile::begin() {
    if (cache_.fileLength < cache_.wholeLength) {
        backupFile(stream().file, cache_.fileLength);
        start_ = seekFile(stream().file, cache_.fileLength);
    }
    output_.link(setupBuffer());
    FilterOwner update = setupUpdate(start_, cache_.headerOffset);
    update_ = static_cast<UpdateFilter*>(update.get());
    output_.link(std::move(update));
    cache_.output = output_.top();
}

void UpdateFile::finish(std::string_view end) {
    written_ = std::exchange(update_, nullptr)->count;
    cache_.output = nullptr;
    // What somebody else appended meanwhile is not written over.
    if (rules().guardsFile && lengthFile(stream().file) != markFilter(stream())) {
        failException(Exception::fileChanged);
    }
    output_.unlink();
    flushFile(stream().file);
    if (rules().guardsFile && lengthFile(stream().file) != length()) {
        failException(Exception::fileChanged);
    }
    if (length() + static_cast<std::int64_t>(end.size()) > INT32_MAX) {
        failException(rules().guardsFile ? Exception::fileTooLong : Exception::io);
    }
    written_ += static_cast<std::int64_t>(end.size());
    writeFilter(stream(), std::as_bytes(std::span(end)));
    flushFile(stream().file);
}

void UpdateFile::takeBack() {
    cache_.output = nullptr;
    update_ = nullptr;
    output_.abandon();
    guarded([&] {
        const std::int32_t now = lengthFile(stream().file);
        if (now > start_ && now <= markFilter(stream())) {
            backupFile(stream().file, start_);
            flushFile(stream().file);
        }
    });
    resetException();
}

void UpdateFile::close() {
    guarded([&] { file_.unlink(); });
    resetException();
}

} // namespace corvane
