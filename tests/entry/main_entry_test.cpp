#include "objects/stack.h"
#include "resources/resources.h"
#include "tests/entry/entry_fixture.h"

#include <cstddef>
#include <cstring>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/mman.h>
#include <unistd.h>

namespace corvane {
namespace {

using test::PdfBuilder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string drawing = "0 0 m 9 0 l S";

std::string pages(int count) {
    PdfBuilder file = PdfBuilder::onePage(drawing);
    std::string kids;
    for (int i = 0; i < count; ++i) {
        kids += "3 0 R ";
    }
    return file.object(2, "<</Kids[" + kids + "]>>").bytes();
}

TEST_F(EntryTest, Selectors) {
    use("in.pdf", pages(1));
    EXPECT_EQ(call(0), resultIdentity);
    EXPECT_EQ(call(1), 0U);
    ASSERT_EQ(scope_->formats().size(), 2U);
    EXPECT_EQ(scope_->formats()[0].name, "Corvane (PDF)");
    EXPECT_EQ(scope_->formats()[0].type, fourCharacters("TEXT"));
    EXPECT_EQ(scope_->formats()[0].options, 1);
    EXPECT_EQ(scope_->formats()[1].name, "Corvane (PDF)");
    EXPECT_EQ(scope_->formats()[1].type, fourCharacters("PDF "));
    EXPECT_EQ(scope_->formats()[1].options, 3);
    EXPECT_EQ(call(2), 0U);
    ASSERT_EQ(front_.seen.size(), 1U);
    EXPECT_THAT(front_.taken()[0], ::testing::StartsWith("about Corvane"));
    use("missing.pdf");
    for (const int selector : {5, 6, 8, 15, 16, 17, 18, -1, 32767, -32768}) {
        EXPECT_EQ(call(selector), 0U) << selector;
    }
    EXPECT_THAT(front_.seen, IsEmpty());
    EXPECT_FALSE((*block_)->state);

    // A host that knows of them gets an answer to 16 and 17 too.
    setHostExtension(&extension_);
    for (const int selector : {5, 6, 8, 15, -1}) {
        EXPECT_EQ(call(selector), 0U) << selector;
    }
    for (const int selector : {16, 17}) {
        EXPECT_EQ(call(selector), resultStopped) << selector;
        EXPECT_THAT(front_.taken(), ElementsAre("error 18")) << selector;
    }
}

std::vector<std::string> facts;

TEST_F(EntryTest, FactsForAHostThatAsks) {
    use("in.pdf", PdfBuilder::onePage(drawing, "/Rotate 90/CropBox[0 0 9 9]").bytes());
    extension_.documentFacts = [](void* context, const DocumentFacts& document) {
        EXPECT_EQ(context, &facts);
        facts.push_back(std::to_string(document.pages) + " pages, " +
                        std::to_string(document.objects) + " objects, " +
                        std::to_string(document.updates) + " updates, " +
                        std::string(document.version));
    };
    extension_.pageFacts = [](void*, const PageFacts& told) {
        facts.push_back("page " + std::to_string(told.page) + " is " +
                        std::to_string(told.objectNumber) + ", turned " +
                        std::to_string(told.rotate) + ", to " + std::to_string(told.cropBox.right));
    };
    extension_.pageListing = [](void*, const PageListing& listing) {
        if (!listing.label.empty() || listing.hasThumbnail) {
            facts.push_back("page " + std::to_string(listing.page) + " is called " +
                            std::string(listing.label) + (listing.hasThumbnail ? ", shown" : ""));
        }
    };
    extension_.context = &facts;
    setHostExtension(&extension_);
    const std::string document = "1 pages, 4 objects, 0 updates, 1.4";
    EXPECT_EQ(call(17), 0U);
    EXPECT_THAT(std::exchange(facts, {}), ElementsAre(document));
    EXPECT_EQ(call(16), 0U);
    EXPECT_THAT(std::exchange(facts, {}),
                ElementsAre(document, "page 1 is 3, turned 90, to 9.000000"));
    PdfBuilder listed = PdfBuilder::onePage(drawing, "/Thumb 5 0 R");
    listed.object(1, "<</Pages 2 0 R/PageLabels<</Nums[0<</S/r/St 4>>]>>>>")
        .stream(5, "abcdef", "/Width 2 /Height 1 /BitsPerComponent 8 /ColorSpace /DeviceRGB");
    use("listed.pdf", listed.bytes());
    EXPECT_EQ(call(16), 0U);
    EXPECT_THAT(std::exchange(facts, {}), ::testing::Contains("page 1 is called iv, shown"));
    extension_.version = 7; // an older host, whose record is shorter
    EXPECT_EQ(call(16), 0U);
    EXPECT_THAT(std::exchange(facts, {}), ::testing::SizeIs(2));

    extension_.version = HostExtension::currentVersion;
    extension_.pageThumbnail = [](void*, const PageThumbnail& told) {
        facts.push_back(std::to_string(told.width) + " x " + std::to_string(told.height) + ", " +
                        std::to_string(told.pixels.size()) + " bytes");
    };
    extension_.wantedPage = 1;
    EXPECT_EQ(call(16), 0U);
    EXPECT_THAT(std::exchange(facts, {}), ElementsAre("2 x 1, 8 bytes"));
    use("in.pdf", pages(1));
    EXPECT_EQ(call(16), 0U);
    EXPECT_THAT(std::exchange(facts, {}), IsEmpty());
    extension_.wantedPage = 2;
    EXPECT_EQ(call(16), resultStopped) << "there is no such page";
}

TEST_F(EntryTest, OpeningAsAHostDoesIt) {
    for (const bool extended : {false, true}) {
        setHostExtension(extended ? &extension_ : nullptr);
        use("one.pdf", pages(1));
        EXPECT_EQ(call(7), 0U);
        EXPECT_EQ(call(3), 0U);
        ASSERT_TRUE((*block_)->state);
        EXPECT_EQ(page(), 1);
        EXPECT_FALSE((*(*block_)->state)->cache);
        EXPECT_EQ(go(), 0U);
        EXPECT_TRUE(document_->importFinished());
        EXPECT_TRUE(hasArt());
        EXPECT_THAT(front_.seen, IsEmpty()) << "one page needs no chooser";

        use("three.pdf", pages(3));
        front_.answer = 2;
        EXPECT_EQ(call(3), 0U);
        EXPECT_EQ(page(), 2);
        EXPECT_EQ(go(), 0U);
        EXPECT_THAT(front_.taken(), ElementsAre("page 1..3: 1"));
        front_.answer = 0;
        page() = 1;
    }
}

TEST_F(EntryTest, ThePageThatIsProposed) {
    use("in.pdf", pages(3));
    ASSERT_EQ(call(3), 0U);
    struct Row {
        std::int32_t kept;
        std::int32_t proposed;
    };
    for (const Row& row : {Row{2, 2}, {3, 3}, {4, 3}, {INT32_MAX, 3}, {0, 1}, {-7, 1}}) {
        front_.taken();
        page() = row.kept;
        EXPECT_EQ(call(3), 0U);
        EXPECT_THAT(front_.seen, ElementsAre("page 1..3: " + std::to_string(row.proposed)));
        EXPECT_EQ(page(), row.proposed);
    }
    front_.taken();
    front_.answer = -1;
    page() = 2;
    EXPECT_EQ(call(3), resultStopped);
    EXPECT_THAT(front_.taken(), ElementsAre("page 1..3: 2")) << "and no error";
    EXPECT_EQ(page(), 2);

    setHostExtension(&extension_);
    extension_.wantedPage = 3;
    EXPECT_EQ(call(3), 0U);
    EXPECT_THAT(front_.taken(), IsEmpty());
    EXPECT_EQ(page(), 3);
    extension_.wantedPage = 4;
    EXPECT_EQ(call(3), 0U);
    EXPECT_EQ(go(), resultStopped);
    EXPECT_THAT(front_.taken(), ElementsAre("error 15"));
}

TEST_F(EntryTest, WhatMayGoWrong) {
    const std::string good = pages(1);
    struct Row {
        const char* name;
        std::string file;
        std::uint32_t prepared;
        std::uint32_t gone;
        std::vector<std::string> seen;
    };
    for (const Row& row : {
             Row{"encrypted",
                 PdfBuilder::onePage("").trailer("/Root 1 0 R/Encrypt<<>>").bytes(),
                 resultStopped,
                 resultStopped,
                 {"error 7", "error 7"}},
             Row{"shorter than 256 bytes",
                 "%PDF-1.4 and no more",
                 resultStopped,
                 resultStopped,
                 {"error 18", "error 18"}},
             Row{"a page that says nothing",
                 PdfBuilder::onePage("", "/Rotate 45").bytes(),
                 0,
                 resultStopped,
                 {"error 14"}},
             Row{"an operator",
                 PdfBuilder::onePage("frob " + drawing).bytes(),
                 0,
                 0,
                 {"read 2 in in.pdf"}},
             Row{"many of them",
                 PdfBuilder::onePage("frob 1 m frob Q (x) Tj").bytes(),
                 0,
                 0,
                 {"read 2 13 in in.pdf"}},
             Row{"no header at all", "%XYZ-1.4" + good.substr(8), 0, resultNotFormat, {}},
             Row{"the old header", "%VEX-0.2 %" + good.substr(10), 0, 0, {"read 14 in in.pdf"}},
         }) {
        use("in.pdf", row.file);
        EXPECT_EQ(call(3), row.prepared) << row.name;
        EXPECT_EQ(go(), row.gone) << row.name;
        EXPECT_EQ(front_.taken(), row.seen) << row.name;
    }
    use("in.pdf", PdfBuilder::onePage("frob").bytes());
    front_.goesOn = false;
    EXPECT_EQ(go(), resultStopped) << "the person stops at the warnings";
    front_.taken();

    use("missing.pdf");
    EXPECT_EQ(call(7), 0U) << "what cannot be looked at is not refused";
    EXPECT_EQ(call(3), resultStopped);
    EXPECT_EQ(go(), resultStopped);
    EXPECT_THAT(front_.taken(), ElementsAre("error 18", "error 18"));
    (*file_)->directory = 12345;
    EXPECT_EQ(call(3), resultStopped);
    EXPECT_THAT(front_.taken(), ElementsAre("error 19"));

    setDialogFront(nullptr);
    use("in.pdf");
    EXPECT_EQ(go(), 0U) << "without a front nobody is asked";
}

TEST_F(EntryTest, AnyOtherActionOpensAndClosesOnly) {
    use("in.pdf", pages(1));
    EXPECT_EQ(call(4, static_cast<Action>(7)), 0U);
    EXPECT_FALSE(hasArt());
}

TEST_F(EntryTest, Headers) {
    struct Row {
        const char* name;
        std::string front;
        std::uint32_t original;
        std::uint32_t extended;
    };
    using namespace std::string_literals;
    const auto no = resultNotFormat;
    const auto at = [](std::size_t place, const std::string& header) {
        return std::string(place, '.') + header;
    };
    for (const Row& row : {
             Row{"usual", "%PDF-1.4\n", 0, 0},
             Row{"nothing behind the point", "%PDF-1.", no, no},
             Row{"one byte behind it", "%PDF-1.x", 0, 0},
             Row{"behind other bytes", "%!PS % %PDF-1.2\n", 0, 0},
             Row{"a percent sign in between", "%%PDF-1.2\n", 0, 0},
             Row{"behind a zero byte", "\0%PDF-1.2\n"s, no, 0},
             Row{"the last that fits", at(992, "%PDF-1.4 and more"), 0, 0},
             Row{"cut off at byte 1,000", at(993, "%PDF-1.4 and more"), no, no},
             Row{"behind byte 1,000", at(1000, "%PDF-1.4 and more"), no, no},
             Row{"version 2", "%PDF-2.0\n", no, 0},
             Row{"version 3", "%PDF-3.0\n", no, no},
             Row{"small letters", "%pdf-1.4\n", no, no},
             Row{"the old header", "%VEX-0.2 ", no, no},
             Row{"the old header and a byte", "%VEX-0.2 x", 0, 0},
             Row{"the old header without a blank", "%VEX-0.25xx", no, no},
             Row{"seven bytes", "%PDF-1.", no, no},
             Row{"none", "", no, no},
         }) {
        use("in.pdf", row.front);
        setHostExtension(nullptr);
        EXPECT_EQ(call(7), row.original) << row.name;
        setHostExtension(&extension_);
        EXPECT_EQ(call(7), row.extended) << row.name;
    }
    EXPECT_THAT(front_.seen, IsEmpty());
}

/// The record of a host of the first version, with nothing readable behind it.
class FirstRecord {
public:
    FirstRecord()
        : pages_(mmap(nullptr, 2 * page_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1,
                      0)) {
        constexpr std::size_t length = offsetof(HostExtension, artworkDigest);
        const HostExtension whole{.version = 1, .wantedPage = 1};
        std::byte* const end = static_cast<std::byte*>(pages_) + page_;
        EXPECT_EQ(mprotect(end, page_, PROT_NONE), 0);
        void* const record = end - length;
        std::memcpy(record, &whole, length);
        setHostExtension(static_cast<const HostExtension*>(record));
    }
    ~FirstRecord() {
        setHostExtension(nullptr);
        munmap(pages_, 2 * page_);
    }
    FirstRecord(const FirstRecord&) = delete;
    FirstRecord& operator=(const FirstRecord&) = delete;

private:
    std::size_t page_ = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* pages_;
};

TEST_F(EntryTest, AHostOfTheFirstVersionIsServed) {
    use("in.pdf", PdfBuilder::onePage("0 0 m 9 9 l S").bytes());
    const FirstRecord record;
    const std::string before = test::fileBytes(path("in.pdf"));
    EXPECT_EQ(call(7), 0U);
    EXPECT_EQ(call(16), 0U);
    EXPECT_EQ(call(3), 0U);
    EXPECT_EQ(go(), 0U);
    EXPECT_TRUE(hasArt());
    EXPECT_EQ(call(4, Action::write), 0U); // nothing says what the artwork came from
    EXPECT_EQ(call(18), 0U);
    EXPECT_TRUE(test::fileBytes(path("in.pdf")).starts_with(before));
    EXPECT_GT(test::fileBytes(path("in.pdf")).size(), before.size());
    EXPECT_THAT(front_.taken(), IsEmpty());
}

TEST_F(EntryTest, ATemplateIsMadeOnlyWhereNoFileIs) {
    for (const bool extended : {false, true}) {
        setHostExtension(extended ? &extension_ : nullptr);
        const std::string name = extended ? "new.pdf" : "classic.pdf";
        use(name);
        EXPECT_EQ(call(3, Action::write), 0U);
        EXPECT_THAT(front_.taken(), IsEmpty());
        const std::string made = test::fileBytes(path(name));
        EXPECT_GE(made.size(), 256U);
        EXPECT_EQ(made.find('\r'), std::string::npos);
        // Every offset is right: each object stands where the section says, and the section too.
        const std::size_t section = std::stoul(made.substr(made.rfind("startxref") + 10));
        ASSERT_EQ(made.substr(section, 5), "xref\n");
        for (std::size_t i = 1; i <= 5; ++i) {
            const std::size_t offset = std::stoul(made.substr(section + 9 + 20 * i, 10));
            EXPECT_EQ(made.substr(offset, 7), std::to_string(i) + " 0 obj");
        }
        ParamBlock information;
        ASSERT_EQ(ToolboxTest::call(PBGetFInfoSync, name, information), noErr);
        EXPECT_EQ(information.ioFlFndrInfo.fdType, fourCharacters("PDF "));
        EXPECT_EQ(information.ioFlFndrInfo.fdCreator, fourCharacters("CVRN"));
        // It opens, and a second save finds it.
        EXPECT_EQ(go(), 0U);
        EXPECT_EQ(call(3, Action::write), 0U);
        EXPECT_EQ(test::fileBytes(path(name)), made);
        EXPECT_THAT(front_.taken(), IsEmpty());

        use("text.txt", "no PDF at all");
        EXPECT_EQ(call(3, Action::write), resultStopped);
        EXPECT_THAT(front_.taken(), ElementsAre("error 20"));
        EXPECT_EQ(test::fileBytes(path("text.txt")), "no PDF at all");
    }
    // What is there and cannot be read is not replaced.
    std::filesystem::create_directory(path("folder.pdf"));
    use("folder.pdf");
    EXPECT_EQ(call(3, Action::write), resultStopped);
    EXPECT_THAT(front_.taken(), ElementsAre("error 18"));
    EXPECT_TRUE(std::filesystem::is_directory(path("folder.pdf")));
    // A read makes nothing.
    use("other.pdf");
    EXPECT_EQ(call(3), resultStopped);
    EXPECT_FALSE(std::filesystem::exists(path("other.pdf")));
}

TEST(Plugin, ExportsItsEntryOnly) {
    test::Process process;
    process.words = {"/usr/bin/nm", "-D", "--defined-only", "--format=posix",
                     (test::buildFolder() / "corvane-pdf.so").string()};
    const test::Outcome outcome = test::run(process);
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(outcome.output, ::testing::StartsWith("main_entry T "));
    EXPECT_EQ(std::ranges::count(outcome.output, '\n'), 1) << outcome.output;
}

} // namespace
} // namespace corvane
