// A host with the extension, which counts what drawing leaves out.
#pragma once

#include "host/extension.h"
#include "tests/reader/reader_fixture.h"

#include <cstdint>
#include <map>

namespace corvane {

class ExtensionTest : public ReaderTest {
protected:
    void SetUp() override {
        ReaderTest::SetUp();
        extension_.context = this;
        extension_.omitted = [](void* context, Omission kind, std::int32_t count) {
            static_cast<ExtensionTest*>(context)->omissions_[kind] = count;
        };
        setHostExtension(&extension_);
    }
    void TearDown() override {
        setHostExtension(nullptr);
        ReaderTest::TearDown();
    }

    std::int32_t omitted(Omission kind) const {
        const auto found = omissions_.find(kind);
        return found == omissions_.end() ? 0 : found->second;
    }

    HostExtension extension_;
    std::map<Omission, std::int32_t> omissions_; ///< of what was drawn last, once it is cleared
};

} // namespace corvane
