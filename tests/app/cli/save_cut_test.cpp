// A save that is cut short, at every step and at every byte: the page is the old one or the new
// one, and the next save leaves no scar.
#include "tests/app/cli/saving.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <random>

namespace corvane {
namespace {

class SaveCut : public Saving {
protected:
    SaveCut() {
        folder_.add("in.pdf", old_);
        folder_.add("a.svg", replaced(artwork("in.pdf", 2), "M30 300V0", "M33 290V7"));
        oldPage_ = artwork("in.pdf", 2);
        EXPECT_EQ(run({"save", "a.svg", "in.pdf"}).status, 0);
        once_ = bytes("in.pdf");
        newPage_ = artwork("in.pdf", 2);
        EXPECT_EQ(run({"save", "a.svg", "in.pdf"}).status, 0);
        twice_ = bytes("in.pdf");
        EXPECT_TRUE(isValid("in.pdf"));
        EXPECT_NE(oldPage_, newPage_);
        EXPECT_TRUE(once_.starts_with(old_) && twice_.starts_with(once_));
        folder_.add("in.pdf", once_);
        EXPECT_TRUE(isValid("in.pdf"));
    }

    /// `words` with `fault` at the moment `at`, on the old file.
    test::Outcome cut(const std::string& fault, long at, std::vector<std::string> words) const {
        folder_.add("in.pdf", old_);
        auto saving = process(std::move(words));
        const char* const asan = std::getenv("ASAN_OPTIONS");
        saving.environment.insert(
            saving.environment.end(),
            {{"LD_PRELOAD", (test::buildFolder() / "fault-injector.so").string()},
             {"ASAN_OPTIONS",
              std::string(asan == nullptr ? "" : asan) + ":verify_asan_link_order=0"},
             {"CORVANE_FAULT", fault},
             {"CORVANE_FAULT_AT", std::to_string(at)}});
        return test::run(saving);
    }

    /// After whatever happened to the file: it opens, and the next save heals it.
    void expectHealing(const std::string& moment) const {
        const std::string cutFile = bytes("in.pdf");
        EXPECT_TRUE(cutFile.starts_with(old_)) << moment;
        EXPECT_LE(cutFile.size(), once_.size()) << moment;
        const bool isWhole = cutFile == once_;
        EXPECT_EQ(artwork("in.pdf", 2), isWhole ? newPage_ : oldPage_) << moment;
        EXPECT_EQ(bytes("in.pdf"), cutFile) << "opening changes nothing " << moment;
        const auto again = run({"save", "a.svg", "in.pdf", "--quiet"});
        EXPECT_EQ(again.status, 0) << moment << again.errors;
        EXPECT_EQ(again.errors, "") << moment;
        EXPECT_EQ(bytes("in.pdf"), isWhole ? twice_ : once_) << moment;
    }

    const std::string old_ = example("two-pages.pdf");
    std::string once_;
    std::string twice_;
    std::string oldPage_;
    std::string newPage_;
    const std::vector<std::string> save_{"save", "a.svg", "in.pdf", "--quiet"};
};

TEST_F(SaveCut, KilledAtEveryStep) {
    for (const char* fault : {"before", "after", "torn"}) {
        long at = 1;
        while (cut(fault, at, save_).signal == SIGKILL) {
            expectHealing(std::string(fault) + " call " + std::to_string(at));
            ++at;
        }
        EXPECT_EQ(bytes("in.pdf"), once_);
        EXPECT_GT(at, 3) << "a save writes and syncs";
    }
}

TEST_F(SaveCut, KilledWhenSomeBytesAreWritten) {
    const long last = static_cast<long>(once_.size() - old_.size());
    const long step = test::underAddressSanitizer ? last / 8 : 7;
    // Fewer bytes than eight are not taken for ours: they may be anybody's, and hurt nobody.
    for (long at = 8; at < last; at += step) {
        ASSERT_EQ(cut("bytes", at, save_).signal, SIGKILL) << at;
        EXPECT_EQ(bytes("in.pdf"), once_.substr(0, old_.size() + static_cast<std::size_t>(at)));
        expectHealing(std::to_string(at) + " bytes");
    }
}

TEST_F(SaveCut, KilledAtAnyMoment) {
    folder_.add("in.pdf", old_);
    const auto whole = test::run(process(save_)).seconds;
    std::mt19937 random(20261121);
    const int times = test::underAddressSanitizer ? 5 : 60;
    for (int i = 0; i < times; ++i) {
        folder_.add("in.pdf", old_);
        auto saving = process(save_);
        const double share = std::uniform_real_distribution<>(0, 1.2)(random);
        saving.timeout =
            std::chrono::milliseconds(1 + static_cast<int>(1000 * share * whole.count()));
        test::run(saving);
        expectHealing("after " + std::to_string(saving.timeout.count()) + " ms");
    }
}

TEST_F(SaveCut, ADiskThatFailsLeavesTheFileAsItWas) {
    for (const char* fault : {"full", "broken"}) {
        for (long at = 1;; ++at) {
            const auto outcome = cut(fault, at, save_);
            if (outcome.status == 0) {
                break;
            }
            EXPECT_EQ(outcome.status, 1) << fault << at;
            const bool isFull = fault == std::string("full");
            EXPECT_TRUE(test::holds(outcome.errors, isFull ? "error 6: " : "error 18: "))
                << outcome.errors;
            EXPECT_EQ(bytes("in.pdf"), old_) << fault << at;
        }
        EXPECT_EQ(bytes("in.pdf"), once_);
    }
    // A disk that takes no cut either: the tail is passed over, and goes with the next save.
    for (long at = 1; cut("dead", at, save_).status != 0; ++at) {
        expectHealing("dead from " + std::to_string(at));
    }
}

TEST_F(SaveCut, ACopyIsWholeOrNotThere) {
    const std::vector<std::string> words{"save", "a.svg", "in.pdf", "--output", "b.pdf", "--quiet"};
    const std::vector<std::string> own = folder_.names();
    std::size_t leftovers = 0;
    for (const char* fault : {"before", "torn", "full", "broken"}) {
        for (long at = 1; cut(fault, at, words).status != 0; ++at) {
            const bool isThere = std::filesystem::remove(folder_.path() / "b.pdf");
            EXPECT_FALSE(isThere && fault != std::string("torn")) << fault << at;
            EXPECT_EQ(bytes("in.pdf"), old_) << fault << at;
            leftovers += folder_.names().size() - own.size();
            EXPECT_LE(folder_.names().size(), own.size() + 1) << "only of the last" << fault << at;
        }
        EXPECT_EQ(bytes("b.pdf"), once_);
        std::filesystem::remove(folder_.path() / "b.pdf");
        EXPECT_EQ(folder_.names(), own) << fault;
    }
    EXPECT_GT(leftovers, 3U);

    // Saving into the file itself cleans its folder as well.
    EXPECT_EQ(cut("before", 1, words).signal, SIGKILL);
    EXPECT_NE(folder_.names(), own);
    EXPECT_EQ(run(save_).status, 0);
    EXPECT_EQ(folder_.names(), own);
}

TEST_F(SaveCut, ANewFileIsWholeOrNotThere) {
    // The classic profile gives it a fork.
    auto words = save_;
    words.insert(words.end(), {"--force", "--profile", "original"});
    folder_.add("a.svg", "<svg xmlns='http://www.w3.org/2000/svg'/>");
    words[2] = "new.pdf";
    const std::vector<std::string> own = folder_.names();
    for (long at = 1; cut("before", at, words).signal == SIGKILL; ++at) {
        EXPECT_FALSE(std::filesystem::exists(folder_.path() / "new.pdf")) << at;
        EXPECT_LE(folder_.names().size(), own.size() + 3) << "only of the last" << at;
    }
    EXPECT_TRUE(isValid("new.pdf"));
    EXPECT_EQ(folder_.names().size(), own.size() + 1) << folder_.names().front();
}

} // namespace
} // namespace corvane
