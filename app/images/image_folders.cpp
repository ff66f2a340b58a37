#include "app/images/image_folders.h"

#include "app/images/base64.h"
#include "app/images/image_error.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <system_error>
#include <utility>

namespace corvane {

namespace {

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool equalsIgnoringCase(std::string_view text, std::string_view lower) {
    return std::ranges::equal(text, lower, [](char a, char b) {
        return (isLetter(a) ? static_cast<char>(a | 0x20) : a) == b;
    });
}

/// In front of the colon; empty where the address is relative (RFC 3986, 3.1).
std::string_view schemeOf(std::string_view address) {
    const std::size_t colon = address.find(':');
    if (colon == std::string_view::npos || colon == 0 || !isLetter(address.front())) {
        return {};
    }
    const std::string_view scheme = address.substr(0, colon);
    const bool isScheme = std::ranges::all_of(scheme, [](char c) {
        return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
    });
    return isScheme ? scheme : std::string_view();
}

/// Without links; none where there is no such place.
std::optional<std::string> realPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> place(realpath(path.c_str(), nullptr),
                                                            &std::free);
    return place == nullptr ? std::nullopt : std::optional<std::string>(place.get());
}

/// The path in an address of a file; what stands behind "?" and "#" is no part of it.
std::string pathIn(std::string_view address) {
    if (!schemeOf(address).empty()) {
        address.remove_prefix(schemeOf(address).size() + 1);
    }
    if (address.starts_with("//")) {
        address.remove_prefix(2);
        address.remove_prefix(std::min(address.find('/'), address.size())); // this machine's name
    }
    return withoutEscapes(address.substr(0, address.find_first_of("?#")));
}

} // namespace

AddressKind addressKind(std::string_view address) {
    const std::string_view scheme = schemeOf(address);
    if (equalsIgnoringCase(scheme, "data")) {
        return AddressKind::embedded;
    }
    if (equalsIgnoringCase(scheme, "file")) {
        std::string_view rest = address.substr(scheme.size() + 1);
        const bool isHere =
            !rest.starts_with("//") || rest.starts_with("///") ||
            equalsIgnoringCase(rest.substr(2, std::min(rest.find('/', 2), rest.size()) - 2),
                               "localhost");
        return isHere ? AddressKind::file : AddressKind::network;
    }
    return scheme.empty() && !address.starts_with("//") ? AddressKind::file : AddressKind::network;
}

std::vector<std::byte> embeddedBytes(std::string_view address) {
    const std::size_t comma = address.find(',');
    if (comma == std::string_view::npos) {
        throw ImageError("has no bytes");
    }
    std::string_view kind = address.substr(0, comma);
    std::string_view data = address.substr(comma + 1);
    while (kind.ends_with(' ')) {
        kind.remove_suffix(1);
    }
    constexpr std::string_view mark = ";base64";
    const bool isBase64 = kind.size() >= mark.size() &&
                          equalsIgnoringCase(kind.substr(kind.size() - mark.size()), mark);
    std::string plain;
    if (!isBase64 || data.find('%') != std::string_view::npos) {
        plain = withoutEscapes(data);
        data = plain;
    }
    if (!isBase64) {
        const auto bytes = std::as_bytes(std::span(data));
        return {bytes.begin(), bytes.end()};
    }
    auto bytes = fromBase64(data);
    if (!bytes) {
        throw ImageError("is no base-64");
    }
    return *std::move(bytes);
}

ImageFolders::ImageFolders(std::string own, std::vector<std::string> others, bool allowsAll)
    : own_(std::move(own)), allowsAll_(allowsAll) {
    others.push_back(own_);
    for (const std::string& folder : others) {
        if (auto place = realPath(folder)) {
            allowed_.push_back(place->ends_with('/') ? *place : *place + "/");
        }
    }
}

std::string ImageFolders::find(std::string_view address) const {
    const std::string path = pathIn(address);
    if (path.empty() || path.find('\0') != std::string::npos) {
        throw ImageError("is no name of a file");
    }
    const auto place = realPath(path.starts_with('/') ? path : own_ + "/" + path);
    if (!place) {
        throw ImageError("cannot be read (" + std::generic_category().message(errno) + ")");
    }
    const bool isInside = std::ranges::any_of(
        allowed_, [&](const std::string& folder) { return place->starts_with(folder); });
    if (!isInside && !allowsAll_) {
        throw ImageError("lies outside the folder of the artwork; pictures from elsewhere need "
                         "--images FOLDER or --allow-files");
    }
    return *place;
}

} // namespace corvane
