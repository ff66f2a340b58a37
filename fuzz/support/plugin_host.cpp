#include "fuzz/support/plugin_host.h"

#include "entry/document_session.h"
#include "host/files.h"
#include "host/memory.h"
#include "host/utf8.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/rules.h"
#include "runtime/warning.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <unistd.h>

namespace corvane::fuzz {

namespace {

/// The file that all inputs of this process go through, in memory where the machine has such a
/// place; it goes with the process.
class InputFile {
public:
    InputFile() {
        const std::filesystem::path memory = "/dev/shm";
        const auto folder =
            access(memory.c_str(), W_OK) == 0 ? memory : std::filesystem::temp_directory_path();
        path_ = folder / ("corvane-fuzz-" + std::to_string(getpid()) + ".pdf");
    }
    ~InputFile() { unlink(path_.c_str()); }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    const std::string& write(Bytes bytes) const {
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path_.c_str(), "wb"),
                                                                   &std::fclose);
        require(file && std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size());
        return path_;
    }

    std::string read() const {
        std::ifstream file(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    std::string path_;
};

const InputFile& inputFile() {
    static const InputFile file;
    return file;
}

} // namespace

PluginHost::PluginHost(Bytes file, Profile profile, std::int32_t page)
    : toolbox_(memoryLimit), document_(memoryLimit), callbacks_(document_) {
    extension_.profile = profile;
    extension_.wantedPage = page;
    extension_.context = this;
    extension_.pageFacts = [](void*, const PageFacts&) {};
    extension_.pageListing = [](void*, const PageListing& listing) {
        require(listing.page > 0 && isUtf8(listing.label));
    };
    extension_.pageIdentity = [](void* context, const PageIdentity& identity) {
        auto& host = *static_cast<PluginHost*>(context);
        host.identity_ = identity.digest;
        host.extension_.artworkDigest = &host.identity_; // what is saved was opened from it
    };
    extension_.saved = [](void* context, const SavedFacts& facts) {
        static_cast<PluginHost*>(context)->saved_ = facts;
    };
    setHostExtension(&extension_);
    require(makeFileSpecification(inputFile().write(file), *file_) == noErr);
    block_->callbacks = table_.ref();
    block_->file = file_.ref();
    document_.expectImport();
}

PluginHost::~PluginHost() {
    DisposeHandle(block_->state.as<Ptr>());
    setHostExtension(nullptr);
}

std::uint32_t PluginHost::call(Selector selector, Action action) {
    const std::int32_t before = zoneBlocksInUse();
    const bool hadState = static_cast<bool>(block_->state);
    block_->selector = selector;
    block_->action = action;
    const std::uint32_t result = main_entry(&*block_);
    require(result == 0 || result == resultStopped || result == resultNotFormat);
    // The state block, a handle of two, is the host's to keep.
    const std::int32_t kept = !hadState && block_->state ? 2 : 0;
    require(zoneBlocksInUse() == before + kept && zoneBytesCharged() == 0);
    return result;
}

bool PluginHost::look(const std::function<void(DocumentCache&)>& see) {
    const ZoneCall call;
    selectRules(extension_.profile);
    callbacks = block_->callbacks.get();
    const Exception code = guarded([&] {
        DocumentSession session(*block_);
        pageCache(session.cache(), extension_.wantedPage);
        see(session.cache());
        session.close();
    });
    callbacks = nullptr;
    resetException();
    resetWarning();
    return code == Exception::none;
}

std::string PluginHost::fileBytes() {
    return inputFile().read();
}

} // namespace corvane::fuzz
