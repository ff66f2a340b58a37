// A toolbox of its own and a folder of its own for each test.
#pragma once

#include "host/toolbox.h"
#include "tests/support/process.h"
#include "toolbox/state.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace corvane {

/// A length-prefixed string.
class Prefixed {
public:
    explicit Prefixed(std::string_view text) {
        bytes_[0] = static_cast<std::uint8_t>(text.size());
        std::copy(text.begin(), text.end(), bytes_.begin() + 1);
    }
    std::uint8_t* data() { return bytes_.data(); }

private:
    std::array<std::uint8_t, 256> bytes_{};
};

inline std::string plain(const std::uint8_t* prefixed) {
    return {prefixed + 1, prefixed + 1 + prefixed[0]};
}

/// Runs `body` in a process of its own and gives its answer, 0 to 255.
template <class Body>
int inAnotherProcess(Body body) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(body());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class ToolboxTest : public ::testing::Test {
protected:
    void SetUp() override {
        FileSpecification file;
        ASSERT_EQ(makeFileSpecification(path("any"), file), noErr);
        directory_ = file.directory;
        ASSERT_EQ(OpenWD(file.volume, file.directory, 0, &volume_), noErr);
    }

    std::string path(const std::string& name) const { return (folder_.path() / name).string(); }
    std::string add(const std::string& name, const std::string& bytes) const {
        return folder_.add(name, bytes);
    }

    OSErr open(std::string_view name, std::int8_t permission, std::int16_t* reference = nullptr) {
        Prefixed prefixed(name);
        ParamBlock block;
        block.ioNamePtr = prefixed.data();
        block.ioVRefNum = volume_;
        block.ioPermssn = permission;
        const OSErr result = PBOpenSync(&block);
        if (reference != nullptr) {
            *reference = block.ioRefNum;
        }
        return result;
    }

    OSErr close(std::int16_t reference) {
        ParamBlock block;
        block.ioRefNum = reference;
        return PBCloseSync(&block);
    }

    /// A call that takes a name in the test's folder.
    OSErr call(OSErr (*procedure)(ParamBlock*), std::string_view name) {
        ParamBlock block;
        return call(procedure, name, block);
    }
    OSErr call(OSErr (*procedure)(ParamBlock*), std::string_view name, ParamBlock& block) {
        Prefixed prefixed(name);
        block.ioNamePtr = prefixed.data();
        block.ioVRefNum = volume_;
        const OSErr result = procedure(&block);
        block.ioNamePtr = nullptr;
        return result;
    }

    OSErr write(std::int16_t reference, std::string_view text, ParamBlock& block) {
        const auto bytes = std::as_bytes(std::span(text));
        block.ioRefNum = reference;
        block.ioSource = bytes.data();
        block.ioReqCount = static_cast<std::int32_t>(bytes.size());
        return PBWriteSync(&block);
    }
    OSErr write(std::int16_t reference, std::string_view text) {
        ParamBlock block;
        return write(reference, text, block);
    }

    test::TemporaryFolder folder_;
    ToolboxScope scope_{std::int64_t{16} << 20};
    std::int16_t volume_ = 0;
    std::int32_t directory_ = 0;
};

} // namespace corvane
