// Holds JSON against a JSON Schema, for tests. Of draft 2020-12 it knows the words that
// docs/json.md uses; others are an error.
#pragma once

#include "tests/app/cli/json/json_value.h"

#include <algorithm>
#include <string>

namespace corvane::test {

class JsonSchema {
public:
    explicit JsonSchema(JsonValue root) : root_(std::move(root)) {}

    /// Why `value` does not fit; empty where it does.
    std::string fault(const JsonValue& value) const { return fault(value, root_, "$"); }

private:
    using Kind = JsonValue::Kind;

    std::string fault(const JsonValue& value, const JsonValue& schema,
                      const std::string& at) const {
        for (const auto& [word, rule] : schema.members) {
            if (const std::string found = faultOf(word, value, rule, schema, at); !found.empty()) {
                return found;
            }
        }
        return {};
    }

    std::string faultOf(const std::string& word, const JsonValue& value, const JsonValue& rule,
                        const JsonValue& schema, const std::string& at) const {
        if (word == "$schema" || word == "$defs" || word == "properties") {
            return word == "properties" ? faultOfMembers(value, rule, at) : "";
        }
        if (word == "$ref") {
            const std::string name = rule.text.substr(std::string("#/$defs/").size());
            return fault(value, root_.members.at("$defs").members.at(name), at);
        }
        if (word == "type") {
            const bool fits =
                rule.kind == Kind::array
                    ? std::ranges::any_of(
                          rule.items, [&](const JsonValue& type) { return isOf(value, type.text); })
                    : isOf(value, rule.text);
            return fits ? "" : at + " is of another type";
        }
        if (word == "const") {
            return value == rule ? "" : at + " is " + value.text;
        }
        if (word == "enum") {
            return std::ranges::find(rule.items, value) != rule.items.end()
                       ? ""
                       : at + " is " + value.text;
        }
        if (word == "items") {
            for (const JsonValue& item : value.items) {
                if (const std::string found = fault(item, rule, at + "[]"); !found.empty()) {
                    return found;
                }
            }
            return {};
        }
        if (word == "required") {
            for (const JsonValue& name : rule.items) {
                if (value.find(name.text) == nullptr) {
                    return at + " has no " + name.text;
                }
            }
            return {};
        }
        if (word == "additionalProperties") {
            return faultOfOthers(value, rule, schema, at);
        }
        if (word == "oneOf") {
            return faultOfOne(value, rule, at);
        }
        throw std::runtime_error("no such word of a schema: " + word);
    }

    std::string faultOfMembers(const JsonValue& value, const JsonValue& rules,
                               const std::string& at) const {
        for (const auto& [name, rule] : rules.members) {
            const JsonValue* const member = value.find(name);
            const std::string found = member ? fault(*member, rule, at + "." + name) : "";
            if (!found.empty()) {
                return found;
            }
        }
        return {};
    }

    std::string faultOfOthers(const JsonValue& value, const JsonValue& rule,
                              const JsonValue& schema, const std::string& at) const {
        const JsonValue* const known = schema.find("properties");
        for (const auto& [name, member] : value.members) {
            if (known != nullptr && known->find(name) != nullptr) {
                continue;
            }
            const std::string found =
                rule.kind == Kind::boolean ? at + " has a member " + name : fault(member, rule, at);
            if (!found.empty()) {
                return found;
            }
        }
        return {};
    }

    std::string faultOfOne(const JsonValue& value, const JsonValue& rule,
                           const std::string& at) const {
        std::string faults;
        const auto count = std::ranges::count_if(rule.items, [&](const JsonValue& choice) {
            const std::string found = fault(value, choice, at);
            faults += found.empty() ? "" : "\n  " + found;
            return found.empty();
        });
        return count == 1 ? "" : at + " fits " + std::to_string(count) + " of the choices" + faults;
    }

    static bool isOf(const JsonValue& value, const std::string& type) {
        return (type == "null" && value.kind == Kind::null) ||
               (type == "boolean" && value.kind == Kind::boolean) ||
               (type == "integer" && value.isWhole()) ||
               (type == "number" && value.kind == Kind::number) ||
               (type == "string" && value.kind == Kind::text) ||
               (type == "array" && value.kind == Kind::array) ||
               (type == "object" && value.kind == Kind::object);
    }

    JsonValue root_;
};

} // namespace corvane::test
