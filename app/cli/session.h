// One PDF in the plug-in's hands: the calls of `main_entry`, in the order of a host.
#pragma once

#include "app/artwork/callbacks.h"
#include "app/artwork/document.h"
#include "app/cli/arguments.h"
#include "app/cli/listener.h"
#include "app/cli/plugin.h"
#include "app/cli/report.h"
#include "app/cli/zone_block.h"
#include "host/parameters.h"

#include <cstdint>

namespace corvane {

/// Every call raises `Failure` where the plug-in could not do it, or the person cancelled.
class Session {
public:
    /// What is read goes into `document`. All arguments outlive the session.
    Session(const Arguments& arguments, Report& report, Document& document);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Makes sure that this is our plug-in, lets it register, and that the file is one of its.
    void begin();

    void call(Selector selector);

    Listener& listener() { return listener_; }

private:
    std::uint32_t answer(Selector selector);
    Fault explained(Fault fault) const;

    std::int32_t wantedPage_;
    Report& report_;
    Plugin plugin_;
    Listener listener_;
    CallbackScope scope_;
    CallbackTable table_;
    ZoneBlock<FileSpecification> file_;
    ZoneBlock<ParameterBlock> block_;
};

} // namespace corvane
