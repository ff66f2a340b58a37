// The classic text that slots are working on: open runs, and the text object that is being walked.
#pragma once

#include "app/artwork/classic/text_stream.h"
#include "app/artwork/classic/text_walk.h"

#include <map>
#include <optional>

namespace corvane {

class OpenText {
public:
    /// A handle that names the run until it ends. Throws `ArtworkError` where the text has runs.
    RunHandle open(Document&, Art text);
    /// Throws `ArtworkError` where no run is open by that handle, as all below.
    TextStream& stream(RunHandle);
    void close(RunHandle);

    /// Of the text object. Laid out anew when another one is asked for, or `forget` was called.
    const TextWalk& walk(const Document&, Art text);
    void forget() { walk_.reset(); }

    struct RunPlace {
        const TextWalk& walk;
        const TextWalk::Run& run;
        Art text;
    };
    struct LinePlace {
        const TextWalk& walk;
        const TextWalk::Line& line;
    };
    RunPlace run(const Document&, RunHandle);
    LinePlace line(const Document&, LineHandle);

    // Handles by place in the walk; null past the last. A text object without runs has no line.
    static RunHandle runAt(const TextWalk&, std::size_t place);
    static LineHandle lineAt(const TextWalk&, std::size_t place);
    /// The place behind that of the handle.
    static std::size_t placeBehind(RunHandle handle);
    static std::size_t placeBehind(LineHandle handle);

private:
    std::map<Art, TextStream> streams_;
    std::optional<TextWalk> walk_;
};

} // namespace corvane
