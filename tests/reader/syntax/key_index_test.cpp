// Looking into dictionaries of all sizes, and into many large ones.
#include "objects/stack.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "tests/reader/reader_fixture.h"

#include <random>

namespace corvane {
namespace {

class KeyIndexTest : public ReaderTest {
protected:
    /// A dictionary of the keys, each with its place as its value.
    static ObjectOwner dictionary(const std::vector<std::string>& keys) {
        pushMark(Mark::dictionary);
        std::int32_t place = 0;
        for (const std::string& key : keys) {
            pushLiteral(key);
            pushInteger(place++);
        }
        DocumentCache unused;
        dictionaryOperator(unused);
        return ObjectOwner(popStack());
    }
    /// The value, or -1 where there is none.
    static std::int32_t valueIn(DocumentCache& cache, const ObjectOwner& dictionary,
                                const std::string& key) {
        const Object value = findEntry(cache, dictionary.get(), key);
        return typeObject(value) == ObjectType::null ? -1 : integerObject(value);
    }
};

TEST_F(KeyIndexTest, AnswersWhatASearchWould) {
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same run each time
    for (const Profile profile : {Profile::original, Profile::extended}) {
        selectRules(profile);
        DocumentCache cache;
        for (const std::size_t size : {0U, 1U, 64U, 65U, 66U, 500U}) {
            std::vector<std::string> keys(size);
            // Half as many keys as places, so that many stand there twice or more.
            std::ranges::generate(keys,
                                  [&] { return "k" + std::to_string(random() % (size / 2 + 1)); });
            const ObjectOwner entries = dictionary(keys);
            for (std::size_t i = 0; i <= size / 2 + 1; ++i) {
                const std::string key = "k" + std::to_string(i);
                const auto first = std::ranges::find(keys, key);
                const auto last = std::find(keys.rbegin(), keys.rend(), key);
                const auto wanted = first == keys.end()            ? -1
                                    : profile == Profile::original ? first - keys.begin()
                                                                   : keys.rend() - last - 1;
                ASSERT_EQ(valueIn(cache, entries, key), wanted) << size << " " << key;
            }
        }
    }
}

TEST_F(KeyIndexTest, StorageThatIsGivenOutAgainIsNotTakenForTheFormer) {
    DocumentCache cache;
    for (std::int32_t round = 0; round < 300; ++round) {
        std::vector<std::string> keys(100, "other");
        keys[static_cast<std::size_t>(round % 100)] = "wanted";
        ASSERT_EQ(valueIn(cache, dictionary(keys), "wanted"), round % 100);
    }
    // What is indexed stays in memory, but not without end.
    const std::int32_t before = FreeMem();
    const std::vector<std::string> many(10000, "k");
    const auto rounds = static_cast<std::int32_t>(3 * budget::indexedKeys / 10000);
    for (std::int32_t round = 0; round < rounds; ++round) {
        valueIn(cache, dictionary(many), "k");
    }
    EXPECT_LT(before - FreeMem(), 60 * budget::indexedKeys);
}

TEST_F(KeyIndexTest, ThousandsOfResourcesAreUsedOnceEach) {
    constexpr int count = 20500;
    PdfBuilder file = PdfBuilder::onePage("", "/Resources <</ExtGState 5 0 R>>");
    std::string states = "<<";
    std::string content;
    for (int i = 0; i < count; ++i) {
        states += "/G" + std::to_string(i) + "<</LW " + std::to_string(i) + ">>";
        content += "/G" + std::to_string(i) + " gs ";
    }
    EXPECT_EQ(draw(file.object(5, states + ">>").stream(4, content).bytes()), "");
    EXPECT_LT(cache_->work.comparedKeys, 50 * count);
}

TEST_F(KeyIndexTest, NamesOfAnArrayAreCounted) {
    // An array in place of a category says only which names occur.
    PdfBuilder file = PdfBuilder::onePage("", "/Resources <</ExtGState 5 0 R>>");
    std::string names = "[";
    for (int i = 0; i < 20000; ++i) {
        names += "/n";
    }
    std::string content;
    for (int i = 0; i < 20000; ++i) {
        content += "/n gs ";
    }
    file.object(5, names + "]").stream(4, content);
    EXPECT_EQ(raisedBy([&] { draw(file.bytes()); }), Exception::limit);
}

} // namespace
} // namespace corvane
