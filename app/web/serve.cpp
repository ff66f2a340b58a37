#include "app/web/serve.h"

#include "app/cli/edit/editor_process.h"
#include "app/cli/messages.h"
#include "app/cli/programs/installed_program.h"
#include "app/web/http/gate.h"
#include "app/web/http/http_server.h"
#include "app/web/service.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <pthread.h>

namespace corvane {

namespace {

/// The signals that end the program wait until they are asked for. Threads that are started
/// meanwhile do not get them either.
class HeldSignals {
public:
    HeldSignals() {
        sigemptyset(&signals_);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
            struct sigaction action {};
            sigaction(signal, nullptr, &action);
            if (action.sa_handler != SIG_IGN) { // who started us so wants it ignored
                sigaddset(&signals_, signal);
            }
        }
        pthread_sigmask(SIG_BLOCK, &signals_, &former_);
    }
    ~HeldSignals() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

    /// Whether one came; waits for a second.
    bool await() const {
        const timespec second{1, 0};
        return sigtimedwait(&signals_, nullptr, &second) > 0;
    }

private:
    sigset_t signals_{};
    sigset_t former_{};
};

bool hasDesktop() {
    for (const char* const name : {"DISPLAY", "WAYLAND_DISPLAY"}) {
        const char* const value = std::getenv(name);
        if (value != nullptr && *value != '\0') {
            return true;
        }
    }
    return false;
}

/// None where there is no desktop, or nothing that opens addresses in it.
std::optional<EditorProcess> openBrowser(const Arguments& arguments, const std::string& address) {
    const std::string opener = installedProgram("xdg-open");
    if (!arguments.opensBrowser || !hasDesktop() || opener.empty()) {
        return std::nullopt;
    }
    std::optional<EditorProcess> process;
    static_cast<void>(faultOf([&] { process.emplace(std::vector<std::string>{opener, address}); }));
    return process;
}

void runUntilEnded(const ServeCall& call) {
    const Arguments& arguments = call.arguments;
    const HeldSignals signals;
    Service service(arguments, "/proc/self/exe");
    HttpServer server(arguments.port);
    Gate gate(server.port());
    server.start(gate, [&](const WebRequest& request) { return service.answer(request); });
    // The gate outlives the threads that ask it.
    const auto fault = faultOf([&] {
        call.tellAddress(gate.address());
        announce(arguments, "the page is at this address, for you alone; Ctrl-C ends it");
        auto browser = openBrowser(arguments, gate.addressForBrowser());
        do {
            if (browser) {
                browser->ended();
            }
            if (server.hasFailed()) {
                throw Failure(
                    {code::io, "the system gives the page no more connections; start it again"});
            }
            if (!arguments.stays && service.life().silence() > call.silence) {
                announce(arguments, "no page has been open for ten minutes; --stay goes on");
                break;
            }
        } while (!signals.await());
    });
    service.end();
    server.end();
    if (fault) {
        throw Failure(*fault);
    }
}

} // namespace

void serve(ServeCall& call) {
    call.fault = faultOf([&] { runUntilEnded(call); });
}

} // namespace corvane
