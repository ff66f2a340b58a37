// Little CMS as the profiles of one file use it: its context, and the memory that they take.
//
// The context is one for the file: each call of the library searches all contexts of the process.
#pragma once

#include <cstddef>
#include <cstdint>
#include <lcms2.h>
#include <memory>

namespace corvane {

class IccLibrary {
public:
    /// `memory`: bytes that all profiles may take together.
    explicit IccLibrary(std::int64_t memory);
    IccLibrary(const IccLibrary&) = delete;
    IccLibrary& operator=(const IccLibrary&) = delete;

    /// Null where it could not be made.
    cmsContext context() const { return context_.get(); }

    std::int64_t used() const { return memory_.used; }

    /// What is made from now on may take as much as one profile may. False where so little is left
    /// that nothing should be made, or where so much was made already.
    bool admit();

private:
    struct Memory {
        std::int64_t used = 0; ///< bytes
        std::int64_t most = 0;
        std::int64_t limit = 0; ///< of what is being made
    };
    struct EndContext {
        using pointer = cmsContext;
        void operator()(cmsContext context) const { cmsDeleteContext(context); }
    };
    class Blocks;

    Memory memory_;
    int made_ = 0;
    std::unique_ptr<void, EndContext> context_;
};

} // namespace corvane
