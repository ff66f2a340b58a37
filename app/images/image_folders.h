// Which files the images of an SVG may come from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// What an address leads to, as far as it can be told without opening it.
enum class AddressKind : std::uint8_t {
    embedded, ///< "data:"
    file,     ///< a path, or "file:"
    network,  ///< anything else; never opened
};

AddressKind addressKind(std::string_view address);

/// The bytes that a "data:" address carries. Throws `ImageError`.
std::vector<std::byte> embeddedBytes(std::string_view address);

/// Files of the artwork's own folder and of the folders that a person named; or all files.
class ImageFolders {
public:
    /// `own` is the folder that addresses count from.
    ImageFolders(std::string own, std::vector<std::string> others, bool allowsAll);

    /// The path, without links, of the file that an address of kind `file` names. Throws
    /// `ImageError` where it is missing or must not be read.
    std::string find(std::string_view address) const;

private:
    std::string own_;
    std::vector<std::string> allowed_; ///< without links, each with a "/" at its end
    bool allowsAll_;
};

} // namespace corvane
