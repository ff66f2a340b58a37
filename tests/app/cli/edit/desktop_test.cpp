// Which editor is taken, on a machine whose desktop says this or that.
#include "app/cli/edit/desktop_choice.h"
#include "app/cli/edit/words.h"
#include "tests/app/cli/edit/editing.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::holds;
using Words = std::vector<std::string>;

TEST(CommandWords, AreTakenApartWithoutAShell) {
    struct Row {
        const char* line;
        Words words;
    };
    for (const Row& row : {Row{"ink --wide  x", {"ink", "--wide", "x"}},
                           Row{"'my editor' \"a b\"c", {"my editor", "a bc"}},
                           Row{"a\\ b \"q\\\"q\\n\" ''", {"a b", "q\"q\\n", ""}},
                           Row{"e $(rm) ; x", {"e", "$(rm)", ";", "x"}}, Row{" \t", {}}}) {
        EXPECT_EQ(commandWords(row.line), row.words) << row.line;
    }
    EXPECT_FALSE(commandWords("a 'b"));
}

TEST(DesktopEntryWords, FollowTheSpecification) {
    struct Row {
        const char* exec;
        Words words; ///< empty: it cannot be used
    };
    const std::vector<Row> rows{
        {"/bin/sh %f", {"/bin/sh", "/a b.svg"}},
        {"/bin/sh --x=%F", {"/bin/sh", "--x=/a b.svg"}},
        {"/bin/sh %u", {"/bin/sh", "file:///a%20b.svg"}},
        {"/bin/sh \"a %f \\\"\\$\" %U", {"/bin/sh", "a %f \"$", "file:///a%20b.svg"}},
        {"/bin/sh %i %c %k %m 100%% %f",
         {"/bin/sh", "--icon", "pen", "Pen", "/p.desktop", "100%", "/a b.svg"}},
        {"/bin/sh", {}},
        {"/bin/sh %z %f", {}},
        {"/bin/sh \"%f", {}},
        {"/no/such/program %f", {}},
        {"/bin/sh %", {}},
    };
    for (const Row& row : rows) {
        const auto words = openingWords({"/p.desktop", "Pen", row.exec, "pen", {}}, "/a b.svg");
        EXPECT_EQ(words.value_or(Words()), row.words) << row.exec;
    }
}

class Desktop : public Editing {
protected:
    std::string folder(const std::string& name) const {
        fs::create_directories(folder_.path() / name);
        return (folder_.path() / name).string();
    }

    void entry(const std::string& path, const std::string& name, const std::string& more) const {
        folder(fs::path(path).parent_path());
        folder_.add(path, "# of a test\n[Desktop Entry]\nType=Application\nName=" + name +
                              "\nExec=/bin/sh %f\n" + more +
                              "\n[Desktop Action new]\nName=Other\nExec=/bin/false\n");
    }

    const std::string own_ = folder("own/applications");
    const std::string machine_ = folder("machine/applications");
    const DesktopFolders folders_{{folder("settings")}, {own_, machine_}, {"gnome"}};
};

TEST_F(Desktop, TheFirstThatCanDraw) {
    entry("machine/applications/web.desktop", "Web", "Categories=Network;WebBrowser;");
    entry("machine/applications/photos.desktop", "Photos", "Categories=Graphics;RasterGraphics;");
    entry("machine/applications/view.desktop", "View",
          "Categories=Graphics;VectorGraphics;Viewer;");
    entry("machine/applications/pen.desktop", "Pen", "Categories=Graphics;VectorGraphics;");
    entry("machine/applications/kde/brush.desktop", "Brush", "");
    entry("machine/applications/term.desktop", "Term", "Terminal=true");
    entry("machine/applications/gone.desktop", "Gone", "TryExec=/no/such");
    entry("machine/applications/off.desktop", "Off", "");
    entry("own/applications/off.desktop", "Off", "Hidden=true");
    struct Row {
        const char* list; ///< of the person, "mimeapps.list"
        const char* cache;
        const char* wanted;
    };
    const std::vector<Row> rows{
        {"[Default "
         "Applications]\nimage/svg+xml=web.desktop;view.desktop;photos.desktop;pen.desktop;",
         "", "Pen"},
        {"[Default Applications]\nimage/png=pen.desktop\nimage/svg+xml = kde-brush.desktop ;", "",
         "Brush"},
        {"[Default Applications]\nimage/svg+xml=term.desktop;gone.desktop;off.desktop;no.desktop;"
         "../pen.desktop\n[Added Associations]\nimage/svg+xml=pen.desktop",
         "", "Pen"},
        {"[Removed Associations]\nimage/svg+xml=pen.desktop", "pen.desktop;kde-brush.desktop;",
         "Brush"},
        {"", "web.desktop;pen.desktop;", "Pen"},
        {"nonsense\n=\n[", "web.desktop", nullptr},
    };
    for (const Row& row : rows) {
        folder_.add("settings/mimeapps.list", row.list);
        folder_.add("machine/applications/mimeinfo.cache",
                    "[MIME Cache]\nimage/svg+xml=" + std::string(row.cache) + "\n");
        const auto chosen = chosenForSvg(folders_);
        EXPECT_EQ(chosen ? chosen->name : "none", row.wanted != nullptr ? row.wanted : "none")
            << row.list;
    }
    folder_.add("settings/gnome-mimeapps.list",
                "[Default Applications]\nimage/svg+xml=kde-brush.desktop");
    folder_.add("settings/mimeapps.list", rows[0].list);
    EXPECT_EQ(chosenForSvg(folders_)->name, "Brush") << "the desktop's own list counts first";
}

TEST_F(Desktop, TheProgramAsksInThisOrder) {
    const std::string pen = script("pen", "echo pen > who; recolour ff0000 00ff00");
    const std::string own = script("mine", "echo mine $2 > who; recolour ff0000 00ff00");
    folder_.add("own/applications/pen.desktop",
                "[Desktop Entry]\nType=Application\nName=Pen\nExec=" + pen + " %f\n");
    folder_.add("settings/mimeapps.list", "[Default Applications]\nimage/svg+xml=pen.desktop\n");
    struct Row {
        std::string variable;
        std::string list;
        int status;
        const char* who;
    };
    for (const Row& row : {Row{own, "settings", 0, "mine\n"}, Row{"", "settings", 0, "pen\n"},
                           Row{"", "nothing", 1, ""}}) {
        folder_.add("in.pdf", pdf_);
        auto edit = process({"edit", "in.pdf"});
        edit.environment = {{"TMPDIR", temporary()},
                            {"CORVANE_EDITOR", row.variable},
                            {"PATH", row.status == 0 ? "/usr/bin:/bin" : folder("nothing")},
                            {"XDG_CONFIG_HOME", folder(row.list)},
                            {"XDG_CONFIG_DIRS", folder("nothing")},
                            {"XDG_DATA_HOME", folder(row.status == 0 ? "own" : "nothing")},
                            {"XDG_DATA_DIRS", folder("nothing")}};
        const auto outcome = test::run(edit);
        EXPECT_EQ(outcome.status, row.status) << outcome.errors;
        if (row.status == 0) {
            EXPECT_EQ(bytes("who"), row.who);
        } else {
            EXPECT_TRUE(holds(outcome.errors, "error 50: there is no vector editor") &&
                        holds(outcome.errors, "set CORVANE_EDITOR"))
                << outcome.errors;
        }
    }
}

} // namespace
} // namespace corvane
