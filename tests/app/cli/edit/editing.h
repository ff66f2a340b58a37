// The real program with editors that are scripts.
#pragma once

#include "tests/app/cli/saving.h"
#include "tests/support/pdf_builder.h"

#include <filesystem>
#include <string>
#include <vector>

namespace corvane {

class Editing : public Saving {
protected:
    void SetUp() override { std::filesystem::create_directory(temporary()); }

    /// An editor: its first argument is the artwork, and the test's folder its working directory.
    /// `saved LENGTH` waits until the PDF was as long and has a whole update more; `size` tells how
    /// long it is.
    std::string script(const std::string& name, const std::string& body) const {
        const std::string path = folder_.add(
            name, "#!/bin/sh\n"
                  "art=\"$1\"\n"
                  "size() { stat -c %s in.pdf; }\n"
                  "done_() { [ \"$(size)\" != \"$1\" ] && [ \"$(tail -c 6 in.pdf)\" = %%EOF ]; }\n"
                  "saved() { i=0; until done_ \"$1\"; do\n"
                  "    i=$((i+1)); [ $i -gt 400 ] && exit 9; sleep 0.05; done; }\n"
                  "recolour() { sed \"s/$1/$2/\" \"$art\" > changed; "
                  "cat changed > \"$art\"; }\n" +
                      body + "\n");
        namespace fs = std::filesystem;
        fs::permissions(path, fs::perms::owner_all);
        return path;
    }

    test::Process editing(const std::string& editor, std::vector<std::string> more = {}) const {
        more.insert(more.begin(), {"edit", "in.pdf", "--editor", editor});
        auto edit = process(std::move(more));
        edit.environment.emplace_back("TMPDIR", temporary());
        return edit;
    }

    test::Outcome edit(const std::string& body) const {
        return test::run(editing(script("editor", body)));
    }

    std::string temporary() const { return (folder_.path() / "tmp").string(); }

    /// Names of what was left in the folder for temporary files.
    std::vector<std::string> left() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(temporary())) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }

    const std::string pdf_ = test::PdfBuilder::onePage("1 0 0 rg 10 10 50 50 re f\n"
                                                       "0 0 1 rg 100 10 50 50 re f\n"
                                                       "0 0 0 rg 200 10 50 50 re f")
                                 .bytes();
    const std::string file_ = folder_.add("in.pdf", pdf_);
};

} // namespace corvane
