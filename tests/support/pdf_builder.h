// Builds small PDF files for tests: object bodies in, the bytes of a file with a classic
// cross-reference table out. What a test wants broken it writes into a body or the trailer.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace corvane::test {

class PdfBuilder {
public:
    /// Body of object `number` (from 1), between "obj" and "endobj".
    PdfBuilder& object(int number, std::string body) {
        bodies_[number] = std::move(body);
        return *this;
    }

    /// Object `number` as a stream with a true Length; `entries` go into its dictionary.
    PdfBuilder& stream(int number, std::string_view content, std::string_view entries = "") {
        std::string body = "<< /Length " + std::to_string(content.size()) + " ";
        body.append(entries).append(" >>\nstream\n").append(content).append("\nendstream");
        return object(number, std::move(body));
    }

    /// Replaces what stands between "<<" and ">>" of the trailer; by default Size and Root 1 0 R.
    PdfBuilder& trailer(std::string entries) {
        trailer_ = std::move(entries);
        return *this;
    }

    /// The file. It begins with a comment that keeps even the smallest above 256 bytes.
    std::string bytes() const {
        std::string file = "%PDF-1.4\n%" + std::string(250, '-') + "\n";
        std::map<int, std::size_t> offsets;
        for (const auto& [number, body] : bodies_) {
            offsets[number] = file.size();
            file += std::to_string(number) + " 0 obj\n" + body + "\nendobj\n";
        }
        const std::size_t xref = file.size();
        file += "xref\n0 1\n0000000000 65535 f \n";
        for (const auto& [number, offset] : offsets) {
            file += std::to_string(number) + " 1\n" + tenDigits(offset) + " 00000 n \n";
        }
        file += "trailer\n<< " + (trailer_.empty() ? defaultTrailer() : trailer_) + " >>\n";
        return file + "startxref\n" + std::to_string(xref) + "\n%%EOF\n";
    }

    /// One page (object 3 of tree 2 of catalog 1) of 612 by 792 points that draws `content` (4).
    static PdfBuilder onePage(std::string_view content, std::string_view pageEntries = "") {
        PdfBuilder file;
        file.object(1, "<< /Type /Catalog /Pages 2 0 R >>")
            .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>")
            .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Contents 4 0 R " +
                           std::string(pageEntries) + " >>")
            .stream(4, content);
        return file;
    }

private:
    static std::string tenDigits(std::size_t value) {
        const std::string digits = std::to_string(value);
        return std::string(10 - digits.size(), '0') + digits;
    }

    std::string defaultTrailer() const {
        const int last = bodies_.empty() ? 0 : bodies_.rbegin()->first;
        return "/Size " + std::to_string(last + 1) + " /Root 1 0 R";
    }

    std::map<int, std::string> bodies_;
    std::string trailer_;
};

} // namespace corvane::test
