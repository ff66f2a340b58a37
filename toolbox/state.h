// The toolbox's whole state: one object, which a test can replace.
#pragma once

#include "host/extension.h"
#include "host/front.h"
#include "host/zone.h"
#include "toolbox/directories.h"
#include "toolbox/file_table.h"
#include "toolbox/resource_files.h"
#include "toolbox/zone.h"

#include <cstdint>

namespace corvane {

/// The zone's limit in bytes: CORVANE_ZONE_MB (1 to 4,000) or 1 GiB.
TOOLBOX_CALL std::int64_t defaultZoneLimit();

struct ToolboxState {
    explicit ToolboxState(std::int64_t zoneLimit = defaultZoneLimit()) : zone(zoneLimit) {}

    Zone zone;
    Directories directories;
    FileTable files;
    ResourceFiles resources;
    const HostExtension* extension = nullptr;
    DialogFront* front = nullptr;
};

/// The state that the calls work on: the innermost scope's, else the process's own, which is made
/// when first asked for and never destroyed.
TOOLBOX_CALL ToolboxState& toolboxState();

/// Puts a fresh state in force for its lifetime, `zoneBase` included. Scopes nest.
class TOOLBOX_CALL ToolboxScope {
public:
    explicit ToolboxScope(std::int64_t zoneLimit = defaultZoneLimit());
    ~ToolboxScope();
    ToolboxScope(const ToolboxScope&) = delete;
    ToolboxScope& operator=(const ToolboxScope&) = delete;

    ToolboxState& state() { return state_; }

private:
    ToolboxState state_;
    ToolboxState* outer_;
};

} // namespace corvane
