#pragma once

#include "tools/titles/JsonFault.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

namespace brisk::workbench {

// A JSON value that knows where it stands in the text. Offsets are bytes. (Moving a scalar allocates nothing.)
struct JsonValue { // NOLINT(bugprone-exception-escape)
    struct Member;

    nlohmann::json scalar; // of a string, number, boolean or null; otherwise null
    nlohmann::json::value_t type = nlohmann::json::value_t::null;
    std::size_t begin = 0;
    std::size_t end = 0;          // behind the last byte
    std::vector<Member> members;  // of an object, in the order of the text, repeated keys included
    std::vector<JsonValue> items; // of an array

    bool isString() const { return type == nlohmann::json::value_t::string; }
    bool isObject() const { return type == nlohmann::json::value_t::object; }
    bool isArray() const { return type == nlohmann::json::value_t::array; }
    bool isNumber() const { return scalar.is_number(); }
    const std::string& text() const { return scalar.get_ref<const std::string&>(); }

    // The value that counts for a key: the last one. Null when there is none.
    const Member* find(std::string_view key) const;
};

struct JsonValue::Member { // NOLINT(bugprone-exception-escape)
    std::string key;
    std::size_t keyBegin; // of the opening quote
    std::size_t keyEnd;
    JsonValue value;
};

// What reading came to.
struct JsonOutcome {
    nlohmann::json::value_t rootType = nlohmann::json::value_t::discarded; // discarded: nothing begins
    std::size_t rootBegin = 0;
    std::optional<JsonFault> fault;
};

// Reads a JSON text as the service does and hands over each element of its root array as soon as it is complete: a
// large database is never held whole. What lies deeper than a title ever goes is read over.
JsonOutcome readJsonElements(std::string_view text, const std::function<void(const JsonValue&)>& onElement);

} // namespace brisk::workbench
