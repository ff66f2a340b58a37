// Runs a program under limits and catches all that it says.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace corvane::test {

struct Process {
    std::vector<std::string> words; ///< the program's path and its arguments
    std::vector<std::pair<std::string, std::string>> environment; ///< added to that of the test
    std::filesystem::path folder;                                 ///< empty: that of the test
    std::string input;                                            ///< for standard input
    std::chrono::milliseconds timeout = std::chrono::minutes(2);  ///< then it is killed
    std::optional<std::uint64_t> addressSpace;                    ///< bytes; useless under ASan
    std::optional<std::uint64_t> fileSize;                        ///< bytes of each file written
    bool obeysPermissions = false; ///< root, too, is bound by the permissions of files
    bool onTerminal = false;       ///< standard input and error are a pseudo-terminal
    std::string inputOn;           ///< each line of the input waits until this has come once more
    std::string interruptOn;       ///< SIGINT is sent when this has come on standard error
    std::filesystem::path outputFile; ///< standard output goes there, appended, not to `output`
};

struct Outcome {
    int status = -1; ///< exit status; -1 where a signal ended it
    int signal = 0;
    bool timedOut = false;
    std::string output;
    std::string errors;
    std::chrono::duration<double> seconds{};
    std::int64_t peakMemory = 0; ///< bytes resident
};

/// Throws `std::system_error` where the program cannot be started.
Outcome run(const Process& process);

/// The folder that the tests were built in, with the programs in it.
std::filesystem::path buildFolder();

/// The folder of the sources.
std::filesystem::path sourceFolder();

#if defined(__SANITIZE_ADDRESS__)
#define CORVANE_TEST_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CORVANE_TEST_ASAN 1
#endif
#endif
#ifdef CORVANE_TEST_ASAN
inline constexpr bool underAddressSanitizer = true;
#else
inline constexpr bool underAddressSanitizer = false;
#endif

/// A new folder that goes, with all in it, when the object does.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    /// Makes a file; its path.
    std::string add(const std::string& name, const std::string& bytes) const;
    /// Names of all that is in the folder, sorted.
    std::vector<std::string> names() const;

private:
    std::filesystem::path path_;
};

inline bool holds(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// The bytes of a file; throws where it cannot be read.
std::string fileBytes(const std::filesystem::path& path);

} // namespace corvane::test
