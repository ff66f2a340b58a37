// A host that opens pages, changes them and saves them back.
#pragma once

#include "tests/entry/entry_fixture.h"

#include <cstdlib>
#include <gmock/gmock.h>

namespace corvane {

using test::PdfBuilder;

class SaveTest : public EntryTest {
protected:
    void SetUp() override {
        EntryTest::SetUp();
        setenv("SOURCE_DATE_EPOCH", "1795251600", 1); // 2026-11-21 09:00:00 UTC
        extension_.context = this;
        extension_.pageIdentity = [](void* context, const PageIdentity& identity) {
            static_cast<SaveTest*>(context)->identity_ = identity.digest;
        };
        extension_.saved = [](void* context, const SavedFacts& facts) {
            static_cast<SaveTest*>(context)->saved_.push_back(facts);
        };
        extension_.update = [](void* context, const UpdateFacts& facts) {
            std::string text = std::to_string(facts.number) + ": " + std::to_string(facts.offset) +
                               "+" + std::to_string(facts.size) + ", " +
                               std::to_string(facts.objects) + " objects, pages";
            for (const std::int32_t page : facts.pages) {
                text += " " + std::to_string(page);
            }
            text += ", " + std::string(facts.date) + (facts.ours ? ", ours" : "");
            static_cast<SaveTest*>(context)->updates_.push_back(text);
        };
        setHostExtension(&extension_);
    }

    void TearDown() override {
        unsetenv("SOURCE_DATE_EPOCH");
        EntryTest::TearDown();
    }

    void original() { setHostExtension(nullptr); }
    void extended() { setHostExtension(&extension_); }

    std::string bytes(const std::string& name = "in.pdf") const {
        return test::fileBytes(path(name));
    }

    /// Opens the page into a fresh document, as a host does.
    std::uint32_t open() {
        extension_.wantedPage = page_;
        document_.emplace();
        document_->page().setProfile(hostExtension() != nullptr ? Profile::extended
                                                                : Profile::original);
        scope_.reset();
        scope_.emplace(*document_);
        document_->expectImport();
        const std::uint32_t prepared = call(3);
        return prepared != 0 ? prepared : call(4);
    }
    std::uint32_t save() {
        extension_.wantedPage = page_;
        const std::uint32_t prepared = call(3, Action::write);
        return prepared != 0 ? prepared : call(4, Action::write);
    }
    /// Opens `file` and saves it again; what was appended.
    std::string saved(const std::string& file) {
        use("in.pdf", file);
        EXPECT_EQ(open(), 0U);
        front_.taken();
        EXPECT_EQ(save(), 0U);
        const std::string after = bytes();
        EXPECT_EQ(after.substr(0, file.size()), file);
        return after.substr(std::min(file.size(), after.size()));
    }

    /// The page object in what a save appended.
    static std::string pageIn(const std::string& update) {
        const std::size_t at = update.find("\n3 0 obj\n") + 1;
        return update.substr(at, update.find("endobj", at) - at);
    }

    /// The frontmost path, or null.
    Art firstPath() {
        Art art = firstArt();
        while (art != Art::null && document_->kind(art) == ArtKind::group) {
            art = document_->firstChild(art);
        }
        return art;
    }
    /// Changes the artwork: the line of that path is wider.
    void edit() {
        PathStyle style = document_->style(firstPath());
        style.lineWidth += fixedOne;
        document_->setStyle(firstPath(), style);
    }

    Art firstArt() { return document_->firstChild(document_->layerArt(document_->firstLayer())); }

    std::int32_t page_ = 1;
    std::uint64_t identity_ = 0;
    std::vector<SavedFacts> saved_;
    std::vector<std::string> updates_;
};

} // namespace corvane
