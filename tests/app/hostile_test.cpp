// Files made to hurt a reader, one table row each, with the error codes that are a right answer.
#include "tests/app/hostile_run.h"
#include "tests/support/pdf_builder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace corvane::test {
namespace {

struct Row {
    std::string name;
    std::string bytes;
    std::vector<int> answers; ///< right ones: codes of errors, 0 for a page that opens
    int page = 1;
};

const std::vector<int> opens{0};
const std::vector<int> opensOrFails{0, 1, 3, 7, 10, 11, 12, 13, 14, 15, 16, 17, 18, 20};
const std::vector<int> fails(opensOrFails.begin() + 1, opensOrFails.end());

constexpr int million = 1'000'000;
constexpr std::string_view square = "10 10 50 50 re f";

std::string repeated(std::string_view text, int times) {
    std::string all;
    all.reserve(text.size() * static_cast<std::size_t>(times));
    for (int i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

std::string reference(int number) {
    return std::to_string(number) + " 0 R";
}

/// One page of which one object is replaced or added.
std::string pageWith(int number, const std::string& body) {
    return PdfBuilder::onePage(square).object(number, body).bytes();
}

std::string pageWithTrailer(const std::string& entries) {
    return PdfBuilder::onePage(square).trailer(entries).bytes();
}

/// A whole file in which the first `from` is replaced.
std::string pageReplacing(std::string_view from, std::string_view to) {
    std::string bytes = PdfBuilder::onePage(square).bytes();
    return bytes.replace(bytes.find(from), from.size(), to);
}

/// A page tree that is a chain of `depth` nodes.
std::string deepTree(int depth) {
    PdfBuilder file = PdfBuilder::onePage(square);
    constexpr int first = 10;
    file.object(2, "<< /Type /Pages /Count 1 /Kids [" + reference(first) + "] >>");
    for (int i = 0; i < depth; ++i) {
        const int kid = i + 1 == depth ? 3 : first + i + 1;
        file.object(first + i, "<< /Type /Pages /Count 1 /Kids [" + reference(kid) + "] >>");
    }
    return file.bytes();
}

/// A page tree whose `levels` nodes each name the next one ten times: 10^levels pages.
std::string foldedTree(int levels) {
    PdfBuilder file = PdfBuilder::onePage(square);
    constexpr int first = 10;
    file.object(2, "<< /Type /Pages /Count 1 /Kids [" + reference(first) + "] >>");
    for (int i = 0; i < levels; ++i) {
        const int kid = i + 1 == levels ? 3 : first + i + 1;
        file.object(first + i, "<< /Type /Pages /Count 1 /Kids [" +
                                   repeated(reference(kid) + " ", 10) + "] >>");
    }
    return file.bytes();
}

std::string flatTree(int pages) {
    return PdfBuilder::onePage(square)
        .object(2, "<< /Type /Pages /Count " + std::to_string(pages) + " /Kids [" +
                       repeated("3 0 R ", pages) + "] >>")
        .bytes();
}

/// References that lead to one another: `length` of them, the last to the stream.
std::string referenceChain(int length) {
    PdfBuilder file = PdfBuilder::onePage(square);
    constexpr int first = 10;
    file.object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] /Contents 10 0 R >>");
    for (int i = 0; i < length; ++i) {
        file.object(first + i, reference(i + 1 == length ? 4 : first + i + 1));
    }
    return file.bytes();
}

/// Two sections whose Prev entries point at each other.
std::string prevCircle() {
    std::string bytes =
        PdfBuilder::onePage(square).trailer("/Size 5 /Root 1 0 R /Prev @@@@@@").bytes();
    const std::size_t first = bytes.rfind("xref\n", bytes.rfind("startxref") - 1);
    const std::size_t second = bytes.size();
    bytes += "xref\n0 0\ntrailer\n<< /Size 5 /Root 1 0 R /Prev " + std::to_string(first) +
             " >>\nstartxref\n" + std::to_string(second) + "\n%%EOF\n";
    std::string offset = std::to_string(second);
    offset.resize(6, ' ');
    return bytes.replace(bytes.find("@@@@@@"), 6, offset);
}

std::string pageShowing(std::string_view content) {
    return PdfBuilder::onePage(content).bytes();
}

std::string hugeContentsArray() {
    return PdfBuilder::onePage(repeated("q Q 1 w ", 12'500))
        .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] /Contents [" +
                       repeated("4 0 R ", 100'000) + "] >>")
        .bytes();
}

std::string pageOf(const std::string& entries) {
    return pageWith(3, "<< /Type /Page " + entries + " >>");
}

std::string pageEndingIn(std::string_view tail) {
    std::string bytes = PdfBuilder::onePage(square).bytes();
    return bytes.erase(bytes.rfind("startxref")).append(tail);
}

/// Files that cannot be read whatever the profile.
std::vector<Row> hopelessRows() {
    const std::string page = PdfBuilder::onePage(square).bytes();
    const std::string root = "/Size 5 /Root 1 0 R ";
    return {
        {"empty", "", {18, 20}},
        {"255 bytes", "%PDF-1.4\n" + page.substr(page.size() - 246), {12, 18}},
        {"only a header", "%PDF-1.4\n" + std::string(5000, 'x'), {12}},
        {"a header and a number", "%PDF-1.4\n" + std::string(5000, 'x') + " 12 ", fails},
        {"zeros", std::string(4096, '\0'), {12, 20}},
        {"a header and zeros", "%PDF-1.4\n" + std::string(4096, '\0'), {12}},
        {"encrypted", pageWithTrailer(root + "/Encrypt << /Filter /Standard /V 1 >>"), {7}},
        {"encrypted with a number", pageWithTrailer(root + "/Encrypt 1"), {7}},
    };
}

/// Faults of header, cross-reference and trailer behind which all objects are whole.
std::vector<Row> structureRows() {
    const std::string page = PdfBuilder::onePage(square).bytes();
    const std::string root = "/Size 5 /Root 1 0 R ";
    const std::string own = std::to_string(page.rfind("xref\n0"));
    return {
        {"no header", std::string(9, '-') + page.substr(9), {12, 20}},
        {"no root", pageWithTrailer("/Size 5"), fails},
        {"root is a number", pageWithTrailer("/Size 5 /Root 1"), fails},
        {"root is missing", pageWithTrailer("/Size 5 /Root 77 0 R"), fails},
        {"Prev to itself", pageReplacing("/Size 5", "/Size 5 /Prev " + own), {12}},
        {"Prev in a circle", prevCircle(), {12}},
        {"Prev outside", pageWithTrailer(root + "/Prev 99999999"), {12}},
        {"Prev negative", pageWithTrailer(root + "/Prev -1"), {12}},
        {"Prev is a name", pageWithTrailer(root + "/Prev /X"), {15}},
        {"trailer without an end", pageReplacing(" >>\nstartxref", "\nstartxref"), fails},
        {"startxref past the end", pageEndingIn("startxref\n99999999\n%%EOF\n"), {12}},
        {"startxref at an object", pageEndingIn("startxref\n261\n%%EOF\n"), fails},
        {"startxref of 400 digits",
         pageEndingIn("startxref\n" + std::string(400, '7') + "\n%%EOF\n"),
         {12}},
    };
}

/// One page behind a cross-reference section whose first line is `head`.
std::vector<Row> sectionRows() {
    const std::string digits(400, '9');
    std::vector<Row> rows;
    for (const std::string& head :
         {std::string("0 99999999"), std::string("0 4294967296"), std::string("0 -5"),
          std::string("-1 3"), std::string("-5 -5"), std::string("8388600 100"),
          std::string("9000000 1"), std::string("2147483647 2"), std::string("4294967295 1"),
          digits + " 1", "0 " + digits, std::string("1.5 2.5"), std::string("(a) /b"),
          std::string("[ 1 2 ]"), std::string("1"), std::string("")}) {
        rows.push_back({head, pageReplacing("\n0 1\n", "\n" + head + "\n"), opensOrFails});
    }
    return rows;
}

/// Faults of single objects.
std::vector<Row> objectRows() {
    const std::string box = " /MediaBox [0 0 9 9]";
    const std::string digits(400, '9');
    const auto streamOf = [](const std::string& entries) {
        return pageWith(4, "<< " + entries + " >>\nstream\n10 10 50 50 re f\nendstream");
    };
    return {
        {"reference to itself", pageOf(box + " /Contents 5 0 R /X 6 0 R"), opensOrFails},
        {"references in a circle",
         PdfBuilder::onePage(square)
             .object(3, "<< /Type /Page /Contents 5 0 R" + box + " >>")
             .object(5, "6 0 R")
             .object(6, "5 0 R")
             .bytes(),
         {12}},
        {"20,000 references in a row", referenceChain(20'000), {12}},
        {"Length that needs itself", streamOf("/Length 4 0 R"), {0, 12, 15}},
        {"Length that is a page", streamOf("/Length 3 0 R"), {0, 12, 15}},
        {"Length below zero", streamOf("/Length -5"), {0, 15}},
        {"Length past the end", streamOf("/Length 2147483647"), {0, 15}},
        {"Length of 400 digits", streamOf("/Length " + digits), {0, 15}},
        {"no Length", streamOf(""), {0, 12, 15}},
        {"unknown filter", streamOf("/Length 16 /Filter /Nonsense"), {15}},
        {"filter is a number", streamOf("/Length 16 /Filter 7"), {15}},
        {"17 filters", streamOf("/Length 16 /Filter [" + repeated("/ASCIIHexDecode ", 17) + "]"),
         fails},
        {"box of strings", pageOf("/MediaBox [(a) (b) (c) (d)]"), fails},
        {"box of two numbers", pageOf("/MediaBox [0 0]"), fails},
        {"box of 400 digits", pageOf("/MediaBox [0 0 " + digits + " " + digits + "]"),
         opensOrFails},
        {"no box", pageOf(""), {0, 12}},
        {"Rotate 45", pageOf("/Rotate 45" + box), {14}},
        {"Rotate is a name", pageOf("/Rotate /X" + box), {15}},
        {"Contents is a number", pageOf("/Contents 7" + box), {15}},
        {"another number than promised", pageReplacing("3 0 obj", "5 0 obj"), {12, 15}},
        {"number over the limit", pageOf("/Contents 9000000 0 R" + box), {12}},
        {"number of 400 digits", pageOf("/Contents " + digits + " 0 R" + box), fails},
        {"a string without an end", pageWith(3, "<< /X (" + repeated("a(", million)), fails},
        {"a million arrays", pageWith(3, repeated("[", million)), fails},
        {"a million dictionaries", pageWith(3, repeated("<</A ", million)), fails},
    };
}

std::vector<Row> treeRows() {
    const std::string circle = PdfBuilder::onePage(square)
                                   .object(2, "<< /Kids [5 0 R] /Count 1 >>")
                                   .object(5, "<< /Kids [2 0 R] /Count 1 >>")
                                   .bytes();
    const std::string parents = PdfBuilder::onePage(square)
                                    .object(2, "<< /Kids [3 0 R] /Count 1 /Parent 3 0 R >>")
                                    .object(3, "<< /Parent 2 0 R >>")
                                    .bytes();
    return {
        {"Kids to itself", pageWith(2, "<< /Kids [2 0 R] /Count 1 >>"), {12}},
        {"Kids to itself beside a page",
         pageWith(2, "<< /Kids [2 0 R 3 0 R] /Count 2 >>"),
         {12},
         2},
        {"Kids in a circle", circle, {12}},
        {"Kids is a number", pageWith(2, "<< /Kids 5 /Count 1 >>"), {15}},
        {"Kids holds a number", pageWith(2, "<< /Kids [5] /Count 1 >>"), fails},
        {"Kids is empty", pageWith(2, "<< /Kids [] /Count 1 >>"), {10, 15}},
        {"Parent is itself", pageOf("/Parent 3 0 R"), {12}},
        {"Parent in a circle", parents, {12}},
        {"20,000 nodes deep", deepTree(20'000), {12}},
        {"ten to the twelfth pages", foldedTree(12), {10, 12, 13}, million},
        {"Count of 400 digits",
         pageWith(2, "<< /Kids [3 0 R] /Count " + std::string(400, '9') + " >>"), opensOrFails},
        {"Count below zero", pageWith(2, "<< /Kids [3 0 R] /Count -1 >>"), opensOrFails},
        {"page after the last", pageShowing(square), {10, 15}, 2},
        {"page 2,147,483,647", pageShowing(square), {10, 15}, 2147483647},
    };
}

/// Content that is faulty or heavy, and yet there is a page to be shown.
std::vector<Row> contentRows() {
    const std::string digits(400, '9');
    const std::string drawn(square);
    const std::string zeros("0\0 0\0m\0 9 9 l S (a\0b) \0/N\0 gs 9 9 m 5 5 l S", 42);
    return {
        {"50,000 pages in one array", flatTree(50'000), opens, 50'000},
        {"a million q", pageShowing(repeated("q ", million) + drawn), {0, 13}},
        {"a million Q", pageShowing(repeated("Q ", million) + drawn), opens},
        {"numbers of 400 digits",
         pageShowing(digits + " " + digits + " m 0." + digits + " -" + digits + " l S"), opens},
        {"NUL bytes", pageShowing(zeros), opens},
        {"50,000 clips in clips", pageShowing(repeated("q 0 0 99 99 re W n ", 50'000) + drawn),
         opens},
        {"50,000 clips in a row", pageShowing(repeated("0 0 99 99 re W n ", 50'000) + drawn),
         opens},
        {"500,000 subpaths", pageShowing(repeated("1 1 m 2 2 l ", 500'000) + "S"), opens},
        {"200,000 operands", pageShowing(repeated("1 ", 200'000) + "S " + drawn), opens},
        {"growing matrices", pageShowing(repeated("9999 0 0 9999 99 99 cm ", 100) + drawn), opens},
        {"unknown operators", pageShowing(repeated("zz ", 100'000) + drawn), opens},
        {"two million operands", pageShowing(repeated("1 ", 2 * million)), opensOrFails},
        {"a million arrays", pageShowing(repeated("[", million) + drawn), opensOrFails},
        {"a million dictionaries", pageShowing(repeated("<<", million)), opensOrFails},
        {"a million procedures", pageShowing(repeated("{", million)), opensOrFails},
        {"a million brackets in a string", pageShowing(repeated("(", million)), opensOrFails},
        {"100,000 times the same 100,000 bytes", hugeContentsArray(), {1}},
    };
}

void expectAnswers(const std::vector<Row>& rows, const std::string& profile = "extended") {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_THAT(row.answers, testing::Contains(openHostile(row.bytes, row.page, profile)));
    }
}

TEST(Hostile, Hopeless) {
    expectAnswers(hopelessRows());
    expectAnswers(hopelessRows(), "original");
}

/// The classic profile refuses what the extended one may repair; 15: it then has no such page.
void expectRepairs(std::vector<Row> rows) {
    expectAnswers(rows, "original");
    for (Row& row : rows) {
        row.answers.insert(row.answers.end(), {0, 15});
    }
    expectAnswers(rows);
}

TEST(Hostile, Structure) {
    expectRepairs(structureRows());
}

TEST(Hostile, CrossReferenceSections) {
    expectAnswers(sectionRows());
}

TEST(Hostile, Objects) {
    expectRepairs(objectRows());
}

TEST(Hostile, PageTrees) {
    expectRepairs(treeRows());
}

TEST(Hostile, Contents) {
    expectAnswers(contentRows());
}

TEST(Hostile, InfoOfAnyFileIsOrderly) {
    for (const auto& rows : {hopelessRows(), structureRows(), sectionRows(), treeRows()}) {
        for (const Row& row : rows) {
            SCOPED_TRACE(row.name);
            const TemporaryFolder folder;
            folder.add("in.pdf", row.bytes);
            EXPECT_THAT(opensOrFails, testing::Contains(answerOf(
                                          run(hostileProcess(folder, {"info", "in.pdf"})))));
            EXPECT_EQ(folder.names(), std::vector<std::string>{"in.pdf"});
        }
    }
}

TEST(Hostile, Places) {
    const TemporaryFolder folder;
    folder.add("in.pdf", pageShowing(square));
    std::filesystem::create_directory(folder.path() / "folder");
    std::filesystem::create_directory(folder.path() / "locked");
    std::filesystem::permissions(folder.path() / "locked", std::filesystem::perms::owner_read |
                                                               std::filesystem::perms::owner_exec);
    const std::vector<std::string> before = folder.names();
    struct Case {
        std::string input;
        std::string output;
        std::vector<int> answers;
    };
    for (const auto& [input, output, answers] :
         {Case{"folder", "out.svg", {18, 19}}, Case{"missing.pdf", "out.svg", {18, 19}},
          Case{"in.pdf", "folder", {18}}, Case{"in.pdf", "no/such/out.svg", {18}},
          Case{"in.pdf", "locked/out.svg", {18}}, Case{"in.pdf", "in.pdf", {18}},
          Case{"in.pdf", "/dev/full", {6}}}) {
        SCOPED_TRACE(testing::Message() << input << " to " << output);
        Process process =
            hostileProcess(folder, {"open", input, "--page", "1", "-o", output, "--quiet"});
        process.obeysPermissions = true;
        EXPECT_THAT(answers, testing::Contains(answerOf(run(process))));
        EXPECT_EQ(folder.names(), before);
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.path() / "locked"));
    EXPECT_EQ(fileBytes(folder.path() / "in.pdf"), pageShowing(square));
}

/// A disk that fills up in the middle: the output may not grow past a few bytes.
TEST(Hostile, FullDisk) {
    const TemporaryFolder folder;
    folder.add("in.pdf", pageShowing(repeated("1 1 m 2 2 l S ", 10'000)));
    Process process = hostileProcess(folder, {"open", "in.pdf", "--page", "1", "-o", "out.svg"});
    process.fileSize = 1000;
    EXPECT_EQ(answerOf(run(process)), 6);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"in.pdf"});
}

} // namespace
} // namespace corvane::test
