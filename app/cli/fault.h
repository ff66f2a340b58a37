// What went wrong, in one code and one sentence; and how it travels through the program.
#pragma once

#include <cstdint>
#include <exception>
#include <new>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace corvane {

/// Codes of errors that the program itself finds; those of the plug-in have the same numbers.
namespace code {
inline constexpr std::int32_t cancelled = 2;
inline constexpr std::int32_t host = 3;
inline constexpr std::int32_t diskFull = 6;
inline constexpr std::int32_t memory = 13;
inline constexpr std::int32_t io = 18;
inline constexpr std::int32_t access = 19;
inline constexpr std::int32_t notPdf = 20;
inline constexpr std::int32_t pageChanged = 21;
inline constexpr std::int32_t fileChanged = 24;
inline constexpr std::int32_t loss = 26;    ///< saving would lose what the artwork does not hold
inline constexpr std::int32_t artwork = 27; ///< the SVG cannot be read
inline constexpr std::int32_t noPage = 28;  ///< nobody said which page to replace
inline constexpr std::int32_t otherArtwork = 29;
inline constexpr std::int32_t artworkMissing = 30;
inline constexpr std::int32_t unpatchable = 31;
inline constexpr std::int32_t certifiedFile = 33;
inline constexpr std::int32_t annotationChanged = 34;
inline constexpr std::int32_t editor = 50;      ///< there is none, or it cannot be started
inline constexpr std::int32_t artworkKept = 51; ///< an editor's last work is not in the file
inline constexpr std::int32_t crashed = 52;     ///< the process that worked on one of many files
inline constexpr std::int32_t layersLeftOut = 1004;  ///< warning of the plug-in
inline constexpr std::int32_t layersNotKept = 1008;  ///< the same
inline constexpr std::int32_t fontAdded = 1010;      ///< the same
inline constexpr std::int32_t notInArtwork = 1005;   ///< warning: not kept when the page was opened
inline constexpr std::int32_t notUnderstood = 1006;  ///< warning: ignored when the SVG was read
inline constexpr std::int32_t pageRepeated = 1007;   ///< warning: one object is several pages
inline constexpr std::int32_t annotationKept = 1014; ///< warning: changes of it are not saved
inline constexpr std::int32_t layerIsOne = 1015;     ///< warning: all of it is shown or hidden
inline constexpr std::int32_t extensionChanged =
    1050; ///< warning: an extension for Inkscape is not as it was installed, and stays
} // namespace code

/// An error or a warning: `sentence` says what happened and what to do.
struct Fault {
    std::int32_t code = 0;
    std::string sentence;
};

/// Ends a command. Never crosses a frame of the plug-in.
class Failure : public std::exception {
public:
    explicit Failure(Fault fault) : fault_(std::move(fault)) {}

    const Fault& fault() const { return fault_; }
    const char* what() const noexcept override { return fault_.sentence.c_str(); }

private:
    Fault fault_;
};

/// Runs `body`; what it raised.
template <class Body>
std::optional<Fault> faultOf(Body&& body) {
    try {
        std::forward<Body>(body)();
        return std::nullopt;
    } catch (const Failure& failure) {
        return failure.fault();
    } catch (const std::bad_alloc&) {
        return Fault{code::memory, "memory ran out; close other programs, or give more in "
                                   "CORVANE_ZONE_MB and CORVANE_ART_MB"};
    } catch (const std::exception& exception) {
        return Fault{code::host, exception.what()};
    }
}

/// Why `what` could not be written: `cancelled` as it is, `diskFull` where room is missing,
/// otherwise `io`.
Fault outputFault(const std::string& what, std::error_code error);

/// The error that `errno` holds.
std::error_code lastError();

} // namespace corvane
