// Which files the images of an SVG may come from.
#pragma once

#include "app/images/byte_source.h"

#include <memory>
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

    /// The file that an address of kind `file` names. Links count as what they lead to. Throws
    /// `ImageError` where it is missing or must not be read.
    std::shared_ptr<const ByteOrigin> find(std::string_view address) const;
    /// Its path, likewise.
    std::string pathOf(std::string_view address) const;

private:
    std::string own_;
    std::vector<std::string> allowed_; ///< without links, each with a "/" at its end
    bool allowsAll_;
};

} // namespace corvane
