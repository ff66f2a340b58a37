// The extensions in a folder of Inkscape: put there, and taken away again.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Remembers in the folder what it put there, so that it knows its own files from those that a
/// person changed, also where another version put them there.
class Installation {
public:
    /// `program` is the path of the program that the extensions start.
    Installation(std::string folder, std::string program);

    /// Writes all files, each whole or not at all; those that Inkscape starts from come last.
    /// Raises `Failure`, and writes nothing, where a file is in the way that is not as it was put
    /// there.
    void install();

    /// Takes away what was put there, and the folder where nothing else is in it.
    void remove();

    /// Names of the files that were written or removed.
    const std::vector<std::string>& done() const { return done_; }
    /// Names of the files that stay since they were changed; a link, or what is no file, counts so.
    const std::vector<std::string>& changed() const { return changed_; }

private:
    enum class State : std::uint8_t { missing, ours, changed };

    State stateOf(const std::string& name) const;
    std::string pathOf(std::string_view name) const;
    void write(const std::string& name, const std::string& bytes);
    void take(const std::string& name);
    void removeCompiled() const;
    std::string recordText() const;
    std::vector<std::string> names() const;

    std::string folder_;
    std::map<std::string, std::string> files_;  ///< that this version puts there: bytes by name
    std::map<std::string, std::string> record_; ///< that was put there: digest by name
    bool isRecordChanged_ = false;              ///< what lies in its place is not one of ours
    std::vector<std::string> done_;
    std::vector<std::string> changed_;
};

} // namespace corvane
