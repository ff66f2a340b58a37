// The host's side of the callback table: what the plug-in may do with the document at hand.
#pragma once

#include "app/artwork/classic/open_text.h"
#include "app/artwork/document.h"
#include "app/artwork/paint/tiling.h"
#include "host/callbacks.h"
#include "host/zone.h"

#include <cstdint>
#include <string>
#include <vector>

namespace corvane {

/// A format that the plug-in can read or write, by slot `addFileFormat`.
struct FileFormat {
    std::string name;
    std::uint32_t type = 0; ///< four characters
    std::int32_t options = 0;
};

/// What the slots work on while this object lives; slots carry no context of their own. Scopes
/// nest: the inner one counts. Without a scope, every slot that can fail fails.
class CallbackScope {
public:
    /// `wantsToStop` tells whether the person does; null: never.
    explicit CallbackScope(Document& document, bool (*wantsToStop)() = nullptr);
    ~CallbackScope();
    CallbackScope(const CallbackScope&) = delete;
    CallbackScope& operator=(const CallbackScope&) = delete;

    /// Throws `ArtworkError` where there is none.
    static CallbackScope& current();

    Document& document() { return *document_; }
    bool aborted() const { return wantsToStop_ != nullptr && wantsToStop_(); }
    Tiling& tiling() { return tiling_; }
    OpenText& openText() { return openText_; }
    const std::vector<FileFormat>& formats() const { return formats_; }
    void addFormat(FileFormat format);

    /// Why a slot failed the last time; empty where none has. The plug-in does not learn the
    /// reason.
    const std::string& failure() const { return failure_; }

    /// The scope in force, or null.
    static CallbackScope* inForce();
    void noteFailure(const char* reason) noexcept;

private:
    Document* document_;
    bool (*wantsToStop_)();
    CallbackScope* outer_;
    Tiling tiling_;
    OpenText openText_;
    std::vector<FileFormat> formats_;
    std::string failure_;
};

/// The table of all slots, in a block of the zone as the parameter block wants it.
class CallbackTable {
public:
    /// Throws `std::bad_alloc` where the zone is full.
    CallbackTable();
    ~CallbackTable() { DisposePtr(table_.as<std::byte>()); }
    CallbackTable(const CallbackTable&) = delete;
    CallbackTable& operator=(const CallbackTable&) = delete;

    Ref<HostProcedure> ref() const { return table_; }

private:
    Ref<HostProcedure> table_;
};

} // namespace corvane
