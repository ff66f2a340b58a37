// Any bytes as an Encrypt dictionary, or, behind a first byte of 1 or 2, as enciphered data of a
// file whose key is known.
#include "fuzz/support/plugin_host.h"
#include "tests/support/pdf_builder.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace corvane::fuzz {

namespace {

// Dictionaries that the empty password opens: O is 32 times the letter O, and there is no ID.
const std::string owner = "/Filter/Standard/P -4/O(" + std::string(32, 'O') + ")";
const std::string aesDictionary =
    owner + "/V 4/R 4/U<73f55a2561c9c15c9b7c0037c62c5dee00000000000000000000000000000000>"
            "/CF<</S<</CFM/AESV2>>>>/StmF/S/StrF/S";
const std::string arcfourDictionary =
    owner + "/V 1/R 2/U<9729303290bb79919711a9d0657010b4a921995f7fb52cf97bb2241bafb1ef5c>";

std::string digitsOf(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

std::string fileOf(std::string_view input) {
    const bool isData = !input.empty() && (input[0] == 1 || input[0] == 2);
    const std::string_view data = isData ? input.substr(1) : "q Q";
    const std::string dictionary = !isData              ? std::string(input)
                                   : input.front() == 1 ? aesDictionary
                                                        : arcfourDictionary;
    return test::PdfBuilder::onePage(data, "/Resources<</ColorSpace<</I[/Indexed/DeviceRGB 1<" +
                                               digitsOf(data) + ">]>>>>")
        .object(5, "<<" + dictionary + ">>")
        .trailer("/Size 6/Root 1 0 R/Encrypt 5 0 R")
        .bytes();
}

} // namespace

void fuzzEncryption(Bytes input) {
    std::string text(input.size(), '\0');
    std::ranges::transform(input, text.begin(),
                           [](std::byte byte) { return std::to_integer<char>(byte); });
    const std::string file = fileOf(text);
    PluginHost host(std::as_bytes(std::span(file)), Profile::extended, 1);
    host.call(Selector::info);
    const bool opens = host.call(Selector::prepare) == 0 && host.call(Selector::go) == 0;
    const bool isKnown = !text.empty() && (text.front() == 1 || text.front() == 2);
    require(opens || !isKnown);
}

} // namespace corvane::fuzz
