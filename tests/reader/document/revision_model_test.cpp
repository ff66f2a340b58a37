// Random files of many revisions against a simple model: what counts is the newest.
#include "reader/syntax/raw_entries.h"
#include "reader/syntax/syntax.h"
#include "tests/reader/reader_fixture.h"
#include "tests/support/revision_writer.h"

#include <gmock/gmock.h>
#include <random>

namespace corvane {
namespace {

using test::RevisionWriter;
using test::Section;

/// The value of each object by number; empty: it is freed.
using Model = std::map<int, std::string>;

class RandomFile {
public:
    explicit RandomFile(unsigned seed, int objects = 40)
        : objects_(objects), chance_(seed), writer_(&chance_) {
        const int revisions = 1 + below(5);
        // Numbers beyond those of the objects go to streams.
        writer_.object(objects_, "null");
        for (int revision = 0; revision < revisions; ++revision) {
            write(revision == 0);
        }
    }

    const std::string& bytes() const { return writer_.bytes(); }
    const Model& model() const { return model_; }
    const std::vector<int>& everFreed() const { return everFreed_; }
    bool hasStreams() const { return hasStreams_; }

private:
    int below(int count) { return static_cast<int>(chance_() % static_cast<unsigned>(count)); }

    void write(bool first) {
        const auto kind = static_cast<Section>(below(3));
        hasStreams_ = hasStreams_ || kind == Section::stream;
        std::vector<int> streams;
        for (int count = kind == Section::table ? 0 : below(4); count > 0; --count) {
            streams.push_back(writer_.nextNumber());
        }
        std::vector<int> numbers;
        const int begin = 1 + below(objects_ / 2);
        for (int number = 1; number < objects_; ++number) {
            const bool inRun = first || (number >= begin && number < begin + objects_ / 2);
            if (isLong() ? inRun : (first && number <= 3) || below(3) == 0) {
                numbers.push_back(number);
            }
        }
        std::shuffle(numbers.begin(), numbers.end(), chance_);
        for (const int number : numbers) {
            define(number, kind, streams);
        }
        writer_.end(kind);
    }

    void define(int number, Section kind, const std::vector<int>& streams) {
        if (number > 3 && below(6) == 0) {
            if (kind == Section::stream && below(2) == 0) {
                writer_.entry(number, 3 + below(200), below(1000), below(100)); // of no known type
            } else {
                writer_.free(number);
            }
            model_[number].clear();
            everFreed_.push_back(number);
            return;
        }
        const std::string value = std::to_string(++values_) + ".50";
        const std::string body = "<<" + entriesOf(number) + "/V " + value + ">>";
        if (!streams.empty() && below(3) != 0) {
            writer_.member(
                streams[static_cast<std::size_t>(below(static_cast<int>(streams.size())))], number,
                body);
        } else {
            writer_.object(number, body);
        }
        model_[number] = value;
    }

    /// Sections are then long runs of numbers.
    bool isLong() const { return objects_ > 1000; }

    static std::string entriesOf(int number) {
        switch (number) {
        case 1:
            return "/Type/Catalog/Pages 2 0 R";
        case 2:
            return "/Type/Pages/Count 1/Kids[3 0 R]";
        case 3:
            return "/Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]";
        default:
            return "/Other 1 0 R";
        }
    }

    int objects_;
    std::mt19937 chance_;
    RevisionWriter writer_;
    Model model_;
    std::vector<int> everFreed_;
    bool hasStreams_ = false; ///< as sections
    int values_ = 0;
};

class RevisionModelTest : public ReaderTest {
protected:
    /// The value of an object by both ways to it; empty where it is null.
    std::string valueOf(int number) {
        ObjectOwner reference;
        indirectObject(reference.get(), number, 0);
        const ObjectOwner object = resolveObject(*cache_, reference.get());
        if (typeObject(object.get()) == ObjectType::null) {
            return "";
        }
        const ObjectOwner value = lookupObject(*cache_, object.get(), "V");
        const std::vector<RawEntry> entries = rawEntries(*cache_, number, 0);
        const auto entry = std::ranges::find(entries, "V", &RawEntry::key);
        const std::string raw = entry == entries.end() ? "?" : rawValue(*cache_, *entry);
        EXPECT_EQ(fixedObject(value.get()), std::stoi(raw) * fixedOne + fixedOne / 2);
        return raw;
    }
};

TEST_F(RevisionModelTest, TheNewestCounts) {
    for (unsigned seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE(seed);
        const RandomFile file(seed);
        DocumentCache& cache = open(file.bytes());
        ASSERT_FALSE(cache.repaired);
        for (const auto& [number, value] : file.model()) {
            ASSERT_EQ(valueOf(number), value) << number;
        }
        EXPECT_EQ(countCache(cache), 1);
        pageCache(cache, 1);
        EXPECT_EQ(mediaCache(cache).right, 9);
        if (file.hasStreams()) {
            selectRules(Profile::original);
            EXPECT_NE(opening(file.bytes()), Exception::none);
            selectRules(Profile::extended);
        }
    }
}

TEST_F(RevisionModelTest, TheNewestCountsInLongSections) {
    for (unsigned seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(seed);
        const RandomFile file(seed, 2600);
        DocumentCache& cache = open(file.bytes());
        ASSERT_FALSE(cache.repaired);
        // In any order: each one brings others with it.
        std::vector<std::pair<int, std::string>> objects(file.model().begin(), file.model().end());
        std::shuffle(objects.begin(), objects.end(), std::mt19937(seed));
        for (const auto& [number, value] : objects) {
            ASSERT_EQ(valueOf(number), value) << number;
        }
    }
}

/// A table of so many entries.
std::string longTable(int count) {
    RevisionWriter writer;
    writer.object(1, "<</Pages 2 0 R>>").object(2, "<</Kids[3 0 R]/Count 1>>");
    for (int number = 3; number <= count; ++number) {
        writer.object(number, "<</MediaBox[0 0 9 " + std::to_string(number) + "]>>");
    }
    return writer.end(Section::table).bytes();
}

TEST_F(RevisionModelTest, ObjectsThatNobodyAsksForTakeNoMemory) {
    const std::string file = longTable(50000);
    const std::int64_t before = zoneBytesInUse();
    DocumentCache& cache = open(file);
    pageCache(cache, 1);
    EXPECT_LT(zoneBytesInUse() - before, 200 << 10);
    EXPECT_EQ(nextIdentity(), 50001);
    EXPECT_EQ(countReference(*cache.references), 50000);
    EXPECT_GT(zoneBytesInUse() - before, 1000 << 10);
}

TEST_F(RevisionModelTest, LongTablesOfAnotherFormAreReadAtOnce) {
    std::string file = longTable(3000);
    const std::size_t entry = file.find("xref\n") + 36 + 20 * 1500;
    for (const auto& [place, bytes] :
         std::vector<std::pair<std::size_t, std::string>>{{11, "    0"}, {0, "  "}, {15, "  "}}) {
        std::string odd = file;
        odd.replace(entry + place, bytes.size(), bytes);
        SCOPED_TRACE(odd.substr(entry - 20, 60));
        DocumentCache& cache = open(odd);
        EXPECT_EQ(countReference(*cache.references), 3000);
    }
}

TEST_F(RevisionModelTest, TheLastInTheFileCountsWhereItIsSearched) {
    for (unsigned seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(seed);
        const RandomFile file(seed);
        DocumentCache& cache = open(file.bytes() + "startxref\n7\n%%EOF\n");
        ASSERT_TRUE(cache.repaired);
        for (const auto& [number, value] : file.model()) {
            // A search sees no free entries.
            if (!std::ranges::count(file.everFreed(), number)) {
                ASSERT_EQ(valueOf(number), value) << number;
            }
        }
        EXPECT_EQ(countCache(cache), 1);
    }
}

} // namespace
} // namespace corvane
