// Any bytes as a file: its format is checked, its facts are asked for, and its first page is
// opened.
#include "fuzz/support/plugin_host.h"

namespace corvane::fuzz {

void fuzzDocument(Bytes input) {
    Choices choices(input);
    // The classic profile repairs nothing and is soon done with a damaged file.
    const Profile profile = choices.below(4) == 0 ? Profile::original : Profile::extended;
    PluginHost host(input, profile, 1);
    host.call(Selector::check);
    host.call(Selector::info);
    if (host.call(Selector::prepare) == 0 && host.call(Selector::go) == 0) {
        require(host.document().importFinished());
    }
}

} // namespace corvane::fuzz
