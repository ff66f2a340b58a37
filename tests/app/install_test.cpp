// What `cmake --install` makes is whole, and works wherever it is moved to.
#include "tests/support/process.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::holds;

test::Outcome shell(const std::string& command, const fs::path& folder) {
    test::Process process;
    process.words = {"/bin/sh", "-c", command};
    process.folder = folder;
    process.environment = {{"CORVANE_PLUGIN", ""}, {"LD_LIBRARY_PATH", ""}};
    return test::run(process);
}

TEST(InstalledTree, IsWholeAndCanBeMoved) {
    const test::TemporaryFolder folder;
    const fs::path top = folder.path();
    const auto installed = shell("DESTDIR='" + (top / "first").string() + "' cmake --install '" +
                                     test::buildFolder().string() + "' --prefix /usr/local",
                                 top);
    ASSERT_EQ(installed.status, 0) << installed.errors;
    fs::rename(top / "first/usr/local", top / "moved here");
    fs::create_symlink(top / "moved here/bin/corvane", top / "corvane");

    for (const char* name :
         {"man/man1/corvane.1.gz", "man/man5/corvane-svg.5.gz", "zsh/site-functions/_corvane",
          "bash-completion/completions/corvane", "fish/vendor_completions.d/corvane.fish",
          "applications/corvane.desktop", "icons/hicolor/scalable/apps/corvane.svg",
          "doc/corvane/README.md", "doc/corvane/docs/svg.md", "doc/corvane/examples/harbour.pdf"}) {
        EXPECT_TRUE(fs::exists(top / "moved here/share" / name)) << name;
    }
    const auto desktop = shell("desktop-file-validate 'moved here/share/applications/'*", top);
    EXPECT_EQ(desktop.status, 0) << desktop.output;

    // A double click on a link asks for the programs of its type.
    const auto ofLinks = shell("XDG_DATA_HOME=\"$PWD/moved here/share\"; export XDG_DATA_HOME; "
                               "update-mime-database \"$XDG_DATA_HOME/mime\" && "
                               "update-desktop-database \"$XDG_DATA_HOME/applications\" && "
                               "echo '{}' > a.pdfpage && gio info -a standard::content-type "
                               "a.pdfpage && gio mime application/x-pdf-page",
                               top);
    EXPECT_TRUE(holds(ofLinks.output, "content-type: application/x-pdf-page"))
        << ofLinks.output << ofLinks.errors;
    EXPECT_TRUE(holds(ofLinks.output, "corvane-page.desktop")) << ofLinks.output << ofLinks.errors;

    // Within quotes a shell reads what Exec says as desktops do.
    const auto launched = shell(
        R"sh(PATH=$PWD:$PATH
        entry='moved here/share/applications/corvane.desktop'
        eval "$(sed -n 's/^Exec=//p' "$entry" | sed 's/\\\\/\\/g; s/%f/"no file.pdf"/')" </dev/null)sh",
        top);
    EXPECT_TRUE(holds(launched.errors, "corvane: no file.pdf: error")) << launched.errors;
    EXPECT_EQ(launched.output, "Enter closes this window. ");

    const auto libraries = shell("LD_TRACE_LOADED_OBJECTS=1 ./corvane", top);
    EXPECT_TRUE(holds(libraries.output, "moved here/bin/../lib")) << libraries.output;
    EXPECT_FALSE(holds(libraries.output, test::buildFolder().string())) << libraries.output;

    const auto used = shell("cp 'moved here/share/doc/corvane/examples/harbour.pdf' a.pdf && "
                            "./corvane open a.pdf -o a.svg --quiet && sed -i s/f27326/f2e8c9/ "
                            "a.svg && ./corvane save a.svg a.pdf && ./corvane revert a.pdf && "
                            "cmp a.pdf 'moved here/share/doc/corvane/examples/harbour.pdf'",
                            top);
    EXPECT_EQ(used.status, 0) << used.output << used.errors;

    if (fs::exists(test::buildFolder() / "corvane-web.so")) {
        const auto served = shell("./corvane serve a.pdf --no-browser >told & "
                                  "until test -s told; do sleep .05; done; kill $!; wait; cat told",
                                  top);
        EXPECT_TRUE(holds(served.output, "http://127.0.0.1:")) << served.errors;
    }
    const auto lacking =
        shell("find 'moved here' -name corvane-web.so -delete; ./corvane serve a.pdf", top);
    EXPECT_EQ(lacking.status, 1);
    EXPECT_TRUE(holds(lacking.errors, "built without the page")) << lacking.errors;
}

/// People call the program in folders that others fill.
TEST(BuiltTree, TakesNoLibraryFromTheCurrentFolder) {
    const test::TemporaryFolder folder;
    const std::string program = (test::buildFolder() / "corvane").string();
    const auto used =
        shell("for library in libstdc++.so.6 libpugixml.so.1 libz.so.1 liblcms2.so.2 "
              "libcorvane-toolbox.so.0; do echo no library > $library; done; "
              "echo '<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"/>' "
              "> a.svg && '" +
                  program + "' save a.svg a.pdf",
              folder.path());
    EXPECT_EQ(used.status, 0) << used.errors;
    EXPECT_TRUE(fs::exists(folder.path() / "a.pdf"));
}

} // namespace
} // namespace corvane
