// The file that a command makes: whole or not at all.
#pragma once

#include "app/cli/files/hidden_file.h"
#include "app/svg/sink.h"
#include "toolbox/descriptor.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <system_error>

namespace corvane {

/// Where the output goes and how, decided before the work begins.
struct OutputTarget {
    enum class Kind : std::uint8_t {
        standardOutput,
        stream,  ///< a device, a pipe: written as it comes
        newFile, ///< appears when it is complete; one of that name is never replaced
        file,    ///< appears when it is complete, in place of one of that name
    };
    Kind kind = Kind::file;
    std::string path;     ///< as the person named it, or as it was chosen
    std::string place;    ///< of the file itself, links resolved
    mode_t mode = 0;      ///< permissions of the file
    bool isThere = false; ///< one of that name; it is replaced
    /// The first of this command in its folder, which is looked through for what killed processes
    /// left there: a page may have thousands of images.
    bool isFirst = true;
    /// It is on the disk when the command ends. Not so what takes nothing's place and the same
    /// command makes again: disks take longer to sync than a page takes to open.
    bool isSynced = true;
};

/// Looks where `path` leads. "-" is standard output. Raises `Failure` where it is the file `input`
/// itself, or where nothing can be written there. A name that the person did not choose
/// (`isChosen` false) must be free.
OutputTarget outputTarget(const std::string& path, const std::string& input, bool isChosen);

/// "report" for "some/folder/report.pdf".
std::string_view stemOf(std::string_view input);

/// "report-page2.svg" for "some/folder/report.pdf": a name for the current directory, never longer
/// than a file name may be.
std::string outputName(std::string_view input, std::int32_t page);

/// Bytes on their way to a target. Until `commit` a file is a hidden neighbour of its target; an
/// object that is destroyed without it leaves the target as it was.
class OutputFile final : public ByteSink {
public:
    /// Raises `Failure`, as `commit` does.
    explicit OutputFile(const OutputTarget& target);

    /// The error is `operation_canceled` once the person asked to stop.
    std::error_code write(std::string_view bytes) override;

    /// Where the bytes lie until `commit`, for code that appends to them there; empty where they go
    /// straight to their target.
    const std::string& hiddenPath() const { return hidden_.path(); }

    /// Changes the hidden path to one that is free, so that another can make the file. Until it is
    /// made there is nothing to commit.
    void vacate();

    /// Syncs and closes the file and puts it in its place, unless `error` says that writing failed.
    void commit(std::error_code error);

private:
    std::error_code finish();
    std::error_code close();
    std::error_code publish() const;
    void require(std::error_code error) const;

    OutputTarget target_;
    HiddenFile hidden_;
    Descriptor descriptor_;
};

/// Writes `text` to standard output. Raises `Failure`; `input` is never written to.
void printOutput(std::string_view text, const std::string& input);

} // namespace corvane
