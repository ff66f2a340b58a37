// Writes PDF files revision by revision, each with a section of the cross-reference that is a
// table, a stream, or a table that names a stream for the objects that it hides.
#pragma once

#include "filters/coding/deflate.h"
#include "tests/filters/decode_check.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace corvane::test {

enum class Section { table, stream, hybrid };

class RevisionWriter {
public:
    /// With a source of chance, whatever the standard leaves open is written in any of its forms.
    explicit RevisionWriter(std::mt19937* chance = nullptr) : chance_(chance) {}

    /// An object that stands alone; its body, between "obj" and "endobj".
    RevisionWriter& object(int number, const std::string& body) {
        entries_[number] = {1, static_cast<std::int64_t>(file_.size()), 0};
        highest_ = std::max(highest_, number);
        file_ += std::to_string(number) + " 0 obj\n" + body + "\nendobj\n";
        return *this;
    }
    /// Object `number` in the object stream `stream`, which this revision writes.
    RevisionWriter& member(int stream, int number, const std::string& body) {
        members_[stream].emplace_back(number, body);
        highest_ = std::max({highest_, number, stream});
        return *this;
    }
    RevisionWriter& free(int number) {
        entries_[number] = {0, 0, 1};
        return *this;
    }
    /// An entry as it stands, of a cross-reference stream.
    RevisionWriter& entry(int number, int type, int second, int third) {
        entries_[number] = {type, second, third};
        return *this;
    }
    /// Entries that every object stream has besides its own.
    RevisionWriter& streamEntries(std::string entries) {
        streamEntries_ = std::move(entries);
        return *this;
    }

    /// Ends the revision.
    RevisionWriter& end(Section kind) {
        writeObjectStreams();
        std::map<int, Entry> hidden;
        if (kind == Section::hybrid) {
            for (auto& [number, entry] : entries_) {
                if (entry.type == 2) {
                    hidden[number] = std::exchange(entry, {0, 0, 65535});
                }
            }
        }
        const std::size_t place =
            kind == Section::stream ? writeStream(entries_, previous_) : writeTable(hidden);
        file_ += "startxref\n" + std::to_string(place) + "\n%%EOF\n";
        previous_ = place;
        entries_.clear();
        members_.clear();
        return *this;
    }

    const std::string& bytes() const { return file_; }
    int nextNumber() { return ++highest_; }

private:
    struct Entry {
        std::int64_t type = 0;
        std::int64_t second = 0;
        std::int64_t third = 0;
    };

    /// A number below `count`; 0 where nothing is left to chance.
    int choice(int count) {
        return chance_ != nullptr ? static_cast<int>((*chance_)() % static_cast<unsigned>(count))
                                  : 0;
    }

    void writeObjectStreams() {
        std::optional<int> former;
        for (auto& [stream, members] : members_) {
            if (chance_ != nullptr) {
                std::shuffle(members.begin(), members.end(), *chance_);
            }
            std::string head;
            std::string body;
            for (std::size_t i = 0; i < members.size(); ++i) {
                const auto& [number, text] = members[i];
                head += std::to_string(number) + " " + std::to_string(body.size()) + " ";
                body += text + (choice(2) == 0 ? " " : "\n");
                // Some writers count wrong.
                entries_[number] = {2, stream, static_cast<int>(i) + (choice(8) == 7 ? 1 : 0)};
            }
            std::string entries = "/Type/ObjStm/N " + std::to_string(members.size()) + "/First " +
                                  std::to_string(head.size()) + streamEntries_;
            if (former && choice(2) == 1) {
                entries += "/Extends " + std::to_string(*former) + " 0 R";
            }
            former = stream;
            const std::string data = coded(head + body, entries);
            object(stream, "<<" + entries + "/Length " + std::to_string(data.size()) +
                               ">>stream\n" + data + "\nendstream");
        }
    }

    std::string coded(const std::string& data, std::string& entries) {
        if (choice(3) == 0) {
            return data;
        }
        entries += "/Filter/FlateDecode";
        return encoded(setupDeflate, data, data.size());
    }

    static std::string digits(std::int64_t value, std::size_t width) {
        const std::string text = std::to_string(value);
        return std::string(width - text.size(), '0') + text;
    }

    std::string trailer(std::size_t previous) {
        return "/Size " + std::to_string(highest_ + 1) + "/Root 1 0 R" +
               (previous != 0 ? "/Prev " + std::to_string(previous) : "");
    }

    /// Entries from here on whose numbers follow one another.
    int runLength(std::map<int, Entry>::const_iterator at) const {
        int length = 0;
        for (const int first = at->first; at != entries_.end() && at->first == first + length;
             ++at) {
            ++length;
        }
        return length;
    }

    std::size_t writeTable(const std::map<int, Entry>& hidden) {
        const std::size_t stream = hidden.empty() ? 0 : writeStream(hidden, 0);
        const std::size_t place = file_.size();
        file_ += "xref\n0 1\n0000000000 65535 f \n";
        int left = 0;
        for (auto at = entries_.begin(); at != entries_.end(); ++at, --left) {
            const auto& [number, entry] = *at;
            if (left == 0) {
                left = runLength(at);
                file_ += std::to_string(number) + " " + std::to_string(left) + "\n";
            }
            file_ += digits(entry.second, 10) + " " + digits(entry.third, 5) +
                     (entry.type == 1 ? " n \n" : " f \n");
        }
        file_ += "trailer\n<<" + trailer(previous_) +
                 (stream != 0 ? "/XRefStm " + std::to_string(stream) : "") + ">>\n";
        return place;
    }

    std::size_t writeStream(std::map<int, Entry> entries, std::size_t previous) {
        const int number = nextNumber();
        const std::size_t place = file_.size();
        entries[number] = {1, static_cast<std::int64_t>(place), 0};
        std::vector<std::pair<int, Entry>> rows(entries.begin(), entries.end());
        if (choice(3) == 1) {
            std::shuffle(rows.begin(), rows.end(), *chance_);
        }
        const bool typed = choice(4) == 0 || std::ranges::any_of(rows, [](const auto& row) {
                               return row.second.type != 1;
                           });
        const int widths[] = {typed ? 1 + choice(2) : 0, 3 + choice(5), 2 + choice(3)};
        std::string index;
        std::string data;
        for (std::size_t i = 0; i < rows.size();) {
            std::size_t end = i + 1;
            while (end < rows.size() && rows[end].first == rows[end - 1].first + 1) {
                ++end;
            }
            index += std::to_string(rows[i].first) + " " + std::to_string(end - i) + " ";
            for (; i < end; ++i) {
                const Entry& entry = rows[i].second;
                append(data, entry.type, widths[0]);
                append(data, entry.second, widths[1]);
                append(data, entry.third, widths[2]);
            }
        }
        const int columns = widths[0] + widths[1] + widths[2];
        std::string dictionary = "/Type/XRef" + trailer(previous) + "/Index[" + index + "]/W[" +
                                 std::to_string(widths[0]) + " " + std::to_string(widths[1]) + " " +
                                 std::to_string(widths[2]) + "]";
        if (choice(2) == 1) {
            data = encoded(setupDeflate, differences(data, static_cast<std::size_t>(columns)), 99);
            dictionary += "/Filter/FlateDecode/DecodeParms<</Predictor 12/Columns " +
                          std::to_string(columns) + ">>";
        }
        file_ += std::to_string(number) + " 0 obj\n<<" + dictionary + "/Length " +
                 std::to_string(data.size()) + ">>stream\n" + data + "\nendstream\nendobj\n";
        return place;
    }

    static void append(std::string& data, std::int64_t value, int width) {
        for (int i = width - 1; i >= 0; --i) {
            data += static_cast<char>(value >> 8 * i & 0xFF);
        }
    }

    /// Rows as the predictor "up" has them.
    static std::string differences(const std::string& data, std::size_t columns) {
        std::string rows;
        for (std::size_t i = 0; i < data.size(); ++i) {
            if (i % columns == 0) {
                rows += '\2';
            }
            rows += static_cast<char>(data[i] - (i < columns ? 0 : data[i - columns]));
        }
        return rows;
    }

    std::mt19937* chance_;
    std::string file_ = "%PDF-1.5\n%" + std::string(260, '-') + "\n";
    std::map<int, Entry> entries_; ///< of this revision
    std::map<int, std::vector<std::pair<int, std::string>>> members_;
    std::string streamEntries_;
    std::size_t previous_ = 0;
    int highest_ = 0;
};

} // namespace corvane::test
