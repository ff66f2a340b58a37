// Many files and pages in one command.
#include "app/cli/batch/name_pattern.h"
#include "app/cli/batch/tasks.h"
#include "tests/app/cli/fake_program.h"
#include "tests/app/cli/saving.h"
#include "tests/support/pdf_builder.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::holds;
using Names = std::vector<std::string>;

TEST(PageRanges, AreReadAsPeopleWriteThem) {
    struct Row {
        const char* text;
        std::vector<PageRange> ranges; ///< empty: it is no list
    };
    for (const Row& row :
         {Row{"1-3,7", {{1, 3}, {7, 7}}}, Row{"5-", {{5, 0}}}, Row{"2-2,1", {{2, 2}, {1, 1}}},
          Row{"", {}}, Row{"1,", {}}, Row{"-3", {}}, Row{"3-1", {}}, Row{"0", {}}, Row{"1 -2", {}},
          Row{"1-2-3", {}}, Row{"1--", {}}, Row{"99999999999", {}}}) {
        EXPECT_EQ(pageRanges(row.text).value_or(std::vector<PageRange>()), row.ranges) << row.text;
    }
}

TEST(NamePattern, IsFilled) {
    struct Row {
        const char* pattern;
        const char* file;
        const char* name;
    };
    for (const Row& row :
         {Row{"{stem}-{page}.svg", "a/b.PDF", "b-12.svg"},
          Row{"{folder}/{stem}.svg", "a/b.pdf", "a/b.svg"},
          Row{"{folder}/x{page}{page}", "b", "./x1212"}, Row{"{step}{{page}", "b.pdf", "{step}{12"},
          Row{"out/{stem}", "{page}.pdf", "out/{page}"}}) {
        EXPECT_EQ(filledName(row.pattern, row.file, 12), row.name) << row.pattern;
    }
    EXPECT_FALSE(isPattern("{step}.svg"));
}

TEST(TaskList, GoesThroughFilesAndPages) {
    Arguments arguments;
    arguments.files = {"a.pdf", "b.pdf"};
    arguments.pages = {{3, 3}, {2, 0}};
    TaskList list(arguments);
    std::string order;
    while (const auto task = list.next()) {
        order += arguments.files[task->file].substr(0, 1) + std::to_string(task->page) + " ";
        if (task->page == Task::countsPages) {
            list.addPages(task->file, task->file == 0 ? 4 : 1);
        }
    }
    EXPECT_EQ(order, "a-1 a3 a2 a3 a4 b-1 b3 b2 ");
}

class Batch : public Saving {
protected:
    /// Names of all SVG files, sorted.
    Names made() const {
        Names names = folder_.names();
        std::erase_if(names, [](const std::string& name) { return !name.ends_with(".svg"); });
        return names;
    }
};

TEST_F(Batch, GoesOnWhereAFileFails) {
    const std::string pdf = folder_.add("a.pdf", example("two-pages.pdf"));
    folder_.add("broken.pdf", "%PDF-1.4 and nothing");
    fs::create_directory(folder_.path() / "b");
    folder_.add("b/a.pdf", example("harbour.pdf"));
    struct Row {
        Names words;
        int status;
        const char* wanted; ///< in what is said
        Names made;
    };
    const std::vector<Row> rows{
        {{"open", "a.pdf", "broken.pdf", "no.pdf", "b/a.pdf", "-o", "{folder}-{stem}-{page}.svg"},
         1,
         "4 pages of 4 files: 2 done, 2 failed; ",
         {".-a-1.svg", "b-a-1.svg"}},
        {{"open", "a.pdf", "--pages", "1-3", "-o", "{page}.svg", "--jobs", "3"},
         1,
         "there is no page 3",
         {"1.svg", "2.svg"}},
        {{"open", "a.pdf", "b/a.pdf", "--pages", "1-", "-o", "{folder}{page}.svg", "--jobs=2"},
         0,
         "3 pages of 2 files: 3 done, 0 failed; ",
         {".1.svg", ".2.svg", "b1.svg"}},
        {{"open", "a.pdf", "b/a.pdf", "-o", "{stem}-{page}.svg"},
         1,
         "b/a.pdf: error 18: a.pdf has the same name of output",
         {"a-1.svg"}},
        {{"open", "a.pdf", "./b/../a.pdf", "-o", "{folder}/x{stem}.svg"},
         1,
         "has the same name of output",
         {"xa.svg"}},
        // The first of them would be read no more.
        {{"open", "b/a.pdf", "a.pdf", "-o", "{stem}.pdf"}, 1, "0 done, 2 failed", {}},
        {{"open", "a.pdf", "b/a.pdf", "-o", "{stem}/.."}, 1, "is no name of a file", {}},
        {{"open", "broken.pdf", "a.pdf", "--pages", "2-", "--quiet"}, 1, "error", {"a-page2.svg"}},
        {{"open", "a.pdf", "--pages", "9-"}, 1, "there is no page 9", {}},
        {{"check", "a.pdf", "broken.pdf", "b/a.pdf", "--jobs", "2"}, 1, "2 done, 1 failed", {}},
    };
    for (const Row& row : rows) {
        const auto outcome = run(row.words);
        EXPECT_EQ(outcome.status, row.status) << row.wanted << outcome.errors;
        EXPECT_TRUE(holds(outcome.errors, row.wanted)) << outcome.errors;
        EXPECT_EQ(made(), row.made) << row.wanted << outcome.errors;
        for (const std::string& name : made()) {
            fs::remove(folder_.path() / name);
        }
    }
}

TEST_F(Batch, AnswersWithAnObjectALine) {
    folder_.add("a.pdf", example("two-pages.pdf"));
    const auto outcome = run({"check", "a.pdf", "no.pdf", "--json"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(std::ranges::count(outcome.output, '\n'), 3) << outcome.output;
    EXPECT_TRUE(holds(outcome.output, "{\"command\":\"check\",\"file\":\"a.pdf\","));
    EXPECT_TRUE(holds(outcome.output, "\"file\":\"no.pdf\""));
    EXPECT_TRUE(holds(outcome.output,
                      "{\"command\":\"check\",\"files\":2,\"done\":1,\"failed\":1,\"seconds\":"))
        << outcome.output;
    EXPECT_TRUE(outcome.errors.starts_with("corvane: no.pdf: error 19: ")) << outcome.errors;
}

class BatchOfFakes : public FakeProgram {};

TEST_F(BatchOfFakes, ACrashIsOnlyOneFiles) {
    Names words{"open", "in.pdf", "crash1.pdf", "-o", "{stem}.svg", "--jobs", "2"};
    for (int i = 0; i < 20; ++i) {
        const std::string name = (i % 5 == 0 ? "crash-" : "file-") + std::to_string(i) + ".pdf";
        folder_.add(name, "%PDF-1.4 of a kind");
        words.insert(words.begin() + 2, name);
    }
    folder_.add("crash1.pdf", "%PDF-1.4 of a kind");
    const auto outcome = run("crash", words);
    EXPECT_EQ(outcome.status, 1) << outcome.errors;
    EXPECT_TRUE(holds(outcome.errors, "crash1.pdf: error 52: the process that worked on it ended "
                                      "with signal 9"))
        << outcome.errors;
    EXPECT_TRUE(holds(outcome.errors, "falling\n")) << "what it said last";
    EXPECT_TRUE(holds(outcome.errors, "22 pages of 22 files: 17 done, 5 failed")) << outcome.errors;
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(fs::exists(folder_.path() / ("file-" + std::to_string(i) + ".svg")), i % 5 != 0);
    }
}

TEST_F(BatchOfFakes, CtrlCEndsAllOfThem) {
    auto waiting = process("wait", {"open", "in.pdf", "in.pdf", "in.pdf", "--jobs", "2"});
    waiting.onTerminal = true;
    waiting.interruptOn = "0 of 3 pages";
    const auto outcome = test::run(waiting);
    EXPECT_EQ(outcome.status, 130) << outcome.errors;
    EXPECT_TRUE(holds(outcome.errors, "corvane: cancelled")) << outcome.errors;
}

} // namespace
} // namespace corvane
