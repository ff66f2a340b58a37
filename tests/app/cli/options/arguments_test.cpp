#include "app/cli/options/arguments.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace corvane {
namespace {

using Words = std::vector<const char*>;

TEST(Arguments, OptionsStandAnywhereAndInBothForms) {
    const auto wish =
        parseArguments(Words{"--json", "open", "-o", "a.svg", "in.pdf", "--page=12", "--images",
                             "pictures", "--profile", "original", "--quiet"});
    const auto& arguments = std::get<Arguments>(wish);
    EXPECT_EQ(arguments.command, Command::open);
    EXPECT_EQ(arguments.file, "in.pdf");
    EXPECT_EQ(arguments.page, 12);
    EXPECT_EQ(arguments.output, "a.svg");
    EXPECT_EQ(arguments.images, "pictures");
    EXPECT_EQ(arguments.profile, Profile::original);
    EXPECT_TRUE(arguments.json);
    EXPECT_TRUE(arguments.quiet);
}

TEST(Arguments, TwoDashesEndTheOptions) {
    const auto wish = parseArguments(Words{"info", "--", "--page"});
    EXPECT_EQ(std::get<Arguments>(wish).file, "--page");
    const auto dash = parseArguments(Words{"open", "-o", "-", "--", "-"});
    EXPECT_EQ(std::get<Arguments>(dash).file, "-");
    EXPECT_EQ(std::get<Arguments>(dash).output, "-");
}

TEST(Arguments, TheOutputHasTwoNames) {
    const auto opened = parseArguments(Words{"open", "a.pdf", "--output", "a.svg"});
    EXPECT_EQ(std::get<Arguments>(opened).output, "a.svg");
    const auto saved = parseArguments(Words{"save", "a.svg", "a.pdf", "-o", "b.pdf"});
    EXPECT_EQ(std::get<Arguments>(saved).output, "b.pdf");
}

TEST(Arguments, ASaveNamesArtworkAndFile) {
    const auto wish = parseArguments(
        Words{"save", "--dry-run", "a.svg", "--output=b.pdf", "a.pdf", "--force", "--page", "3"});
    const auto& arguments = std::get<Arguments>(wish);
    EXPECT_EQ(arguments.command, Command::save);
    EXPECT_EQ(arguments.artwork, "a.svg");
    EXPECT_EQ(arguments.file, "a.pdf");
    EXPECT_EQ(arguments.output, "b.pdf");
    EXPECT_EQ(arguments.page, 3);
    EXPECT_TRUE(arguments.dryRun && arguments.force && !arguments.namesProfile);

    const auto piped = std::get<Arguments>(parseArguments(Words{"save", "-", "--", "-.pdf"}));
    EXPECT_EQ(piped.artwork, "-");
    EXPECT_EQ(piped.file, "-.pdf");
    const auto named = std::get<Arguments>(parseArguments(Words{"save", "--", "-", "-"}));
    EXPECT_EQ(named.artwork, "./-") << "the file of that name";
    EXPECT_EQ(named.file, "-");
    EXPECT_TRUE(std::get<Arguments>(parseArguments(Words{"log", "--profile", "extended", "a.pdf"}))
                    .namesProfile);
}

TEST(Arguments, ManyFilesOrPagesAreABatch) {
    struct Row {
        Words words;
        std::size_t files; ///< 0: one, as ever
    };
    const std::vector<Row> rows{
        {{"open", "a.pdf", "b.pdf"}, 2},
        {{"open", "a.pdf", "--pages", "1-3,7"}, 1},
        {{"check", "a.pdf", "--jobs", "2"}, 1},
        {{"open", "a.pdf", "-o", "{stem}.svg"}, 0},
        {{"check", "a.pdf"}, 0},
    };
    for (const Row& row : rows) {
        const auto arguments = std::get<Arguments>(parseArguments(row.words));
        EXPECT_EQ(arguments.files.size(), row.files) << row.words.back();
        EXPECT_EQ(isBatch(arguments), row.files != 0);
    }
}

TEST(Arguments, FilesAndFoldersAreServed) {
    const auto arguments = std::get<Arguments>(
        parseArguments(Words{"serve", "a.pdf", "--port=80", "b", "--no-browser", "--stay"}));
    EXPECT_EQ(arguments.files, (std::vector<std::string>{"a.pdf", "b"}));
    EXPECT_EQ(arguments.file, "a.pdf");
    EXPECT_EQ(arguments.port, 80);
    EXPECT_TRUE(arguments.stays && !arguments.opensBrowser && !isBatch(arguments));
}

TEST(Arguments, FontsGoWhereTheWordSays) {
    struct Row {
        const char* word;
        PartPlace place;
        const char* folder;
    };
    for (const Row& row : {Row{"embed", PartPlace::artwork, ""}, Row{"none", PartPlace::none, ""},
                           Row{"./none", PartPlace::folder, "./none"}}) {
        const auto wish = parseArguments(Words{"open", "in.pdf", "--fonts", row.word});
        EXPECT_EQ(std::get<Arguments>(wish).fontPlace, row.place) << row.word;
        EXPECT_EQ(std::get<Arguments>(wish).fonts, row.folder);
    }
}

TEST(Arguments, BadUsageIsNamed) {
    struct Row {
        Words words;
        const char* wanted; ///< is in the sentence
    };
    const std::vector<Row> rows{
        {{}, "command is missing"},
        {{"fold", "a.pdf"}, "no command \"fold\""},
        {{"save", "a.pdf"}, "the artwork, then the PDF"},
        {{"save", "a.svg", "a.pdf", "b.pdf"}, "\"b.pdf\" is one too many"},
        {{"save", "a.svg", "-"}, "a PDF is not read from standard input"},
        {{"save", "a.svg", "a.pdf", "--output", "-"}, "--output takes"},
        {{"save", "a.svg", "a.pdf", "--force=1"}, "takes no value"},
        {{"open", "a.pdf", "--page", "1", "--dry-run"}, "--dry-run does not go with open"},
        {{"open", "a.pdf", "--thumbnail", "a.png"}, "--thumbnail does not go with open"},
        {{"info", "a.pdf", "--thumbnail", "a.png"}, "needs the page"},
        {{"log", "a.pdf", "--force"}, "--force does not go with log"},
        {{"open", "a.pdf", "--plain"}, "--plain does not go with open"},
        {{"revert"}, "needs a file"},
        {{"open"}, "needs a file"},
        {{"info", "a.pdf", "b.pdf"}, "\"b.pdf\" is one too many"},
        {{"edit", "a.pdf", "b.pdf"}, "\"b.pdf\" is one too many"},
        {{"open", "a.pdf", "b.pdf", "-o", "x.svg"}, "give a pattern"},
        {{"open", "a.pdf", "--pages", "1-2", "-o", "-"}, "give a pattern"},
        {{"open", "a.pdf", "--pages", "2-1"}, "--pages takes"},
        {{"open", "a.pdf", "--pages", "1", "--page", "1"}, "do not go together"},
        {{"open", "a.pdf", "b.pdf", "--images", "there"}, "leave --images out"},
        {{"open", "a.pdf", "b.pdf", "--password-file", "-"}, "standard input"},
        {{"open", "a.pdf", "--jobs", "0"}, "--jobs takes"},
        {{"open", "a.pdf", "--jobs", "5000"}, "to 1024"},
        {{"save", "a.svg", "a.pdf", "--jobs", "2"}, "--jobs does not go with save"},
        {{"check", "a.pdf", "--pages", "1"}, "--pages does not go with check"},
        {{"open", "-"}, "standard input"},
        {{"open", "a.pdf", "--colour"}, "no option \"--colour\""},
        {{"open", "a.pdf", "-p", "1"}, "no option \"-p\""},
        {{"open", "a.pdf", "--page"}, "needs a value"},
        {{"open", "a.pdf", "-o", ""}, "needs a value"},
        {{"open", "a.pdf", "--quiet=yes"}, "takes no value"},
        {{"open", "a.pdf", "--page", "0"}, "from 1"},
        {{"open", "a.pdf", "--page", "-1"}, "from 1"},
        {{"open", "a.pdf", "--page", "2x"}, "from 1"},
        {{"open", "a.pdf", "--page", " 2"}, "from 1"},
        {{"open", "a.pdf", "--page", "1.5"}, "from 1"},
        {{"open", "a.pdf", "--page", "4294967297"}, "from 1"},
        {{"open", "a.pdf", "--profile", "modern"}, "modern"},
        {{"check", "a.pdf", "--page", "1"}, "does not go with check"},
        {{"check", "a.pdf", "-o", "b"}, "does not go with check"},
        {{"serve"}, "needs a file"},
        {{"serve", "a.pdf", "--port", "0"}, "from 1 to 65535"},
        {{"serve", "a.pdf", "--port", "65536"}, "from 1 to 65535"},
        {{"serve", "a.pdf", "--page", "1"}, "does not go with serve"},
        {{"open", "a.pdf", "--port", "80"}, "does not go with open"},
    };
    for (const Row& row : rows) {
        const auto wish = parseArguments(row.words);
        const auto* const error = std::get_if<UsageError>(&wish);
        ASSERT_NE(error, nullptr) << row.wanted;
        EXPECT_NE(error->sentence.find(row.wanted), std::string::npos) << error->sentence;
    }
}

TEST(Arguments, TheFirstOfQuestionAndFaultCounts) {
    EXPECT_EQ(std::get<Question>(parseArguments(Words{"open", "--help", "--what"})),
              Question::help);
    EXPECT_EQ(std::get<Question>(parseArguments(Words{"--version"})), Question::version);
    EXPECT_TRUE(std::holds_alternative<UsageError>(parseArguments(Words{"--what", "--help"})));
}

} // namespace
} // namespace corvane
