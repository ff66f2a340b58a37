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
    explicit RandomFile(unsigned seed) : chance_(seed), writer_(&chance_) {
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
    static constexpr int objects_ = 40;

    int below(int count) { return static_cast<int>(chance_() % static_cast<unsigned>(count)); }

    void write(bool first) {
        const auto kind = static_cast<Section>(below(3));
        hasStreams_ = hasStreams_ || kind == Section::stream;
        std::vector<int> streams;
        for (int count = kind == Section::table ? 0 : below(4); count > 0; --count) {
            streams.push_back(writer_.nextNumber());
        }
        std::vector<int> numbers;
        for (int number = 1; number < objects_; ++number) {
            if ((first && number <= 3) || below(3) == 0) {
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
