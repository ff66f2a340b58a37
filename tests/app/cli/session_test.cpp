#include "app/cli/session.h"

#include "app/cli/fault.h"
#include "tests/support/process.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

namespace corvane {
namespace {

class SessionTest : public ::testing::Test {
protected:
    SessionTest() { setenv("CORVANE_PLUGIN", plugin().c_str(), 1); }
    ~SessionTest() override {
        unsetenv("CORVANE_PLUGIN");
        unsetenv("CORVANE_FAKE");
    }

    static std::string plugin() { return (test::buildFolder() / "fake-plugin.so").string(); }
    static void play(const char* part) { setenv("CORVANE_FAKE", part, 1); }
};

TEST_F(SessionTest, GivesBackAllOfTheZoneHoweverItEnds) {
    const test::TemporaryFolder folder;
    const std::string file = folder.add("in.pdf", "%PDF-1.4");
    for (const char* part :
         {"warnings=2", "error@3=7", "error@4=12", "stop@3", "nameless", "pages=3 unfinished"}) {
        play(part);
        const std::int32_t before = FreeMem();
        Report report;
        const Arguments arguments{.file = file,
                                  .artwork = {},
                                  .output = {},
                                  .images = {},
                                  .passwordFile = {},
                                  .password = {},
                                  .quiet = true};
        try {
            Document document;
            Session session(arguments, report, document);
            session.begin();
            session.call(Selector::prepare);
            document.expectImport();
            session.call(Selector::go);
        } catch (const Failure&) {
        }
        EXPECT_EQ(FreeMem(), before) << part;
        EXPECT_EQ(hostExtension(), nullptr);
        EXPECT_EQ(dialogFront(), nullptr);
    }
}

TEST_F(SessionTest, TellsWhyTheArtworkWasRefused) {
    const test::TemporaryFolder folder;
    test::Process process;
    process.words = {(test::buildFolder() / "corvane").string(), "open",
                     folder.add("in.pdf", "%PDF-1.4"), "-o", "-"};
    play("segments=900000");
    process.environment = {{"CORVANE_ART_MB", "1"}};
    const auto outcome = test::run(process);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_NE(outcome.errors.find("error 3: the host refused ("), std::string::npos)
        << outcome.errors;
}

TEST_F(SessionTest, AZoneThatCannotBeHadIsAFaultOfMemory) {
    if (test::underAddressSanitizer) {
        GTEST_SKIP() << "needs a limit on address space";
    }
    const test::TemporaryFolder folder;
    test::Process process;
    process.words = {(test::buildFolder() / "corvane").string(), "check",
                     folder.add("in.pdf", "%PDF-1.4")};
    play("");
    process.environment = {{"CORVANE_ZONE_MB", "4000"}};
    process.addressSpace = std::uint64_t{60} << 20; // less than the smallest zone
    const auto outcome = test::run(process);
    EXPECT_EQ(outcome.status, 1) << outcome.signal;
    EXPECT_NE(outcome.errors.find("error 13"), std::string::npos) << outcome.errors;
}

} // namespace
} // namespace corvane
