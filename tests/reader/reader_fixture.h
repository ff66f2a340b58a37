// A file opened by the reader, with the real artwork as the host's document.
#pragma once

#include "app/artwork/slots/callbacks.h"
#include "host/files.h"
#include "host/memory.h"
#include "objects/family.h"
#include "objects/identity.h"
#include "objects/mask.h"
#include "output/xref.h"
#include "reader/document/cache.h"
#include "runtime/callbacks.h"
#include "tests/runtime/zone_fixture.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/process.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace corvane {

using test::PdfBuilder;

class ReaderTest : public ZoneTest {
protected:
    void SetUp() override {
        selectRules(Profile::extended);
        table_.emplace();
        callbacks = table_->ref().get();
    }

    void TearDown() override {
        close();
        callbacks = nullptr;
        table_.reset();
        EXPECT_EQ(handlerDepth(), 0);
        ZoneTest::TearDown();
    }

    /// Opens a file of these bytes in place of the one open; raises what opening it raises.
    DocumentCache& open(const std::string& bytes, std::int32_t lastPage = everyPage) {
        close();
        folder_.add("in.pdf", bytes);
        FileSpecification file;
        std::int16_t volume = 0;
        EXPECT_EQ(makeFileSpecification((folder_.path() / "in.pdf").string(), file), noErr);
        EXPECT_EQ(OpenWD(file.volume, file.directory, 0, &volume), noErr);
        openIdentity();
        openFamily();
        openMask();
        openXRef();
        registries_ = true;
        cache_ = openCache(volume, "in.pdf", lastPage);
        if (!cache_) {
            throw std::runtime_error("the file was not opened");
        }
        return *cache_;
    }
    DocumentCache& open(const PdfBuilder& file) { return open(file.bytes()); }

    void close() {
        if (cache_) {
            closeCache(std::move(cache_));
        }
        if (std::exchange(registries_, false)) {
            closeXRef();
            closeMask();
            closeFamily();
            closeIdentity();
        }
        clearStack();
        closeStack();
    }

    /// The code that opening the file raises, after which nothing of it may be left.
    Exception opening(const std::string& bytes) {
        const Exception code = raisedBy([&] { open(bytes); });
        if (code != Exception::none) {
            close();
            EXPECT_EQ(zoneBlocksInUse(), 1) << "only the host's table";
        }
        return code;
    }

    /// Draws page `number` of a file into a fresh document; the codes of the warnings, ascending.
    std::string draw(const std::string& bytes, std::int32_t number = 1) {
        scope_.reset();
        document_.emplace();
        scope_.emplace(*document_);
        document_->page().setProfile(rules().profile);
        document_->expectImport();
        resetWarning();
        DocumentCache& cache = open(bytes);
        pageCache(cache, number);
        readCache(cache);
        EXPECT_TRUE(document_->importFinished());
        EXPECT_EQ(countStack(), 0);
        return warnings();
    }
    /// The same for a page that draws `content`.
    std::string drawContent(std::string_view content, std::string_view pageEntries = "") {
        return draw(PdfBuilder::onePage(content, pageEntries).bytes());
    }

    static std::string warnings() {
        std::vector<int> codes;
        for (Warning code = popWarning(); code != Warning::none; code = popWarning()) {
            codes.push_back(static_cast<int>(code));
        }
        std::ranges::sort(codes);
        std::string text;
        for (const int code : codes) {
            text += (text.empty() ? "" : " ") + std::to_string(code);
        }
        return text;
    }

    Document& document() { return *document_; }
    Art importedArt() { return document_->layerArt(document_->firstLayer()); }

    test::TemporaryFolder folder_;
    std::optional<Document> document_ = std::optional<Document>(std::in_place);
    std::optional<CallbackScope> scope_ = std::optional<CallbackScope>(std::in_place, *document_);
    std::optional<CallbackTable> table_;
    std::unique_ptr<DocumentCache> cache_;
    bool registries_ = false;
};

} // namespace corvane
