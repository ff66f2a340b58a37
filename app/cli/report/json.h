// One JSON value (RFC 8259), written in the order of its members.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

/// Puts the commas; the caller opens, closes and names. Each byte that is not UTF-8 becomes U+FFFD,
/// so the text is always valid.
class JsonWriter {
public:
    JsonWriter& openObject() { return open('{'); }
    JsonWriter& closeObject() { return close('}'); }
    JsonWriter& openArray() { return open('['); }
    JsonWriter& closeArray() { return close(']'); }

    /// The name of the next value.
    JsonWriter& name(std::string_view text);

    JsonWriter& text(std::string_view value);
    JsonWriter& integer(std::int64_t value);
    /// The shortest decimals that read back as `value`; null where it is not finite.
    JsonWriter& real(double value);
    JsonWriter& boolean(bool value);
    JsonWriter& null();

    const std::string& result() const { return result_; }

private:
    JsonWriter& open(char bracket);
    JsonWriter& close(char bracket);
    void separate();
    void appendText(std::string_view value);

    std::string result_;
    bool needsComma_ = false;
};

} // namespace corvane
