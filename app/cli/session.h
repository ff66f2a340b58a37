// One PDF in the plug-in's hands: the calls of `main_entry`, in the order of a host.
#pragma once

#include "app/artwork/document.h"
#include "app/artwork/slots/callbacks.h"
#include "app/cli/listener.h"
#include "app/cli/options/arguments.h"
#include "app/cli/plugin.h"
#include "app/cli/report/report.h"
#include "app/cli/zone_block.h"
#include "host/parameters.h"

#include <cstdint>
#include <string>

namespace corvane {

/// The file of a session: where it lies, and what is done with it.
struct SessionFile {
    std::string path;
    Action action = Action::read;
};

/// Every call raises `Failure` where the plug-in could not do it, or the person cancelled.
class Session {
public:
    /// Reads the file that `arguments` name. What is read goes into `document`, what is saved comes
    /// from it. All arguments outlive the session.
    Session(const Arguments& arguments, Report& report, Document& document);
    /// Works on `file`. Whether it can be read or changed is checked before.
    Session(const Arguments& arguments, Report& report, Document& document,
            const SessionFile& file);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Makes sure that this is our plug-in, lets it register, and has it check the format of the
    /// file.
    void begin();

    void call(Selector selector);

    Listener& listener() { return listener_; }

private:
    std::uint32_t answer(Selector selector);
    bool changesFile(Selector selector) const;
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
