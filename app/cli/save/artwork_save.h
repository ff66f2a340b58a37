// A save, step by step: the artwork is read, then the file is locked, then the page is written.
#pragma once

#include "app/artwork/document.h"
#include "app/artwork/provenance.h"
#include "app/cli/files/save_place.h"
#include "app/cli/options/arguments.h"
#include "app/cli/report/report.h"
#include "app/svg/reader.h"

#include <cstdint>

namespace corvane {

class ArtworkSave {
public:
    /// Reads the artwork that `arguments` name. They take page and profile from it where the person
    /// named none. Both arguments outlive the object. Raises `Failure`, as `run` does.
    /// `opened` is the page that the artwork was opened from, which counts where the artwork does
    /// not say it any more: some editors drop that.
    ArtworkSave(Arguments& arguments, Report& report, const OpenedPage* opened = nullptr);

    /// Saves at `place`. The report holds what became of it.
    void run(SavePlace& place);

    const Page& page() const { return document_.page(); }

private:
    Arguments& arguments_;
    Report& report_;
    Document document_;
    SvgReading reading_;
    std::int32_t wantedPage_ = 0;
};

} // namespace corvane
