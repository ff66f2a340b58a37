// Saving with a plug-in that acts a part.
#pragma once

#include "tests/app/cli/fake_program.h"

#include <string>

namespace corvane {

class FakeSave : public FakeProgram {
protected:
    /// Artwork of two paths, as `open` writes it, with more attributes of the root.
    std::string add(const std::string& name, const std::string& root,
                    const std::string& inside = "") const {
        return folder_.add(name, "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"612pt\" "
                                 "height=\"792pt\" viewBox=\"0 0 612 792\" " +
                                     root +
                                     "><path d=\"M0 0H9\" stroke=\"#000000\"/><path "
                                     "d=\"M0 0V9\" stroke=\"#000000\"/>" +
                                     inside + "</svg>\n");
    }

    const std::string old_ = "%PDF-1.4 of a kind";
    const std::string new_ = old_ + "page of 2 paths\n";
    /// Of the page that the plug-in has.
    const std::string root_ = "data-producer=\"corvane\" data-version=\"1\" data-file=\"in.pdf\" "
                              "data-page=\"3\" data-object=\"13 0\" "
                              "data-digest=\"0000000000001234\" data-media-box=\"0 0 612 792\" ";
};

} // namespace corvane
