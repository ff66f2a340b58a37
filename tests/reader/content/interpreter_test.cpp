// Content within content, and where operators stand.
#include "reader/content/interpreter.h"

#include "reader/content/content.h"
#include "reader/page/page_content.h"
#include "reader/syntax/syntax.h"
#include "tests/reader/art_text.h"
#include "tests/reader/reader_fixture.h"

#include <string>
#include <vector>

namespace corvane {
namespace {

/// A page whose first content stream is followed by an inner content, object 6 with the resources
/// 7, and then by its second stream.
class InterpreterTest : public ReaderTest {
protected:
    /// What the three draw.
    std::string drawAround(std::string_view before, std::string_view inner, std::string_view after,
                           std::string_view innerFilter = "") {
        document_.emplace();
        scope_.emplace(*document_);
        document_->page().setProfile(rules().profile);
        document_->expectImport();
        DocumentCache& cache = open(file(before, inner, after, innerFilter));
        pageCache(cache, 1);
        Interpreter& interpreter = *cache.interpreter;
        const std::vector<ObjectOwner> streams = contentStreams(cache);
        retainObject(cache.resources.get());
        ContentScope page(interpreter, ObjectOwner(cache.resources.get()));
        runContent(interpreter, std::span(streams).first(1));
        runInner(interpreter);
        runContent(interpreter, std::span(streams).last(1));
        page.leave();
        EXPECT_EQ(countStack(), 0);
        return artText(document(), importedArt());
    }

    Exception innerFault = Exception::none;

private:
    static PdfBuilder file(std::string_view before, std::string_view inner, std::string_view after,
                           std::string_view innerFilter) {
        constexpr std::string_view table = " [/Indexed /DeviceGray 0 ";
        PdfBuilder builder;
        builder.object(1, "<< /Type /Catalog /Pages 2 0 R >>")
            .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>")
            .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 99 99] /Contents [4 0 R 5 0 R]"
                       " /Resources << /ColorSpace << /C" +
                           std::string(table) + "<00>] >> >> >>")
            .stream(4, before)
            .stream(5, after)
            .stream(6, inner, innerFilter)
            .object(7, "<< /ColorSpace << /C" + std::string(table) + "<ff>] >> >>");
        return builder;
    }

    static ObjectOwner objectOf(DocumentCache& cache, std::int32_t number) {
        ObjectOwner reference;
        indirectObject(reference.get(), number, 0);
        return resolveObject(cache, reference.get());
    }

    void runInner(Interpreter& interpreter) {
        ObjectOwner resources = objectOf(interpreter.cache, 7);
        std::vector<ObjectOwner> stream;
        stream.push_back(objectOf(interpreter.cache, 6));
        saveState(interpreter);
        innerFault = guarded([&] {
            ContentScope inner(interpreter, std::move(resources));
            runContent(interpreter, stream);
            inner.leave();
        });
        resetException();
        restoreState(interpreter);
    }
};

TEST_F(InterpreterTest, InnerContentReachesNoFurtherOutThanItself) {
    struct Row {
        const char* name;
        std::string_view before;
        std::string_view inner;
        std::string_view after;
        std::string_view wanted;
    };
    const Row rows[] = {
        {"it begins with the state in force", "2 0 0 2 0 0 cm", "0 0 m 1 0 l S", "",
         "[<0,0 2,0 S>]"},
        {"and what it does to it ends with it", "", "3 0 0 3 0 0 cm q q", "0 0 m 1 0 l S",
         "<0,0 1,0 S>"},
        {"its Q does not reach the states around it", "q 2 0 0 2 0 0 cm", "Q Q Q",
         "0 0 m 1 0 l S Q 0 0 m 1 0 l S", "<0,0 1,0 S> [<0,0 2,0 S>]"},
        {"operands around it stay", "0 0 m 5", "9 8 7", "0 l S", "<0,0 5,0 S>"},
        {"and are none of its own", "0 0 m 1 0", "l", "l S", "<0,0 1,0 S>"},
        {"an open array stays open", "[1 [2", "] 3 ]", "] 4] 0 d 0 0 m 1 0 l S", "<0,0 1,0 S>"},
        {"the path around it goes on", "0 0 m", "0 0 m 7 7 l", "1 0 l S", "<0,0 1,0 S>"},
        {"its clip ends with it", "", "0 0 9 9 re W n 0 0 m 1 0 l S", "0 0 m 2 0 l S",
         "<0,0 2,0 S> {<0,0 9,0 9,9 0,9 zC> <0,0 1,0 S>}"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(drawAround(row.before, row.inner, row.after), row.wanted) << row.name;
        EXPECT_EQ(innerFault, Exception::none) << row.name;
    }
}

TEST_F(InterpreterTest, NamesAreLookedUpInTheResourcesOfTheContent) {
    drawAround("/C cs 0 sc 0 0 m 1 0 l F", "/C cs 0 sc 0 0 m 2 0 l F", "/C cs 0 sc 0 0 m 3 0 l F");
    std::vector<Fixed> black;
    for (Art art = document().firstChild(importedArt()); art != Art::null;
         art = document().nextSibling(art)) {
        const Art path = document().kind(art) == ArtKind::path ? art : document().firstChild(art);
        black.push_back(document().style(path).fill.component[0]);
    }
    EXPECT_EQ(black, (std::vector<Fixed>{fixedOne, 0, fixedOne}));
}

TEST_F(InterpreterTest, WhatCannotBeReadInsideLeavesTheContentAroundItAsItWas) {
    EXPECT_EQ(drawAround("q 2 0 0 2 0 0 cm 0 0 m 1", "q q q", "0 l S Q", "/Filter /Unknown"),
              "[<0,0 2,0 S>]");
    EXPECT_EQ(innerFault, Exception::none);
}

} // namespace
} // namespace corvane
