// What is in force where content paints, by a small reader of its own: for what artwork does not
// hold. It knows the content that the tests write and what a save makes of that.
#pragma once

#include "host/matrix.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace corvane::test {

class ContentState {
public:
    explicit ContentState(const std::string& content) {
        std::istringstream lines(content);
        for (std::string line; std::getline(lines, line);) {
            std::istringstream words(line.substr(0, line.find('%')));
            for (std::string word; words >> word;) {
                read(word);
            }
        }
    }

    std::vector<std::string> paths;  ///< that artwork shows: transparency, layers, clips of text
    std::vector<std::string> opaque; ///< texts, images and forms: all state

private:
    struct State {
        std::map<std::string, std::string> parts;
        RealMatrix ctm;
        int textClips = 0;
        std::string alpha = "1";
    };

    void read(const std::string& word) {
        static const std::string operands = "0123456789+-./([]<>)";
        if (operands.find(word[0]) != std::string::npos) {
            operands_.push_back(word);
            return;
        }
        run(word);
        operands_.clear();
    }

    std::string text() const {
        std::string all;
        for (const std::string& operand : operands_) {
            all += operand + " ";
        }
        return all;
    }
    double number(std::size_t index) const {
        return std::strtod(operands_[index].c_str(), nullptr);
    }

    void run(const std::string& word) {
        static const std::set<std::string> numbers = {"w", "J", "j", "M", "d", "i", "ri"};
        static const std::map<std::string, std::string> spaces = {
            {"g", "fill"}, {"rg", "fill"}, {"k", "fill"}, {"cs", "fill"},
            {"G", "line"}, {"RG", "line"}, {"K", "line"}, {"CS", "line"}};
        static const std::set<std::string> paints = {"f", "f*", "S", "s", "B", "B*", "b", "b*"};
        if (word == "q") {
            saved_.push_back(state_);
        } else if (word == "Q" && !saved_.empty()) {
            state_ = saved_.back();
            saved_.pop_back();
        } else if (word == "cm") {
            state_.ctm = multiply(
                {number(0), number(1), number(2), number(3), number(4), number(5)}, state_.ctm);
        } else if (numbers.contains(word)) {
            state_.parts[word] = text();
        } else if (spaces.contains(word)) {
            state_.parts[spaces.at(word)] = text() + word;
            state_.parts[spaces.at(word) + " colour"].clear();
        } else if (word == "sc" || word == "scn") {
            state_.parts["fill colour"] = text() + word;
        } else if (word == "gs") {
            setExternal();
        } else if (word == "Tr") {
            textClips_ = operands_[0] == "7";
        } else if (word == "ET" && textClips_) {
            ++state_.textClips;
            textClips_ = false;
        } else if (word == "BDC" || word == "BMC") {
            marks_.push_back(text());
        } else if (word == "EMC" && !marks_.empty()) {
            marks_.pop_back();
        } else if (word == "Tj" || word == "Do" || word == "EI") {
            opaque.push_back(word + all());
        } else if (paints.contains(word)) {
            paths.push_back(seen());
        }
    }

    void setExternal() {
        if (operands_[0] == "/Wide") {
            state_.parts["w"] = "7 ";
            state_.parts["d"] = "[5 3] 1";
        } else {
            state_.alpha = operands_[0] == "/Half" ? ".5" : "1";
        }
    }

    bool isOptional() const {
        return std::ranges::any_of(marks_,
                                   [](const std::string& mark) { return mark.starts_with("/OC"); });
    }
    std::string seen() const {
        return state_.alpha + (isOptional() ? " layer " : " ") + std::to_string(state_.textClips);
    }
    std::string all() const {
        std::string all = " " + seen();
        for (const auto& [name, value] : state_.parts) {
            all += value.empty() ? "" : " " + name + " " + value;
        }
        for (const std::string& mark : marks_) {
            all += " mark " + mark;
        }
        std::array<char, 128> matrix{};
        const RealMatrix& m = state_.ctm;
        std::snprintf(matrix.data(), matrix.size(), "%.5f %.5f %.5f %.5f %.3f %.3f", m.a, m.b, m.c,
                      m.d, m.tx, m.ty);
        return all + " at " + matrix.data();
    }

    std::vector<std::string> operands_;
    State state_;
    std::vector<State> saved_;
    std::vector<std::string> marks_;
    bool textClips_ = false;
};

} // namespace corvane::test
