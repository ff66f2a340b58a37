// Loaded in front of the C library (LD_PRELOAD), this ends a program, or lets a call fail, at a
// chosen moment of what it does to files.
//
// CORVANE_FAULT_AT=N names the moment, CORVANE_FAULT what happens there:
//   before   the program is killed before the N-th call
//   after    the program is killed after the N-th call
//   torn     half of what the N-th call writes is written, then the program is killed
//   bytes    the program is killed when N bytes are written
//   full     from the N-th call on half of a write is taken, and what follows fails: ENOSPC
//   broken   the N-th call fails: EIO
//   dead     the N-th call and all later ones fail: EIO
// Calls are those that write, sync, cut or rename, counted from 1; writes to other than regular
// files do not count.
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

template <class Signature>
Signature* next(const char* name) {
    Signature* function = nullptr;
    void* const symbol = dlsym(RTLD_NEXT, name);
    std::memcpy(&function, &symbol, sizeof function);
    return function;
}

bool isFault(const char* name) {
    const char* const fault = std::getenv("CORVANE_FAULT");
    return fault != nullptr && std::strcmp(fault, name) == 0;
}

long moment() {
    const char* const at = std::getenv("CORVANE_FAULT_AT");
    return at == nullptr ? 0 : std::atol(at);
}

bool isRegular(int file) {
    struct stat facts {};
    return fstat(file, &facts) == 0 && S_ISREG(facts.st_mode);
}

[[noreturn]] void end() {
    raise(SIGKILL);
    _exit(137);
}

long calls = 0;
long written = 0;

/// Stands around the call that `perform` does for `count` bytes, 0 where it writes none.
template <class Perform>
ssize_t attempt(std::size_t count, Perform perform) {
    const long at = moment();
    if (at == 0) {
        return perform(count);
    }
    const bool isNow = ++calls == at;
    if (isNow && isFault("before")) {
        end();
    }
    if ((isNow && isFault("broken")) || (calls >= at && isFault("dead"))) {
        errno = EIO;
        return -1;
    }
    const bool isTorn = isNow && (isFault("torn") || isFault("full"));
    if (calls > at && count > 0 && isFault("full")) {
        errno = ENOSPC;
        return -1;
    }
    const bool isLast = isFault("bytes") && count > 0 && written + static_cast<long>(count) >= at;
    const std::size_t share = isLast   ? static_cast<std::size_t>(at - written)
                              : isTorn ? count / 2
                                       : count;
    const ssize_t result = share == 0 && count > 0 ? 0 : perform(share);
    if (isLast || (isNow && (isFault("after") || isFault("torn")))) {
        end();
    }
    written += count > 0 && result > 0 ? result : 0;
    if (share == 0 && count > 0) {
        errno = ENOSPC;
        return -1;
    }
    return result;
}

} // namespace

// The names and forms are the C library's.
extern "C" {

ssize_t write(int file, const void* bytes, size_t count) {
    static auto* const original = next<ssize_t(int, const void*, size_t)>("write");
    if (!isRegular(file)) {
        return original(file, bytes, count);
    }
    return attempt(count, [&](std::size_t share) { return original(file, bytes, share); });
}

ssize_t pwrite(int file, const void* bytes, size_t count, off_t offset) {
    static auto* const original = next<ssize_t(int, const void*, size_t, off_t)>("pwrite");
    return attempt(count, [&](std::size_t share) { return original(file, bytes, share, offset); });
}

int fsync(int file) {
    static auto* const original = next<int(int)>("fsync");
    return static_cast<int>(attempt(0, [&](std::size_t) { return original(file); }));
}

int fdatasync(int file) {
    static auto* const original = next<int(int)>("fdatasync");
    return static_cast<int>(attempt(0, [&](std::size_t) { return original(file); }));
}

int ftruncate(int file, off_t length) noexcept {
    static auto* const original = next<int(int, off_t)>("ftruncate");
    return static_cast<int>(attempt(0, [&](std::size_t) { return original(file, length); }));
}

int renameat2(int from, const char* old, int to, const char* name, unsigned flags) noexcept {
    static auto* const original =
        next<int(int, const char*, int, const char*, unsigned)>("renameat2");
    return static_cast<int>(
        attempt(0, [&](std::size_t) { return original(from, old, to, name, flags); }));
}
}
