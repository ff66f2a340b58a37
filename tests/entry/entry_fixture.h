// A host around `main_entry`: a document behind the callback table, a front that notes what a
// person is shown, and a file.
#pragma once

#include "app/artwork/slots/callbacks.h"
#include "app/cli/zone_block.h"
#include "host/extension.h"
#include "host/front.h"
#include "host/memory.h"
#include "host/parameters.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/warning.h"
#include "tests/support/pdf_builder.h"
#include "tests/toolbox/toolbox_fixture.h"

#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// What a person saw, and how they answer.
struct NotingFront : DialogFront {
    void showAbout(std::string_view text) override { seen.push_back("about " + std::string(text)); }
    void showError(std::int32_t code, std::string_view sentence) override {
        seen.push_back("error " + std::to_string(code));
        EXPECT_FALSE(sentence.empty()) << code;
    }
    bool showWarnings(bool reading, std::span<const WarningText> warnings,
                      std::string_view fileName) override {
        std::string text = reading ? "read" : "write";
        for (const WarningText& warning : warnings) {
            text += " " + std::to_string(warning.code);
            EXPECT_FALSE(warning.sentence.empty()) << warning.code;
        }
        seen.push_back(text + " in " + std::string(fileName));
        return goesOn;
    }
    bool choosePage(std::int32_t first, std::int32_t last, std::int32_t& page) override {
        seen.push_back("page " + std::to_string(first) + ".." + std::to_string(last) + ": " +
                       std::to_string(page));
        page = answer > 0 ? answer : page;
        return answer >= 0;
    }
    bool chooseFolder(std::int16_t&, std::int32_t&) override { return false; }

    std::vector<std::string> taken() { return std::exchange(seen, {}); }

    std::vector<std::string> seen;
    bool goesOn = true;
    std::int32_t answer = 0; ///< page chosen; 0: as proposed, negative: cancelled
};

class EntryTest : public ToolboxTest {
protected:
    void SetUp() override {
        ToolboxTest::SetUp();
        setDialogFront(&front_);
        table_.emplace();
        block_.emplace();
        file_.emplace();
        (*block_)->callbacks = table_->ref();
        (*block_)->file = file_->ref();
        use("in.pdf");
        blocks_ = zoneBlocksInUse();
    }

    void TearDown() override {
        if ((*block_)->state) {
            DisposeHandle((*block_)->state.as<Ptr>());
        }
        file_.reset();
        block_.reset();
        table_.reset();
        EXPECT_EQ(zoneBlocksInUse(), 0);
        setDialogFront(nullptr);
        setHostExtension(nullptr);
    }

    void use(const std::string& name) {
        ASSERT_EQ(makeFileSpecification(path(name), **file_), noErr);
    }
    void use(const std::string& name, const std::string& bytes) {
        add(name, bytes);
        use(name);
    }

    /// One call of the plug-in, after which all that it took must be gone.
    std::uint32_t call(int selector, Action action = Action::read) {
        (*block_)->selector = static_cast<Selector>(selector);
        (*block_)->action = action;
        const std::uint32_t result = main_entry(&**block_);
        // The state block, once it is made, is the host's: a handle is two blocks.
        EXPECT_EQ(zoneBlocksInUse(), blocks_ + ((*block_)->state ? 2 : 0)) << selector;
        EXPECT_EQ(zoneBytesCharged(), 0) << selector;
        EXPECT_EQ(handlerDepth(), 0) << selector;
        EXPECT_EQ(valueException(), Exception::none) << selector;
        EXPECT_EQ(valueWarning(), Warning::none) << selector;
        EXPECT_EQ(callbacks, nullptr) << selector;
        return result;
    }
    std::uint32_t go() {
        document_.emplace();
        scope_.reset();
        scope_.emplace(*document_);
        document_->expectImport();
        return call(4);
    }

    std::int32_t& page() { return (*(*block_)->state)->page; }
    bool hasArt() {
        return document_->firstChild(document_->layerArt(document_->firstLayer())) != Art::null;
    }

    NotingFront front_;
    HostExtension extension_;
    std::optional<Document> document_ = std::optional<Document>(std::in_place);
    std::optional<CallbackScope> scope_ = std::optional<CallbackScope>(std::in_place, *document_);
    std::optional<CallbackTable> table_;
    std::optional<ZoneBlock<ParameterBlock>> block_;
    std::optional<ZoneBlock<FileSpecification>> file_;
    std::int32_t blocks_ = 0;
};

} // namespace corvane
