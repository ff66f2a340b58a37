// Exceptions: a failure stores a small code and unwinds to the innermost guarded block.
//
// A guarded block is opened with `guarded` and by nothing else. The code behind the block then
// raises the pending code again (`againException`), swallows it (`resetException`) or looks at it
// (`valueException`).
#pragma once

#include <cstdint>
#include <new>
#include <stdexcept>
#include <utility>

namespace corvane {

/// Codes of exceptions. The sentence of each is in resources/texts.
enum class Exception : std::int32_t {
    none = 0,
    limit = 1,          ///< an internal limit: 64 warnings, 32 guarded blocks
    cancelled = 2,      ///< the person cancelled
    host = 3,           ///< a callback of the host failed
    codec = 4,          ///< a fax or DCT codec failed
    fontFamily = 5,     ///< a font family could not be written
    diskFull = 6,       ///< a file could not be written
    crossReference = 7, ///< the cross-reference is unusable (encrypted file)
    fontRegistry = 8,   ///< the font registry could not be opened
    underflow = 10,     ///< operand stack empty; indirect object or page missing
    overflow = 11,      ///< operand stack full
    structure = 12,     ///< malformed or unsupported structure
    memory = 13,        ///< out of memory
    type = 14,          ///< wrong type or argument
    range = 15,         ///< value of the wrong kind or out of range
    mark = 16,          ///< no matching mark on the operand stack
    context = 17,       ///< operator outside its context
    io = 18,            ///< file or resource input or output failed
    access = 19,        ///< file could not be opened
    notPdf = 20,        ///< saving into a file that is not PDF
    // Of the extended profile:
    pageChanged = 21,   ///< the page is not what the artwork was opened from
    repairedFile = 22,  ///< a file that was only repaired for reading cannot be saved into
    fileTooLong = 23,   ///< the file would pass 2^31 - 1 bytes
    fileChanged = 24,   ///< another program changed the file while it was being saved
    foreignUpdate = 25, ///< the newest update is not ours to take off
    // 26 to 28 are the program's own.
    otherArtwork = 29,      ///< the page was saved from another artwork of the same page meanwhile
    artworkMissing = 30,    ///< half of the page, or all of a kind, is not in the artwork
    unpatchable = 31,       ///< the change cannot be made without harm to other things on the page
    notPermitted = 32,      ///< the owner of an encrypted file did not permit changes
    certifiedFile = 33,     ///< the signature of the file's author allows no changed page
    annotationChanged = 34, ///< of an annotation, which a save does not touch
};

/// Whether a code blames the file (something is damaged or missing) and not the machine, the host
/// or the person. The rest of the file may still be read then.
bool isFileFault(Exception code);

/// What a raise outside every guarded block returns.
inline constexpr std::int32_t unguardedRaise = 10;

/// Guarded blocks that may be nested.
inline constexpr std::int32_t handlerLimit = 32;

/// Stores `code` as the pending one and unwinds to the innermost guarded block. Returns 0 and does
/// nothing for `none`; returns `unguardedRaise` where no block is active.
std::int32_t raiseException(Exception code);

/// As `raiseException`, for code that cannot go on: outside every guarded block it unwinds all the
/// same.
[[noreturn]] void failException(Exception code);

/// Raises the pending code again; nothing where none is pending.
std::int32_t againException();

/// The pending code.
Exception valueException();

/// The pending code, which is then cleared.
Exception resetException();

/// Raises `memory` where less than 16,384 bytes of the zone are free; else 0.
std::int32_t memoryException();

namespace detail {

struct Unwinding {};

/// Counts one guarded block while it is open; the 33rd raises `limit` in the block around it.
class HandlerDepth {
public:
    HandlerDepth();
    ~HandlerDepth();
    HandlerDepth(const HandlerDepth&) = delete;
    HandlerDepth& operator=(const HandlerDepth&) = delete;
};

void storeException(Exception code);

} // namespace detail

/// Depth of guarded blocks in use.
std::int32_t handlerDepth();

/// Runs `body` in a guarded block. Returns the code that it raised, which is left pending, or
/// `none`. Failed allocations of the standard library count as `memory`.
template <class Body>
Exception guarded(Body&& body) {
    const detail::HandlerDepth depth;
    try {
        std::forward<Body>(body)();
        return Exception::none;
    } catch (const detail::Unwinding&) {
    } catch (const std::bad_alloc&) {
        detail::storeException(Exception::memory);
    } catch (const std::length_error&) {
        detail::storeException(Exception::memory);
    }
    return valueException();
}

/// Runs `body` in a guarded block. False where it raised a fault of the file (`isFileFault`), which
/// is then forgotten; other codes are raised again.
template <class Body>
bool attempted(Body&& body) {
    const Exception code = guarded(std::forward<Body>(body));
    if (code != Exception::none && !isFileFault(code)) {
        againException();
    }
    resetException();
    return code == Exception::none;
}

} // namespace corvane
