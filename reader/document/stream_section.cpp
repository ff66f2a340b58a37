#include "reader/document/stream_section.h"

#include "reader/document/entries.h"
#include "reader/syntax/file_scope.h"
#include "reader/syntax/indirect.h"
#include "reader/syntax/stream_chain.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>
#include <vector>

namespace corvane {

namespace {

/// Bytes of a field, at most: no value needs more.
constexpr std::int32_t widestField = 8;

/// Fields of an entry, at most; three have a meaning.
constexpr std::size_t mostFields = 16;

/// Entries read at a time.
constexpr std::size_t blockEntries = 1024;

enum EntryType : std::int32_t { inFile = 1, inObjectStream = 2 };

std::int32_t integerAt(DocumentCache& cache, const Object& array, std::size_t index) {
    return integerObject(resolveObject(cache, elementsObject(array)[index]).get());
}

/// Where the fields of an entry are.
class EntryForm {
public:
    EntryForm(DocumentCache& cache, const Object& section) {
        const ObjectOwner stated = lookupObject(cache, section, "W");
        if (typeObject(stated.get()) != ObjectType::array) {
            failException(Exception::structure);
        }
        const std::size_t count = elementsObject(stated.get()).size();
        if (count < widths_.size() || count > mostFields) {
            failException(Exception::structure);
        }
        for (std::size_t i = 0; i < count; ++i) {
            const std::int32_t width = integerAt(cache, stated.get(), i);
            if (width < 0 || width > widestField) {
                failException(Exception::structure);
            }
            if (i < widths_.size()) {
                widths_[i] = static_cast<std::size_t>(width);
            }
            length_ += static_cast<std::size_t>(width);
        }
        if (length_ == 0) {
            failException(Exception::structure);
        }
    }

    std::size_t length() const { return length_; }

    SectionEntry entry(std::span<const std::byte> bytes) const {
        const std::int32_t type = widths_[0] == 0 ? std::int32_t{inFile} : take(bytes, 0);
        const std::int32_t second = take(bytes, 1);
        const std::int32_t third = take(bytes, 2);
        if (type == inFile) {
            return {ObjectPlace::atOffset(second), third, true};
        }
        const bool isMember =
            type == inObjectStream && second > 0 && second <= budget::objectNumber;
        return isMember ? SectionEntry{ObjectPlace::inStream(second, third), 0, true}
                        : SectionEntry();
    }

private:
    /// Takes a field off the front, high byte first; what no `int32_t` holds is its largest.
    std::int32_t take(std::span<const std::byte>& bytes, std::size_t field) const {
        std::uint64_t value = 0;
        for (const std::byte byte : bytes.first(widths_[field])) {
            value = value << 8 | static_cast<std::uint64_t>(byte);
        }
        bytes = bytes.subspan(widths_[field]);
        return static_cast<std::int32_t>(std::min<std::uint64_t>(value, INT32_MAX));
    }

    std::array<std::size_t, 3> widths_{};
    std::size_t length_ = 0;
};

/// First number and count.
using Subsection = std::pair<std::int32_t, std::int32_t>;

std::vector<Subsection> subsections(DocumentCache& cache, const Object& section) {
    const ObjectOwner index = lookupObject(cache, section, "Index");
    std::vector<Subsection> found;
    if (typeObject(index.get()) == ObjectType::null) {
        found.emplace_back(0, integerObject(lookupObject(cache, section, "Size").get()));
    } else if (typeObject(index.get()) == ObjectType::array) {
        const std::size_t count = elementsObject(index.get()).size();
        found.reserve(count / 2);
        for (std::size_t i = 0; i + 1 < count; i += 2) {
            found.emplace_back(integerAt(cache, index.get(), i),
                               integerAt(cache, index.get(), i + 1));
        }
    } else {
        failException(Exception::structure);
    }
    return found;
}

/// Hands out entries one by one, read in blocks.
class EntryBytes {
public:
    EntryBytes(DocumentCache& cache, const Object& section, std::size_t length)
        : chain_(cache, section), block_(length * blockEntries), length_(length) {}

    /// The next entry; empty behind the last whole one.
    std::span<const std::byte> next() {
        if (rest_.size() < length_) {
            const std::size_t count = readFilter(chain_.top(), block_);
            rest_ = std::span(block_).first(count);
        }
        if (rest_.size() < length_) {
            return {};
        }
        const std::span<const std::byte> entry = rest_.first(length_);
        rest_ = rest_.subspan(length_);
        return entry;
    }

private:
    StreamChain chain_;
    std::vector<std::byte> block_;
    std::span<const std::byte> rest_;
    std::size_t length_;
};

/// As in a table, there may be fewer entries than are said.
void readEntries(DocumentCache& cache, const Object& section) {
    const EntryForm form(cache, section);
    EntryBytes bytes(cache, section, form.length());
    for (const auto& [first, count] : subsections(cache, section)) {
        for (std::int32_t i = 0; i < count; ++i) {
            const std::span<const std::byte> entry = bytes.next();
            if (entry.empty()) {
                return;
            }
            if (++cache.work.streamedEntries > budget::streamedEntries) {
                failException(Exception::limit);
            }
            const std::int64_t number = std::int64_t{first} + i;
            noteEntry(cache, static_cast<std::int32_t>(std::min<std::int64_t>(number, INT32_MAX)),
                      form.entry(entry));
        }
    }
}

std::int32_t behindStartxref(DocumentCache& cache, std::int32_t position) {
    const std::int32_t offset = position - cache.headerOffset;
    if (position >= cache.fileLength) {
        return position;
    }
    FileScope scope(cache, offset);
    const TokenType type = scope.tokens().readToken();
    const bool follows = type == TokenType::keyword && scope.tokens().bytes() == "startxref";
    return follows ? scope.tokens().mark() : position;
}

} // namespace

StreamSection readStreamSection(DocumentCache& cache, std::int32_t offset) {
    const FoundObject found = objectAt(cache, offset);
    const Object& section = found.object.get();
    if (typeObject(section) != ObjectType::stream) {
        failException(Exception::structure);
    }
    const Object& dictionary = elementsObject(section)[0];
    refuseEncrypted(cache, dictionary);
    readEntries(cache, section);
    retainObject(dictionary);
    return {.trailer = ObjectOwner(dictionary), .end = behindStartxref(cache, found.end)};
}

} // namespace corvane
