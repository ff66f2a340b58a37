// A host for fuzz targets: hands bytes to the plug-in as a file, with the real artwork behind the
// callback table.
#pragma once

#include "app/artwork/document.h"
#include "app/artwork/slots/callbacks.h"
#include "app/cli/zone_block.h"
#include "fuzz/targets.h"
#include "host/extension.h"
#include "host/parameters.h"
#include "reader/document/cache.h"
#include "toolbox/state.h"

#include <cstdint>
#include <functional>
#include <string>

namespace corvane::fuzz {

/// One document and one file, in a toolbox of their own.
class PluginHost {
public:
    /// Writes `file` to a place in memory. `page` from 1.
    PluginHost(Bytes file, Profile profile, std::int32_t page);
    ~PluginHost();
    PluginHost(const PluginHost&) = delete;
    PluginHost& operator=(const PluginHost&) = delete;

    /// What `main_entry` answers. Requires it to be one of its answers, and all that the call took
    /// to be given back.
    std::uint32_t call(Selector selector, Action action = Action::read);

    Document& document() { return document_; }
    const FileSpecification& file() const { return *file_; }
    /// What the last save told.
    const SavedFacts& saved() const { return saved_; }
    /// Whether saves go on where the person would be asked.
    void overwrite(bool overwrites) { extension_.overwrites = overwrites; }

    /// Whether saves mend the file.
    void mend(bool mends) { extension_.mends = mends; }

    /// Opens the file as the plug-in does, with the page in use. False where anything raised.
    bool look(const std::function<void(DocumentCache&)>& see);

    /// The file as it is now.
    static std::string fileBytes();

private:
    ToolboxScope toolbox_;
    HostExtension extension_;
    std::uint64_t identity_ = 0;
    SavedFacts saved_;
    Document document_;
    CallbackScope callbacks_;
    CallbackTable table_;
    ZoneBlock<FileSpecification> file_;
    ZoneBlock<ParameterBlock> block_;
};

} // namespace corvane::fuzz
